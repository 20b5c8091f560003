#include "index/name_search.h"

#include <algorithm>
#include <array>
#include <bit>
#include <tuple>

#include "index/extension_table.h"
#include "index/glob.h"
#include "index/grams.h"
#include "index/name_needle.h"
#include "index/search_query.h"
#include "platform/text.h"

namespace varnelo {

namespace {

std::vector<std::uint16_t> loweredUnits(std::wstring_view text) {
    std::vector<std::uint16_t> units(text.size());
    std::transform(text.begin(), text.end(), units.begin(),
                   [](wchar_t unit) { return lowerNameUnit(static_cast<std::uint16_t>(unit)); });
    return units;
}

// Runs test(index, name) over a stream of records whose names are usable. Names lie far apart: each is
// asked for from memory well before its turn.
template <class Test>
class NameStream {
public:
    NameStream(const RecordColumns& recordColumns, const NamePool& namePool, Test nameTest)
        : columns(recordColumns), names(namePool), test(nameTest) {}

    void push(std::uint32_t index) {
        __builtin_prefetch(&columns.nameOffsets()[index]);
        __builtin_prefetch(&columns.nameLengths()[index]);
        waiting[count++] = index;
        if (count == waiting.size()) flush();
    }
    void flush() {
        for (std::size_t i = 0; i < count; ++i) __builtin_prefetch(nameAt(i));
        for (std::size_t i = 0; i < count; ++i) {
            test(waiting[i], NameUnits(nameAt(i), columns.nameLengths()[waiting[i]]));
        }
        count = 0;
    }

private:
    const std::uint16_t* nameAt(std::size_t i) const {
        return names.data() + columns.nameOffsets()[waiting[i]];
    }

    const RecordColumns& columns;
    const NamePool& names;
    Test test;
    std::array<std::uint32_t, 32> waiting;
    std::size_t count = 0;
};

template <class Use>
void forBits(const FlatArray<std::uint64_t>& words, const FlatArray<std::uint64_t>& among, Use use) {
    for (std::size_t w = 0; w < words.size(); ++w) {
        for (std::uint64_t bits = words[w] & among[w]; bits != 0; bits &= bits - 1) {
            use(static_cast<std::uint32_t>(w * 64 + static_cast<std::size_t>(std::countr_zero(bits))));
        }
    }
}

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

std::vector<std::uint32_t> NameSearch::run(std::wstring_view query) {
    Ids found;
    if (query.empty()) {
        collectLive(found);
    } else if (!hasPatterns(query)) {
        findText(loweredUnits(query), found);
    } else {
        const std::vector<std::wstring> patterns = splitPatterns(query);
        if (const auto extensions = extensionsOf(patterns)) {
            findExtensions(*extensions, found);
        } else {
            findPatterns(patterns, found);
        }
    }
    return found;
}

bool NameSearch::usable(std::uint32_t index) const {
    return index < from.columns.size() && from.columns.live(index) &&
           (allNamed || from.names.holds(from.columns.nameOffsets()[index]));
}

void NameSearch::collectLive(Ids& found) const {
    found.reserve(from.columns.size());
    forBits(from.columns.liveWords(), from.columns.liveWords(), [&](std::uint32_t i) { found.push_back(i); });
}

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
    } else if (from.listsComplete && from.trigrams.verified(*first)) {
        collectList(from.trigrams, *first, found);
    } else if (filterList(*first, NameNeedle(text), found)) {
        from.trigrams.setVerified(*first);
    }
}

void NameSearch::collectList(const PostingMap& map, std::uint32_t list, Ids& found) const {
    const std::size_t records = from.columns.size();
    if (records == 0) return;
    found.reserve(map.roughSize(list));
    const std::uint64_t* alive = from.columns.liveWords().data();
    std::array<std::uint32_t, 1024> block;
    map.forEachSegment(list, [&](const PostingSegment& segment) {
        for (std::size_t begin = 0; begin < segment.count; begin += block.size()) {
            const std::size_t end = std::min(segment.count, begin + block.size());
            std::uint32_t* to = block.data();
            // Without a branch: the next place is written in any case, and kept when the entry counts.
            for (std::size_t i = begin; i < end; ++i) {
                const std::uint32_t entry = segment.at(i);
                const bool known = entry < records;
                const std::uint32_t index = known ? entry : 0;
                *to = entry;
                to += alive[index / 64] >> index % 64 & std::uint64_t{known};
            }
            found.insert(found.end(), block.data(), to);
        }
    });
    if (!allNamed) {
        std::erase_if(found, [this](std::uint32_t index) { return !usable(index); });
    }
}

bool NameSearch::filterList(std::uint32_t list, const NameNeedle& needle, Ids& found) const {
    bool all = true;
    NameStream stream(from.columns, from.names, [&](std::uint32_t index, NameUnits name) {
        if (needle.isIn(name)) {
            found.push_back(index);
        } else {
            all = false;
        }
    });
    from.trigrams.forEachSegment(list, [&](const PostingSegment& segment) {
        for (std::size_t i = 0; i < segment.count; ++i) {
            const std::uint32_t entry = segment.at(i);
            if (usable(entry)) {
                stream.push(entry);
            } else if (entry < kRemovedEntry) {
                all = false;
            }
        }
    });
    stream.flush();
    return all;
}

// The answer is what the list of the first three units holds. Which of its records hold the whole text is
// found out among those that stand in the lists of all threes.
void NameSearch::findByAllTrigrams(const Units& text, std::uint32_t first, Ids& found) const {
    const NameNeedle needle(text);
    if (!from.listsComplete) {
        filterList(first, needle, found);
        return;
    }
    const std::vector<GramList> lists = gramsOf(text);
    if (lists.front().size == 0) return;
    const Marks candidates = recordsInAll(lists);
    Ids matches;
    NameStream stream(from.columns, from.names, [&](std::uint32_t index, NameUnits name) {
        if (needle.isIn(name)) matches.push_back(index);
    });
    forBits(candidates, from.columns.liveWords(), [&](std::uint32_t index) {
        if (usable(index)) stream.push(index);
    });
    stream.flush();
    from.trigrams.forEachSegment(
        first, [&](const PostingSegment& segment) { keepMatches(segment, matches, found); });
}

void NameSearch::findExtensions(const std::vector<std::wstring>& wanted, Ids& found) const {
    std::vector<std::uint16_t> ids;
    for (const std::wstring& extension : wanted) {
        if (const auto id = from.extensions.find(extension)) ids.push_back(*id);
    }
    if (ids.empty()) return;
    std::vector<std::uint8_t> isWanted(0x10000, 0);
    for (const std::uint16_t id : ids) isWanted[id] = 1;
    const FlatArray<std::uint16_t>& extensions = from.columns.extensions();
    const FlatArray<std::uint64_t>& alive = from.columns.liveWords();
    for (std::size_t begin = 0; begin < extensions.size(); begin += 64) {
        const std::size_t count = std::min<std::size_t>(64, extensions.size() - begin);
        std::uint64_t hits = 0;
        for (std::size_t i = 0; i < count; ++i) hits |= std::uint64_t{isWanted[extensions[begin + i]]} << i;
        for (hits &= alive[begin / 64]; hits != 0; hits &= hits - 1) {
            found.push_back(static_cast<std::uint32_t>(begin) +
                            static_cast<std::uint32_t>(std::countr_zero(hits)));
        }
    }
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

NameSearch::Marks NameSearch::recordsInAll(const std::vector<GramList>& lists) const {
    // To read a list's entry costs a small part of what it costs to look at a name.
    constexpr std::size_t kEntriesForAName = 8;
    Marks marks;
    Marks further;
    mark(lists.front(), marks);
    for (std::size_t i = 1; i < lists.size() && lists[i].size < kEntriesForAName * lists.front().size; ++i) {
        mark(lists[i], further);
        for (std::size_t w = 0; w < marks.size(); ++w) marks[w] &= further[w];
    }
    return marks;
}

void NameSearch::findPatterns(const std::vector<std::wstring>& patterns, Ids& found) const {
    std::vector<Glob> globs;
    globs.reserve(patterns.size());
    for (const std::wstring& pattern : patterns) globs.emplace_back(loweredUnits(pattern));
    if (globs.empty()) return;
    const Marks& alive = from.columns.liveWords();
    if (std::all_of(globs.begin(), globs.end(), [](const Glob& glob) { return glob.wildcardsOnly(); })) {
        forBits(alive, alive, [&](std::uint32_t index) {
            const std::size_t length = from.columns.nameLengths()[index];
            const auto fits = [&](const Glob& glob) { return glob.fits(length); };
            if (usable(index) && std::any_of(globs.begin(), globs.end(), fits)) found.push_back(index);
        });
        return;
    }
    const auto test = [&](std::uint32_t index, NameUnits name) {
        const auto matches = [&](const Glob& glob) { return glob.matches(name); };
        if (std::any_of(globs.begin(), globs.end(), matches)) found.push_back(index);
    };
    Marks candidates;
    const bool marked = markCandidates(globs, candidates);
    NameStream stream(from.columns, from.names, test);
    forBits(marked ? candidates : alive, alive, [&](std::uint32_t index) {
        if (usable(index)) stream.push(index);
    });
    stream.flush();
}

bool NameSearch::markCandidates(const std::vector<Glob>& globs, Marks& candidates) const {
    if (!from.listsComplete) return false;
    candidates.assign(from.columns.liveWords().size(), 0);
    for (const Glob& glob : globs) {
        const std::vector<GramList> lists = gramsOf(glob.units());
        if (lists.empty()) return false;
        const Marks marks = recordsInAll(lists);
        for (std::size_t w = 0; w < marks.size(); ++w) candidates[w] |= marks[w];
    }
    return true;
}

}  // namespace varnelo
