#include <algorithm>

#include "index/grams.h"
#include "index/list_proof.h"
#include "index/name_needle.h"
#include "index/name_search.h"
#include "index/ntfs_index.h"
#include "index/search_query.h"

namespace varnelo {

namespace {

std::uint16_t unitAt(NameUnits text, std::size_t i) { return lowerNameUnit(text[i]); }
std::uint16_t unitAt(const std::wstring& text, std::size_t i) {
    return lowerNameUnit(static_cast<std::uint16_t>(text[i]));
}

// The first four units as one number that compares as they do; most comparisons need no more.
template <class Text>
std::uint64_t beginningOf(const Text& text) {
    std::uint64_t beginning = 0;
    for (std::size_t i = 0; i < 4; ++i) beginning = beginning << 16 | (i < text.size() ? unitAt(text, i) : 0);
    return beginning;
}

// Of one, two or three lowered units.
std::uint64_t gramKey(NameUnits gram) {
    if (gram.size() == 1) return unigramKey(gram[0]);
    return gram.size() == 2 ? bigramKey(gram[0], gram[1]) : trigramKey(gram[0], gram[1], gram[2]);
}

// Ordinal, letters folded.
template <class Text>
bool comesBefore(const Text& a, const Text& b) {
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < common; ++i) {
        if (unitAt(a, i) != unitAt(b, i)) return unitAt(a, i) < unitAt(b, i);
    }
    return a.size() < b.size();
}

template <class Text>
struct TextRow {
    std::uint64_t beginning;
    std::uint32_t id;
    Text text;
};

// Sorts by what textOf(id) answers.
template <class TextOf>
void sortByText(std::vector<std::uint32_t>& ids, bool ascending, TextOf textOf) {
    using Row = TextRow<decltype(textOf(0u))>;
    std::vector<Row> rows;
    rows.reserve(ids.size());
    for (const std::uint32_t id : ids) {
        auto text = textOf(id);
        rows.push_back({beginningOf(text), id, std::move(text)});
    }
    const auto before = [](const Row& a, const Row& b) {
        return a.beginning != b.beginning ? a.beginning < b.beginning : comesBefore(a.text, b.text);
    };
    std::sort(rows.begin(), rows.end(),
              [&](const Row& a, const Row& b) { return ascending ? before(a, b) : before(b, a); });
    std::transform(rows.begin(), rows.end(), ids.begin(), [](const Row& row) { return row.id; });
}

template <class ValueOf>
void sortByValue(std::vector<std::uint32_t>& ids, bool ascending, ValueOf valueOf) {
    struct Row {
        std::uint64_t value;
        std::uint32_t id;
    };
    std::vector<Row> rows;
    rows.reserve(ids.size());
    for (const std::uint32_t id : ids) rows.push_back({valueOf(id), id});
    std::sort(rows.begin(), rows.end(),
              [&](const Row& a, const Row& b) { return ascending ? a.value < b.value : b.value < a.value; });
    std::transform(rows.begin(), rows.end(), ids.begin(), [](const Row& row) { return row.id; });
}

}  // namespace

void NTFSIndex::tellAllColumns() {
    if (columnsTold) return;
    column.rebuild(records(), pool);
    columnsTold = true;
}

void NTFSIndex::prepareSearches() {
    tellAllColumns();
    column.learnWords(pool);
    if (lists == Lists::Claimed) {
        const bool fit = listsFitNames(records(), pool, unigramIndex, bigramIndex, trigramIndex);
        lists = fit ? Lists::Proven : Lists::Doubtful;
    }
    stamps.begin(table.size());
}

std::vector<std::uint32_t> NTFSIndex::searchNames(std::wstring_view query) {
    if (!columnsTold && !query.empty() && !hasPatterns(query) && lists != Lists::Doubtful) {
        return searchInPlace(query);
    }
    tellAllColumns();
    NameSearch search({unigramIndex, bigramIndex, trigramIndex, column, pool, extensionTable, stamps,
                       lists == Lists::Proven});
    return search.run(query);
}

// Without columns: records are looked at one by one, those of the shortest list that all hits stand in.
std::vector<std::uint32_t> NTFSIndex::searchInPlace(std::wstring_view text) const {
    std::vector<std::uint16_t> units(text.begin(), text.end());
    std::transform(units.begin(), units.end(), units.begin(), lowerNameUnit);
    const std::size_t gramUnits = std::min<std::size_t>(units.size(), 3);
    const PostingMap& map = gramUnits == 1 ? unigramIndex : gramUnits == 2 ? bigramIndex : trigramIndex;
    std::optional<std::uint32_t> first;
    std::optional<std::uint32_t> shortest;
    for (std::size_t i = 0; i + gramUnits <= units.size(); ++i) {
        const auto list = map.find(gramKey(std::span(units).subspan(i, gramUnits)));
        if (!list) return {};
        if (!first) first = list;
        if (!shortest || map.roughSize(*list) < map.roughSize(*shortest)) shortest = list;
    }

    const NameNeedle needle(units, pool);
    FlatArray<std::uint64_t> hits;
    hits.assign(table.size() / 64 + 1, 0);
    for (const std::uint32_t entry : map.entries(*shortest)) {
        if (entry >= table.size() || table[entry].deleted() || !pool.holds(table[entry].nameOffset)) continue;
        const bool hit = units.size() < 3 || needle.isInNameAt(table[entry].nameOffset);
        hits[entry / 64] |= std::uint64_t{hit} << entry % 64;
    }
    std::vector<std::uint32_t> found = map.entries(*first);
    std::erase_if(found, [&](std::uint32_t entry) {
        return entry >= table.size() || (hits[entry / 64] >> entry % 64 & 1) == 0;
    });
    return found;
}

void NTFSIndex::sortResults(std::vector<std::uint32_t>& ids, std::uint32_t sortColumn, bool ascending) {
    const auto recordOf = [this](std::uint32_t id) { return id < table.size() ? table[id] : FileRecord{}; };
    switch (sortColumn) {
        case kSortByName:
            return sortByText(ids, ascending, [this](std::uint32_t id) { return nameUnits(id); });
        case kSortByPath:
            return sortByText(ids, ascending, [this](std::uint32_t id) {
                return id < table.size() ? fullPath(table[id]) : std::wstring();
            });
        case kSortBySize:
            return sortByValue(ids, ascending, [&](std::uint32_t id) { return recordOf(id).size; });
        case kSortByModified:
            return sortByValue(ids, ascending, [&](std::uint32_t id) { return recordOf(id).modified; });
        default:
            return;
    }
}

std::vector<IndexRow> NTFSIndex::entriesForRange(std::span<const std::uint32_t> ids, std::uint64_t first,
                                                 std::uint64_t count) {
    std::vector<IndexRow> rows;
    if (first >= ids.size()) return rows;
    const std::span<const std::uint32_t> wanted =
        ids.subspan(first, std::min<std::uint64_t>(count, ids.size() - first));
    rows.reserve(wanted.size());
    for (const std::uint32_t id : wanted) {
        if (id >= table.size()) continue;
        const FileRecord& record = table[id];
        rows.push_back({&record, fullPath(record), record.size, record.modified, record.attributes});
    }
    return rows;
}

}  // namespace varnelo
