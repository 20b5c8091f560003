#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace varnelo::test {

// The little-endian number at `offset`, 0 when it does not lie within the bytes.
std::uint64_t littleEndian(std::span<const std::uint8_t> bytes, std::size_t offset, std::size_t width);

// Clusters that follow each other, `first` on the volume; nothing for a hole.
struct ClusterRun {
    std::optional<std::uint64_t> first;
    std::uint64_t count = 0;
};

// An attribute of a file record. The spans lie in the record's bytes.
struct NtfsAttribute {
    static constexpr std::uint64_t kStandardInformation = 0x10;
    static constexpr std::uint64_t kAttributeList = 0x20;
    static constexpr std::uint64_t kFileName = 0x30;
    static constexpr std::uint64_t kData = 0x80;
    static constexpr std::uint64_t kBitmap = 0xB0;

    std::uint64_t type = 0;
    std::uint64_t instance = 0;   // tells it from others of its record
    std::uint64_t firstVcn = 0;   // 0 but for later pieces
    std::uint64_t dataSize = 0;   // bytes; 0 in later pieces
    std::uint64_t validSize = 0;  // bytes that were written; beyond them the data is zero
    bool named = false;
    bool resident = true;
    std::span<const std::uint8_t> value;  // of a resident one
    std::span<const std::uint8_t> pairs;  // of the others: their runs, encoded

    // Ends at the first that cannot be right.
    std::vector<ClusterRun> runs() const;
};

// Those of one record, whose fix-ups are undone. Ends at what cannot be right.
std::vector<NtfsAttribute> attributesOf(std::span<const std::uint8_t> record);

// The value of a file name attribute.
struct NtfsFileName {
    std::uint64_t parent = 0;  // with its sequence number
    bool dosOnly = false;
    std::wstring name;
};
std::optional<NtfsFileName> fileNameOf(const NtfsAttribute& attribute);

}  // namespace varnelo::test
