#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "index/ntfs_index.h"

namespace varnelo {

// What happened to a file of the index.
struct FileChange {
    enum Type : std::uint32_t { kCreated = 0, kModified = 1, kDeleted = 2, kRenamed = 3 };
    Type type = kCreated;
    std::uint64_t frn = 0;        // without the sequence number
    std::uint64_t parentFrn = 0;  // likewise
    std::wstring name;            // the new one after a rename
    std::wstring path;            // before the change; of deleted and renamed files alone
    std::uint32_t fileIndex = 0;  // of the record
    std::uint8_t volume = 0;      // place in NTFSIndex::volumes
};

// A record of a journal, completed by the file's own record.
struct PendingChange {
    std::wstring name;
    std::uint64_t frn = 0;        // without the sequence number
    std::uint64_t parentFrn = 0;  // likewise
    std::uint32_t reason = 0;
    std::uint32_t fileAttributes = 0;  // as the journal tells
    std::uint64_t size = 0;
    std::uint64_t modified = 0;
    std::uint32_t attributes = 0;  // as the file record tells

    bool has(std::uint32_t reasons) const { return (reason & reasons) != 0; }
};

// Brings the change into the index and appends what became of it, if anything did. The caller holds the index
// mutex.
//
// A file that the index does not know becomes one that it knows, whatever happened to it; a creation of one
// that it knows is passed over, tombstones that were loaded or pruned included.
void applyChange(NTFSIndex& index, const PendingChange& change, std::uint8_t volume,
                 std::vector<FileChange>& applied);

}  // namespace varnelo
