#include "index/ntfs_index.h"

#include <algorithm>
#include <utility>

#include "index/grams.h"
#include "index/record_key_hash.h"

namespace varnelo {

std::optional<std::uint8_t> NTFSIndex::volumeIndexOf(wchar_t letter) {
    const auto unit = static_cast<std::uint16_t>(static_cast<std::uint32_t>(letter));
    const auto known = std::find(volumes.begin(), volumes.end(), unit);
    if (known == volumes.end() && volumes.size() >= kMostVolumes) return std::nullopt;
    const auto place = static_cast<std::uint8_t>(known - volumes.begin());
    if (known == volumes.end()) volumes.push_back(unit);
    return place;
}

NameUnits NTFSIndex::nameUnits(std::uint32_t index) const {
    return index < table.size() ? pool.at(table[index].nameOffset) : NameUnits{};
}

std::optional<std::uint32_t> NTFSIndex::recordByKey(std::uint64_t key) const {
    // Changes nothing that can be seen; readers hold the mutex like everybody else.
    if (!keysEntered) const_cast<NTFSIndex&>(*this).enterKeys();
    return keys.find(recordKeyHash(key), [&](std::uint32_t index) { return recordKey(table[index]) == key; });
}

void NTFSIndex::enterKey(std::uint32_t index) {
    const std::uint64_t key = recordKey(table[index]);
    keys.put(
        recordKeyHash(key), index, [&](std::uint32_t other) { return recordKey(table[other]) == key; },
        [this](std::uint32_t other) { return recordKeyHash(recordKey(table[other])); });
}

// Tombstones too, and the last record of a key wins.
void NTFSIndex::enterKeys() {
    keysEntered = true;
    // Half full: to look at a place that is taken is to look at a record.
    keys.reserve(table.size() + table.size() / 3 * 2, [](std::uint32_t) { return std::uint64_t{0}; });
    for (std::uint32_t i = 0; i < table.size(); ++i) enterKey(i);
}

std::uint32_t NTFSIndex::addRecord(const FileFacts& facts, std::wstring_view name) {
    const auto index = static_cast<std::uint32_t>(table.size());
    table.push_back({});
    store(index, facts, name);
    return index;
}

std::uint32_t NTFSIndex::createRecord(const FileFacts& facts, std::wstring_view name) {
    while (!freeSlots.empty()) {
        const std::uint32_t index = freeSlots.back();
        freeSlots.pop_back();
        // After a load the places of an earlier content mean nothing.
        if (index >= table.size() || !table[index].deleted()) continue;
        if (recordByKey(recordKey(table[index])) == index) continue;
        store(index, facts, name);
        return index;
    }
    return addRecord(facts, name);
}

void NTFSIndex::store(std::uint32_t index, const FileFacts& facts, std::wstring_view name) {
    FileRecord& record = table[index];
    record.frn = facts.frn & kFrnMask;
    record.parentFrn = facts.parentFrn & kFrnMask;
    record.size = facts.size;
    record.modified = facts.modified;
    record.attributes = facts.attributes;
    record.nameOffset = pool.add(name);
    record.flags = facts.flags;
    record.volume = currentVolume;
    record.extension = extensionTable.idOf(name);
    tellColumns(index);
    if (keysEntered) enterKey(index);
    if (!record.deleted()) appendGrams(nameUnits(index), index, unigramIndex, bigramIndex, trigramIndex);
}

void NTFSIndex::renameRecord(std::uint32_t index, const FileFacts& facts, std::wstring_view name) {
    if (index >= table.size()) return;
    FileRecord& record = table[index];
    dropPostings(index, nameUnits(record));
    pathCache.erase(recordKey(record));
    record.parentFrn = facts.parentFrn & kFrnMask;
    record.nameOffset = pool.add(name);
    record.flags = facts.flags;
    record.size = facts.size;
    record.modified = facts.modified;
    record.attributes = facts.attributes;
    record.extension = extensionTable.idOf(name);
    tellColumns(index);
    if (!record.deleted()) appendGrams(nameUnits(index), index, unigramIndex, bigramIndex, trigramIndex);
}

void NTFSIndex::updateRecord(std::uint32_t index, std::uint64_t parentFrn, std::uint64_t size,
                             std::uint64_t modified, std::uint32_t attributes) {
    if (index >= table.size()) return;
    table[index].parentFrn = parentFrn & kFrnMask;
    fillRecord(index, size, modified, attributes);
    pathCache.erase(recordKey(table[index]));
}

void NTFSIndex::fillRecord(std::uint32_t index, std::uint64_t size, std::uint64_t modified,
                           std::uint32_t attributes) {
    if (index >= table.size()) return;
    table[index].size = size;
    table[index].modified = modified;
    table[index].attributes = attributes;
}

void NTFSIndex::setSize(std::uint32_t index, std::uint64_t size) {
    if (index < table.size()) table[index].size = size;
}

void NTFSIndex::removeRecord(std::uint32_t index) {
    if (index >= table.size()) return;
    if (!keysEntered) enterKeys();
    const std::uint64_t key = recordKey(table[index]);
    // What was removed already is on the stack, and nobody may take it from there twice.
    if (table[index].deleted() && recordByKey(key) != index) return;
    dropPostings(index, nameUnits(index));
    keys.erase(
        recordKeyHash(key), [&](std::uint32_t other) { return recordKey(table[other]) == key; },
        [this](std::uint32_t other) { return recordKeyHash(recordKey(table[other])); });
    pathCache.erase(key);
    tombstone(index);
    freeSlots.push_back(index);
}

void NTFSIndex::pruneRecord(std::uint32_t index) {
    if (index >= table.size()) return;
    dropPostings(index, nameUnits(index));
    tombstone(index);
}

void NTFSIndex::tombstone(std::uint32_t index) {
    table[index].flags |= FileRecord::kDeleted;
    tellColumns(index);
}

void NTFSIndex::tellColumns(std::uint32_t index) {
    if (columnsTold) column.set(index, table[index], pool);
}

void NTFSIndex::addPostings(std::uint32_t index, std::wstring_view name) {
    lists = Lists::Doubtful;
    const std::vector<std::uint16_t> units(name.begin(), name.end());
    appendGrams(units, index, unigramIndex, bigramIndex, trigramIndex);
}

void NTFSIndex::removePostings(std::uint32_t index, std::wstring_view name) {
    lists = Lists::Doubtful;
    const std::vector<std::uint16_t> units(name.begin(), name.end());
    dropPostings(index, units);
}

void NTFSIndex::dropPostings(std::uint32_t index, NameUnits name) {
    removeGrams(name, index, unigramIndex, bigramIndex, trigramIndex);
}

void NTFSIndex::clearIndex() {
    if (stopMonitor) stopMonitor();
    const std::lock_guard lock(mutex);
    unigramIndex.clear();
    bigramIndex.clear();
    trigramIndex.clear();
    storedLists.reset();
    table.clear();
    column.clear();
    columnsTold = true;
    pool.clear();
    extensionTable.clear();
    keys.clear();
    keysEntered = true;
    pathCache.clear();
    freeSlots.clear();
    volumes.clear();
    currentVolume = 0;
    shownFile.close();
    lists = Lists::Proven;
    stamps.clear();
}

void NTFSIndex::swapContent(NTFSIndex& other) {
    std::swap(volumes, other.volumes);
    std::swap(currentVolume, other.currentVolume);
    std::swap(unigramIndex, other.unigramIndex);
    std::swap(bigramIndex, other.bigramIndex);
    std::swap(trigramIndex, other.trigramIndex);
    std::swap(table, other.table);
    std::swap(column, other.column);
    std::swap(columnsTold, other.columnsTold);
    std::swap(pool, other.pool);
    std::swap(extensionTable, other.extensionTable);
    std::swap(keys, other.keys);
    std::swap(keysEntered, other.keysEntered);
    std::swap(pathCache, other.pathCache);
    std::swap(freeSlots, other.freeSlots);
    std::swap(storedLists, other.storedLists);
    std::swap(shownFile, other.shownFile);
    std::swap(lists, other.lists);
}

}  // namespace varnelo
