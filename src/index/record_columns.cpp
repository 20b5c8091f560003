#include "index/record_columns.h"

#include "index/in_stretches.h"

namespace varnelo {

void RecordColumns::set(std::size_t index, const FileRecord& record, const NamePool& names) {
    if (index == offsets.size()) {
        offsets.push_back(0);
        lengths.push_back(0);
        extensionIds.push_back(0);
        words.push_back(kAnyWord);
        if (index % 64 == 0) alive.push_back(0);
    }
    offsets[index] = record.nameOffset;
    lengths[index] = static_cast<std::uint16_t>(names.at(record.nameOffset).size());
    everyNameHeld = everyNameHeld && names.holds(record.nameOffset);
    extensionIds[index] = record.extension;
    words[index] = kAnyWord;
    const std::uint64_t bit = std::uint64_t{1} << index % 64;
    alive[index / 64] = record.deleted() ? alive[index / 64] & ~bit : alive[index / 64] | bit;
}

void RecordColumns::rebuild(std::span<const FileRecord> records, const NamePool& names) {
    clear();
    offsets.reserve(records.size());
    lengths.reserve(records.size());
    extensionIds.reserve(records.size());
    words.reserve(records.size());
    alive.reserve(records.size() / 64 + 1);
    for (std::size_t i = 0; i < records.size(); ++i) set(i, records[i], names);
}

void RecordColumns::learnWords(const NamePool& names) {
    inStretches(words.size(), kRecordsInStretch, [&](std::size_t begin, std::size_t end) {
        for (std::size_t i = begin; i < end; ++i) words[i] = absentWordsOf(names.at(offsets[i]));
    });
}

void RecordColumns::clear() {
    offsets.clear();
    lengths.clear();
    extensionIds.clear();
    words.clear();
    alive.clear();
    everyNameHeld = true;
}

}  // namespace varnelo
