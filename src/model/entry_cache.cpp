#include "model/entry_cache.h"

#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "platform/binary_stream.h"
#include "platform/file_bytes.h"

namespace varnelo {
namespace {

constexpr std::uint32_t kVersion = 1;

// Ten thousand items take some megabytes; a larger file is not ours.
constexpr std::uint64_t kCacheLimitBytes = std::uint64_t{256} << 20;

struct Record {
    ItemIdList pidl;
    std::int64_t timestamp;
    std::int32_t slot;
    std::int64_t slotTime;
};

std::string_view keyOf(const ItemIdList& pidl) {
    return {reinterpret_cast<const char*>(pidl.bytes().data()), pidl.bytes().size()};
}

// The records up to the end or the first error, without those that carry no list.
std::vector<Record> readRecords(BinaryReader& in) {
    std::vector<Record> records;
    const std::uint64_t count = in.u64();
    for (std::uint64_t i = 0; i < count && in.good(); ++i) {
        const auto listBytes = in.bytes(in.u32());
        const std::int64_t timestamp = in.i64();
        const std::int32_t slot = in.i32();
        const std::int64_t slotTime = in.i64();
        if (!in.good()) break;
        if (auto pidl = ItemIdList::fromBytes(listBytes)) {
            records.push_back({std::move(*pidl), timestamp, slot, slotTime});
        }
    }
    return records;
}

void restore(const Record& record, FileMetaData& metaData) {
    metaData.timestamp = record.timestamp;
    metaData.slot = record.slot;
    metaData.slotTime = record.slotTime;
}

}  // namespace

std::vector<std::uint8_t> encodeEntryCache(std::span<const CachedEntry> entries) {
    BinaryWriter out;
    out.u32(kVersion);
    out.u64(entries.size());
    for (const CachedEntry& entry : entries) {
        const auto list = entry.pidl->bytes();
        out.u32(static_cast<std::uint32_t>(list.size()));
        out.bytes(list);
        out.i64(entry.metaData->timestamp);
        out.i32(entry.metaData->slot);
        out.i64(entry.metaData->slotTime);
    }
    return out.take();
}

bool decodeEntryCache(std::span<const std::uint8_t> bytes, std::span<const CachedEntry> entries,
                      const SameItem& sameItem) {
    BinaryReader in(bytes);
    if (in.u32() != kVersion || !in.good()) return false;
    const std::vector<Record> records = readRecords(in);

    // Nearly all lists come back with the bytes they were saved with. The shell is asked only about items and
    // records that found no partner this way, since asking it for every pair takes seconds.
    std::unordered_map<std::string_view, const CachedEntry*> byBytes;
    for (const CachedEntry& entry : entries) {
        if (!entry.pidl->empty()) byBytes.try_emplace(keyOf(*entry.pidl), &entry);
    }
    std::vector<const Record*> strangers;
    std::unordered_set<const CachedEntry*> matched;
    for (const Record& record : records) {
        const auto found = byBytes.find(keyOf(record.pidl));
        if (found == byBytes.end()) {
            strangers.push_back(&record);
            continue;
        }
        restore(record, *found->second->metaData);
        matched.insert(found->second);
    }
    for (const Record* record : strangers) {
        for (const CachedEntry& entry : entries) {
            if (entry.pidl->empty() || matched.contains(&entry)) continue;
            if (!sameItem(record->pidl, *entry.pidl)) continue;
            restore(*record, *entry.metaData);
            break;
        }
    }
    return in.good();
}

bool saveEntryCache(const std::wstring& file, std::span<const CachedEntry> entries) {
    return replaceFile(file, encodeEntryCache(entries));
}

bool loadEntryCache(const std::wstring& file, std::span<const CachedEntry> entries,
                    const SameItem& sameItem) {
    const auto bytes = readWholeFile(file, kCacheLimitBytes);
    return bytes && decodeEntryCache(*bytes, entries, sameItem);
}

}  // namespace varnelo
