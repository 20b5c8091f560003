#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

#include "support/ntfs_bytes.h"

namespace varnelo::test {

// A change journal that a test writes record by record, and reads as the platform gives it. Any thread may
// call anything.
class ScriptedJournal {
public:
    explicit ScriptedJournal(std::uint64_t journalId = 0x01D5C00012345678, std::uint64_t firstUsn = 0x1000);

    // The record gets its place in the journal, which is its USN, in the order of the calls.
    void add(UsnFields fields);
    // Bytes as they are, for records that are not what they should be.
    void addBytes(Bytes record, std::uint32_t reason);
    // The oldest so many records are forgotten, as when the journal has become too long.
    void dropOldest(std::size_t count);
    // As when it was deleted and made anew: empty, under another identity.
    void recreate(std::uint64_t journalId, std::uint64_t firstUsn);
    std::uint64_t nextUsn() const;

    // FSCTL_QUERY_USN_JOURNAL: version 0, 1 or 2 of the structure, the longest that fits.
    std::optional<std::size_t> query(std::span<std::uint8_t> answer) const;
    // FSCTL_READ_USN_JOURNAL with a request of READ_USN_JOURNAL_DATA_V0. Refused for another journal, and for
    // records that are no longer or not yet there.
    std::optional<std::size_t> read(std::span<const std::uint8_t> request,
                                    std::span<std::uint8_t> answer) const;

private:
    struct Entry {
        std::uint64_t usn;
        std::uint32_t reason;
        Bytes bytes;
    };

    mutable std::mutex mutex;
    // Guarded by `mutex`.
    std::uint64_t id;
    std::uint64_t first;
    std::uint64_t next;
    std::vector<Entry> entries;
};

}  // namespace varnelo::test
