#include "support/scripted_journal.h"

#include <algorithm>

#include "platform/binary_stream.h"
#include "support/ntfs_attribute.h"

namespace varnelo::test {

ScriptedJournal::ScriptedJournal(std::uint64_t journalId, std::uint64_t firstUsn)
    : id(journalId), first(firstUsn), next(firstUsn) {}

void ScriptedJournal::add(UsnFields fields) {
    const std::lock_guard lock(mutex);
    fields.usn = next;
    Bytes bytes = usnRecord(fields);
    next += bytes.size();
    entries.push_back({fields.usn, fields.reason, std::move(bytes)});
}

void ScriptedJournal::addBytes(Bytes record, std::uint32_t reason) {
    const std::lock_guard lock(mutex);
    const std::uint64_t usn = next;
    next += std::max<std::size_t>(record.size(), 8);
    entries.push_back({usn, reason, std::move(record)});
}

void ScriptedJournal::dropOldest(std::size_t count) {
    const std::lock_guard lock(mutex);
    entries.erase(entries.begin(),
                  entries.begin() + static_cast<std::ptrdiff_t>(std::min(count, entries.size())));
    first = entries.empty() ? next : entries.front().usn;
}

void ScriptedJournal::recreate(std::uint64_t journalId, std::uint64_t firstUsn) {
    const std::lock_guard lock(mutex);
    id = journalId;
    first = next = firstUsn;
    entries.clear();
}

std::uint64_t ScriptedJournal::nextUsn() const {
    const std::lock_guard lock(mutex);
    return next;
}

std::optional<std::size_t> ScriptedJournal::query(std::span<std::uint8_t> answer) const {
    const std::lock_guard lock(mutex);
    BinaryWriter out;
    out.u64(id);
    out.u64(first);
    out.u64(next);
    out.u64(first);               // the lowest valid one
    out.u64(0x7FFFFFFFFFFF0000);  // the highest possible one
    out.u64(0x2000000);           // at most so many bytes
    out.u64(0x800000);            // grown by so many
    out.u16(2);                   // versions of records: from
    out.u16(4);                   // to
    out.u32(0);
    out.u64(0);  // range tracking: chunk
    out.u64(0);  // and threshold
    const std::size_t size = answer.size() >= 80 ? 80 : answer.size() >= 64 ? 64 : 56;
    if (answer.size() < size) return std::nullopt;
    std::copy_n(out.bytes().begin(), std::min(size, out.bytes().size()), answer.begin());
    return size;
}

std::optional<std::size_t> ScriptedJournal::read(std::span<const std::uint8_t> request,
                                                 std::span<std::uint8_t> answer) const {
    constexpr std::size_t kRequestBytes = 40;
    const std::lock_guard lock(mutex);
    if (request.size() != kRequestBytes || answer.size() < 8) return std::nullopt;
    const std::uint64_t start = littleEndian(request, 0, 8);
    const std::uint64_t reasons = littleEndian(request, 8, 4);
    if (littleEndian(request, 32, 8) != id || start < first || start > next) return std::nullopt;
    std::size_t used = 8;
    std::uint64_t position = next;
    for (const Entry& entry : entries) {
        if (entry.usn < start || (entry.reason & reasons) == 0) continue;
        if (entry.bytes.size() > answer.size() - used) {
            position = entry.usn;
            break;
        }
        std::copy(entry.bytes.begin(), entry.bytes.end(), answer.begin() + static_cast<std::ptrdiff_t>(used));
        used += entry.bytes.size();
    }
    // A record that does not even fit alone.
    if (used == 8 && position == start && start != next) return std::nullopt;
    BinaryWriter out;
    out.u64(position);
    std::copy(out.bytes().begin(), out.bytes().end(), answer.begin());
    return used;
}

}  // namespace varnelo::test
