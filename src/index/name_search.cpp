#include "index/name_search.h"

#include <algorithm>
#include <array>
#include <bit>
#include <tuple>
#include <utility>

#include "index/extension_table.h"
#include "index/grams.h"
#include "index/search_query.h"
#include "index/unit_vector.h"
#include "platform/text.h"

namespace varnelo {

namespace {

std::vector<std::uint16_t> loweredUnits(std::wstring_view text) {
    std::vector<std::uint16_t> units(text.size());
    std::transform(text.begin(), text.end(), units.begin(),
                   [](wchar_t unit) { return lowerNameUnit(static_cast<std::uint16_t>(unit)); });
    return units;
}

// Bit i: the value stands at `begin` + i. Up to 64 places.
std::uint64_t placesOf(std::uint16_t value, const FlatArray<std::uint16_t>& column, std::size_t begin) {
    std::uint64_t places = 0;
    const std::size_t count = std::min<std::size_t>(64, column.size() - begin);
    const std::uint16_t* values = column.data() + begin;
    std::size_t i = 0;
    const __m128i wanted = _mm_set1_epi16(static_cast<short>(value));
    for (; i + 16 <= count; i += 16) {
        const __m128i same = _mm_packs_epi16(_mm_cmpeq_epi16(loadVector(values + i), wanted),
                                             _mm_cmpeq_epi16(loadVector(values + i + 8), wanted));
        places |= static_cast<std::uint64_t>(_mm_movemask_epi8(same)) << i;
    }
    for (; i < count; ++i) places |= std::uint64_t{values[i] == value} << i;
    return places;
}

}  // namespace

std::vector<std::uint32_t> NameSearch::run(std::wstring_view query) {
    Ids found;
    if (query.empty()) {
        collect(from.columns.liveWords(), found);
    } else if (!hasPatterns(query)) {
        findText(loweredUnits(query), found);
    } else {
        const std::vector<std::wstring> patterns = splitPatterns(query);
        if (const auto extensions = extensionsOf(patterns)) {
            findExtensions(*extensions, found);
        } else {
            std::vector<Glob> globs;
            globs.reserve(patterns.size());
            for (const std::wstring& pattern : patterns) globs.emplace_back(loweredUnits(pattern));
            findPatterns(globs, found);
        }
    }
    return found;
}

void NameSearch::collect(const Marks& marks, Ids& found) const {
    std::size_t count = 0;
    for (const std::uint64_t word : marks) count += static_cast<std::size_t>(std::popcount(word));
    found.reserve(found.size() + count);
    std::array<std::uint32_t, 64> ids;
    for (std::size_t w = 0; w < marks.size(); ++w) {
        std::size_t kept = 0;
        for (std::uint64_t bits = marks[w]; bits != 0; bits &= bits - 1) {
            ids[kept++] =
                static_cast<std::uint32_t>(w * 64 + static_cast<std::size_t>(std::countr_zero(bits)));
        }
        found.insert(found.end(), ids.begin(), ids.begin() + kept);
    }
}

void NameSearch::findExtensions(const std::vector<std::wstring>& wanted, Ids& found) const {
    std::vector<std::uint16_t> ids;
    for (const std::wstring& extension : wanted) {
        if (const auto id = from.extensions.find(extension)) ids.push_back(*id);
    }
    if (ids.empty()) return;
    const FlatArray<std::uint16_t>& column = from.columns.extensions();
    const FlatArray<std::uint64_t>& alive = from.columns.liveWords();
    Marks marks;
    marks.assign(alive.size(), 0);
    for (const std::uint16_t id : ids) {
        for (std::size_t w = 0; w < marks.size(); ++w) marks[w] |= placesOf(id, column, w * 64);
    }
    for (std::size_t w = 0; w < marks.size(); ++w) marks[w] &= alive[w];
    collect(marks, found);
}

void NameSearch::collectByValue(const FlatArray<std::uint16_t>& column,
                                const std::vector<std::uint8_t>& wanted, Ids& found) const {
    Marks marks;
    marks.resizeUnwritten(from.columns.liveWords().size());
    for (std::size_t w = 0; w < marks.size(); ++w) {
        const std::size_t count = std::min<std::size_t>(64, column.size() - w * 64);
        std::uint64_t hits = 0;
        for (std::size_t i = 0; i < count; ++i) hits |= std::uint64_t{wanted[column[w * 64 + i]]} << i;
        marks[w] = hits & from.columns.liveWords()[w];
    }
    collect(marks, found);
}

std::vector<NameSearch::GramList> NameSearch::gramsOf(GlobUnits pattern) const {
    std::vector<GramList> lists;
    const auto add = [&](const PostingMap& map, std::uint64_t key) {
        const auto list = map.find(key);
        lists.push_back({&map, list.value_or(0), list ? map.roughSize(*list) : 0});
    };
    const auto isLiteral = [&](std::size_t i) {
        return i < pattern.size() && pattern[i] != '*' && pattern[i] != '?';
    };
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        if (!isLiteral(i)) continue;
        const bool begins = i == 0 || !isLiteral(i - 1);
        if (isLiteral(i + 1) && isLiteral(i + 2)) {
            add(from.trigrams, trigramKey(pattern[i], pattern[i + 1], pattern[i + 2]));
        } else if (begins && isLiteral(i + 1)) {
            add(from.bigrams, bigramKey(pattern[i], pattern[i + 1]));
        } else if (begins) {
            add(from.unigrams, unigramKey(pattern[i]));
        }
    }
    const auto placeOf = [](const GramList& list) { return std::tuple(list.size, list.map, list.list); };
    std::sort(lists.begin(), lists.end(),
              [&](const GramList& a, const GramList& b) { return placeOf(a) < placeOf(b); });
    const auto same = [&](const GramList& a, const GramList& b) { return placeOf(a) == placeOf(b); };
    lists.erase(std::unique(lists.begin(), lists.end(), same), lists.end());
    return lists;
}

void NameSearch::mark(const GramList& list, Marks& marks) const {
    marks.assign(from.columns.liveWords().size(), 0);
    if (list.size == 0) return;
    const std::size_t records = from.columns.size();
    list.map->forEachSegment(list.list, [&](const PostingSegment& segment) {
        for (std::size_t i = 0; i < segment.count; ++i) {
            const std::uint32_t entry = segment.at(i);
            if (entry < records) marks[entry / 64] |= std::uint64_t{1} << entry % 64;
        }
    });
}

NameSearch::Marks NameSearch::recordsInAll(std::span<const GramList> lists) const {
    // To read a list's entry costs a small part of what it costs to look at a name.
    constexpr std::size_t kEntriesForAName = 8;
    Marks marks;
    mark(lists.front(), marks);
    for (std::size_t w = 0; w < marks.size(); ++w) marks[w] &= from.columns.liveWords()[w];
    std::size_t left = lists.front().size;
    for (std::size_t i = 1; i < lists.size() && lists[i].size < kEntriesForAName * left; ++i) {
        const std::size_t before = std::exchange(left, keepMarked(lists[i], marks));
        // What is in two of the lists for the most part is in all of them.
        if (left > before - before / 4) break;
    }
    return marks;
}

std::size_t NameSearch::keepMarked(const GramList& list, Marks& marks) const {
    Marks kept;
    kept.assign(marks.size(), 0);
    std::size_t count = 0;
    const std::size_t records = from.columns.size();
    list.map->forEachSegment(list.list, [&](const PostingSegment& segment) {
        for (std::size_t i = 0; i < segment.count; ++i) {
            const std::uint32_t entry = segment.at(i);
            if (entry >= records) continue;
            const std::uint64_t bit = marks[entry / 64] & std::uint64_t{1} << entry % 64;
            kept[entry / 64] |= bit;
            count += bit != 0 ? 1 : 0;
        }
    });
    marks = std::move(kept);
    return count;
}

}  // namespace varnelo
