#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace varnelo {

// Reasons of a change, as bits.
namespace usn {
inline constexpr std::uint32_t kDataOverwrite = 0x00000001;
inline constexpr std::uint32_t kDataExtend = 0x00000002;
inline constexpr std::uint32_t kDataTruncation = 0x00000004;
inline constexpr std::uint32_t kFileCreate = 0x00000100;
inline constexpr std::uint32_t kFileDelete = 0x00000200;
inline constexpr std::uint32_t kRenameNewName = 0x00002000;
inline constexpr std::uint32_t kBasicInfoChange = 0x00008000;
inline constexpr std::uint32_t kClose = 0x80000000;
}  // namespace usn

// FILE_ATTRIBUTE_DIRECTORY
inline constexpr std::uint32_t kDirectoryAttribute = 0x10;

// A record of version 2. The name lies in the bytes that were walked.
struct UsnRecord {
    std::uint64_t frn = 0;        // with its sequence number
    std::uint64_t parentFrn = 0;  // likewise
    std::uint32_t reason = 0;
    std::uint32_t attributes = 0;
    std::uint16_t nameBytes = 0;         // as the record says
    std::span<const std::uint8_t> name;  // little-endian units

    // Leaves the name in `text`, whose memory is used again.
    void nameInto(std::wstring& text) const;
};

// Walks what a volume answers to an enumeration and to a read of its journal: the number to go on with, and
// records. Records of another version are passed over by their length. The walk ends at a length that cannot
// be right; a record whose name reaches beyond its end is left out.
class UsnRecordWalk {
public:
    static constexpr std::size_t kHeaderBytes = 8;

    explicit UsnRecordWalk(std::span<const std::uint8_t> answer);

    // Nothing when the answer is too short for it.
    std::optional<std::uint64_t> nextPosition() const { return position; }
    // False at the end.
    bool next(UsnRecord& record);

private:
    std::optional<std::uint64_t> position;
    std::span<const std::uint8_t> rest;
};

}  // namespace varnelo
