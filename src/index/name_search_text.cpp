#include <algorithm>
#include <array>
#include <functional>
#include <numeric>

#include "index/grams.h"
#include "index/name_filter.h"
#include "index/name_needle.h"
#include "index/name_search.h"

namespace varnelo {

namespace {

// Appends the entries of the segment that are among the matches, which ascend, as often as they stand there.
void keepMatches(const PostingSegment& segment, const std::vector<std::uint32_t>& matches,
                 std::vector<std::uint32_t>& found) {
    if (!segment.ascending) {
        for (std::size_t i = 0; i < segment.count; ++i) {
            const std::uint32_t entry = segment.at(i);
            if (std::binary_search(matches.begin(), matches.end(), entry)) found.push_back(entry);
        }
        return;
    }
    if (segment.count == 0) return;
    std::size_t at = 0;
    auto match = std::lower_bound(matches.begin(), matches.end(), segment.at(0) & ~kRemovedEntry);
    for (; match != matches.end(); ++match) {
        at = segment.lowerBound(*match, at);
        if (at == segment.count) return;
        for (; at < segment.count && (segment.at(at) & ~kRemovedEntry) == *match; ++at) {
            if (segment.at(at) == *match) found.push_back(*match);
        }
    }
}

}  // namespace

void NameSearch::findText(const Units& text, Ids& found) {
    if (text.size() == 1) {
        if (const auto list = from.unigrams.find(unigramKey(text[0])))
            collectList(from.unigrams, *list, found);
        return;
    }
    if (text.size() == 2) {
        const auto list = from.bigrams.find(bigramKey(text[0], text[1]));
        if (list) collectList(from.bigrams, *list, found);
        return;
    }
    const auto first = from.trigrams.find(trigramKey(text[0], text[1], text[2]));
    if (!first) return;
    if (text.size() > 3) {
        findByAllTrigrams(text, *first, found);
    } else if (from.listsProven) {
        collectList(from.trigrams, *first, found);
    } else {
        filterList(*first, from.columns.liveWords(), NameNeedle(text, from.names), found);
    }
}

template <class Use>
void NameSearch::forMarked(const PostingMap& map, std::uint32_t list, const Marks& marks, Use use) const {
    const std::size_t records = from.columns.size();
    if (records == 0) return;
    std::array<std::uint32_t, 1024> block;
    map.forEachSegment(list, [&](const PostingSegment& segment) {
        for (std::size_t begin = 0; begin < segment.count; begin += block.size()) {
            const std::size_t end = std::min(segment.count, begin + block.size());
            std::size_t kept = 0;
            // Without a branch: the next place is written in any case, and kept when the entry counts.
            for (std::size_t i = begin; i < end; ++i) {
                const std::uint32_t entry = segment.at(i);
                const bool known = entry < records;
                const std::uint32_t index = known ? entry : 0;
                block[kept] = entry;
                kept += marks[index / 64] >> index % 64 & std::uint64_t{known};
            }
            use(std::span(block.data(), kept));
        }
    });
}

void NameSearch::collectList(const PostingMap& map, std::uint32_t list, Ids& found) const {
    found.reserve(map.roughSize(list));
    forMarked(map, list, from.columns.liveWords(),
              [&](std::span<const std::uint32_t> ids) { found.insert(found.end(), ids.begin(), ids.end()); });
    if (from.columns.allNamed()) return;
    std::erase_if(
        found, [this](std::uint32_t index) { return !from.names.holds(from.columns.nameOffsets()[index]); });
}

void NameSearch::filterList(std::uint32_t list, const Marks& marks, const NameNeedle& needle,
                            Ids& found) const {
    NameFilter filter(from.columns, from.names, found,
                      [&](std::uint32_t offset) { return needle.isInNameAt(offset); });
    forMarked(from.trigrams, list, marks, [&](std::span<const std::uint32_t> ids) { filter.push(ids); });
    filter.flush();
}

// The answer is what the list of the first three units holds, of the records whose names hold the whole text.
void NameSearch::findByAllTrigrams(const Units& text, std::uint32_t first, Ids& found) const {
    // A few matches are looked up in a long list faster than it is read.
    constexpr std::size_t kLookUpFrom = 16;
    const NameNeedle needle(text, from.names);
    if (!from.listsProven) return filterList(first, from.columns.liveWords(), needle, found);
    std::vector<GramList> lists = gramsOf(text);
    const std::size_t fewest = lists.front().size;
    if (fewest == 0) return;
    if (fewest <= from.trigrams.roughSize(first) / kLookUpFrom) {
        Ids matches;
        collect(recordsInAll(lists), matches);
        keepHolding(needle, matches);
        return from.trigrams.forEachSegment(
            first, [&](const PostingSegment& segment) { keepMatches(segment, matches, found); });
    }
    std::erase_if(lists, [&](const GramList& list) { return list.list == first; });
    if (lists.empty()) return filterList(first, from.columns.liveWords(), needle, found);  // "aaaa"
    const bool inAll = stampThoseIn(lists);
    found = from.stamps.stampedIn(from.trigrams, first);
    if (inAll) {
        dropThoseThatLack(text, needle, found);
    } else {
        keepHolding(needle, found);
    }
}

bool NameSearch::stampThoseIn(std::span<const GramList> lists) const {
    // To read a list's entry costs a small part of what it costs to look at a name.
    constexpr std::size_t kEntriesForAName = 16;
    std::size_t unread = 0;
    for (const GramList& list : lists) unread += list.size;
    from.stamps.begin(from.columns.size());
    std::size_t left = 0;
    for (std::size_t i = 0; i < lists.size(); ++i) {
        if (i == RecordStamps::kMostLists || (i != 0 && unread / kEntriesForAName > left)) return false;
        left = from.stamps.stampThoseIn(*lists[i].map, lists[i].list);
        unread -= lists[i].size;
    }
    return true;
}

void NameSearch::keepHolding(const NameNeedle& needle, Ids& ids) const {
    Ids holding;
    NameFilter filter(from.columns, from.names, holding,
                      [&](std::uint32_t offset) { return needle.isInNameAt(offset); });
    filter.push(ids);
    filter.flush();
    ids.swap(holding);
}

void NameSearch::dropThoseThatLack(const Units& text, const NameNeedle& needle, Ids& found) const {
    const std::vector<AbsentWords> wordsOfText = wordsIn(text);
    const AbsentWords anyOfText =
        std::accumulate(wordsOfText.begin(), wordsOfText.end(), AbsentWords{0}, std::bit_or());
    const FlatArray<AbsentWords>& words = from.columns.absentWords();
    Ids doubtful(found.size());
    std::size_t count = 0;
    for (const std::uint32_t id : found) {
        doubtful[count] = id;
        const AbsentWords common = words[id] & anyOfText;
        count += (common & (common - 1)) != 0 ? 1 : 0;  // two bits, or more
    }
    doubtful.resize(count);
    std::erase_if(doubtful, [&](std::uint32_t id) { return !mayLack(words[id], wordsOfText); });
    Ids holding = doubtful;
    keepHolding(needle, holding);
    // All of them are in the order of what was found.
    const auto erase = [](Ids& ids, const Ids& taken) {
        auto next = taken.begin();
        std::erase_if(ids, [&](std::uint32_t id) {
            const bool take = next != taken.end() && *next == id;
            next += take ? 1 : 0;
            return take;
        });
    };
    erase(doubtful, holding);
    erase(found, doubtful);
}

}  // namespace varnelo
