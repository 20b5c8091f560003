#pragma once

#include <cstddef>
#include <cstdint>

#include "index/unaligned.h"

namespace varnelo {

// One file or directory of a volume. The block goes to ntfs.cache as it stands, so that its layout is a file
// format (docs/formats/ntfs-cache.md). It may be read where it lies in the file, which is at an even address.
struct FileRecord {
    static constexpr std::uint32_t kDirectory = 1;
    static constexpr std::uint32_t kDeleted = 0x80000000;  // a tombstone: every reader skips it
    static constexpr std::uint16_t kNoExtension = 0xFFFF;

    Unaligned<std::uint64_t> frn;        // NTFS file reference number without its sequence number
    Unaligned<std::uint64_t> parentFrn;  // the same of the folder that holds it
    Unaligned<std::uint64_t> size;       // bytes; 0 until known
    Unaligned<std::uint64_t> modified;   // FILETIME units, UTC
    Unaligned<std::uint32_t> attributes;
    Unaligned<std::uint32_t> nameOffset;  // unit in the name pool; a file may hold any value
    Unaligned<std::uint32_t> flags;
    std::uint8_t volume = 0;    // place in NTFSIndex::volumes; a file may hold any value
    std::uint8_t reserved = 0;  // whatever a file holds; nobody reads it
    std::uint16_t extension = kNoExtension;

    bool deleted() const { return (flags & kDeleted) != 0; }
};
static_assert(sizeof(FileRecord) == 48 && alignof(FileRecord) == 2 && offsetof(FileRecord, extension) == 46);

// The low 48 bits of a file reference number: the record's place in the volume's table. The bits above count
// how often that place was used anew.
inline constexpr std::uint64_t kFrnMask = 0xFFFFFFFFFFFF;
inline constexpr std::uint64_t kRootFrn = 5;

// What a file is known by among all volumes. All generations of one place are the same file.
constexpr std::uint64_t recordKey(std::uint8_t volume, std::uint64_t frn) {
    return std::uint64_t{volume} << 48 | (frn & kFrnMask);
}
constexpr std::uint64_t recordKey(const FileRecord& record) { return recordKey(record.volume, record.frn); }

}  // namespace varnelo
