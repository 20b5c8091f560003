#include "index/name_search.h"

#include <algorithm>
#include <array>
#include <bit>

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

std::size_t limitAt(const NamePool& names, std::uint32_t offset) {
    return std::min(names.size() - offset, NamePool::kLongestName);
}

// Runs test(index, name, limit) over a stream of records whose names are usable. Names lie far apart: each is
// asked for from memory well before its turn.
template <class Test>
class NameStream {
public:
    NameStream(const RecordColumns& recordColumns, const NamePool& namePool, Test nameTest)
        : columns(recordColumns), names(namePool), test(nameTest) {}

    void push(std::uint32_t index) {
        __builtin_prefetch(&columns.nameOffsets()[index]);
        waiting[count++] = index;
        if (count == waiting.size()) flush();
    }
    void flush() {
        for (std::size_t i = 0; i < count; ++i) __builtin_prefetch(nameAt(i));
        for (std::size_t i = 0; i < count; ++i) {
            const std::uint32_t offset = columns.nameOffsets()[waiting[i]];
            test(waiting[i], names.data() + offset, limitAt(names, offset));
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
           from.names.holds(from.columns.nameOffsets()[index]);
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
        findByRarestTrigram(text, *first, found);
    } else if (from.listsComplete && from.trigrams.verified(*first)) {
        collectList(from.trigrams, *first, found);
    } else if (filterList(*first, NameNeedle(text), found)) {
        from.trigrams.setVerified(*first);
    }
}

void NameSearch::collectList(const PostingMap& map, std::uint32_t list, Ids& found) const {
    const std::size_t records = from.columns.size();
    if (records == 0) return;
    found.resize(map.roughSize(list));
    std::uint32_t* to = found.data();
    const std::uint64_t* alive = from.columns.liveWords().data();
    map.forEachSegment(list, [&](const PostingSegment& segment) {
        // Without a branch: the next place is written in any case, and kept when the entry counts.
        for (std::size_t i = 0; i < segment.count; ++i) {
            const std::uint32_t entry = segment.at(i);
            const std::uint32_t index = entry < records ? entry : 0;
            *to = entry;
            to += (alive[index / 64] >> index % 64 & 1) & static_cast<std::uint64_t>(entry < records);
        }
    });
    found.resize(static_cast<std::size_t>(to - found.data()));
    if (!from.columns.namesWithin(from.names.size())) {
        std::erase_if(found, [this](std::uint32_t index) { return !usable(index); });
    }
}

bool NameSearch::filterList(std::uint32_t list, const NameNeedle& needle, Ids& found) const {
    bool all = true;
    NameStream stream(from.columns, from.names,
                      [&](std::uint32_t index, const std::uint16_t* name, std::size_t limit) {
                          if (needle.isIn(name, limit)) {
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
// found out from the shortest of the lists that they must all be in.
void NameSearch::findByRarestTrigram(const Units& text, std::uint32_t first, Ids& found) {
    std::uint32_t rarest = first;
    std::size_t size = from.trigrams.roughSize(first);
    for (std::size_t i = 1; i + 2 < text.size() && from.listsComplete; ++i) {
        const auto list = from.trigrams.find(trigramKey(text[i], text[i + 1], text[i + 2]));
        if (!list) return;
        const std::size_t entries = from.trigrams.roughSize(*list);
        if (entries < size) {
            size = entries;
            rarest = *list;
        }
    }
    const NameNeedle needle(text);
    if (rarest == first) {
        filterList(first, needle, found);
        return;
    }
    Ids matches;
    filterList(rarest, needle, matches);
    std::sort(matches.begin(), matches.end());
    matches.erase(std::unique(matches.begin(), matches.end()), matches.end());
    from.trigrams.forEachSegment(first, [&](const PostingSegment& segment) {
        if (!segment.ascending) {
            for (std::size_t i = 0; i < segment.count; ++i) {
                if (std::binary_search(matches.begin(), matches.end(), segment.at(i)))
                    found.push_back(segment.at(i));
            }
            return;
        }
        std::size_t at = 0;
        for (const std::uint32_t match : matches) {
            at = segment.lowerBound(match, at);
            for (; at < segment.count && (segment.at(at) & ~kRemovedEntry) == match; ++at) {
                if (segment.at(at) == match) found.push_back(match);
            }
        }
    });
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

NameSearch::GramList NameSearch::rarestGram(const Units& pattern) const {
    GramList best{nullptr, 0, ~std::size_t{0}};
    const auto consider = [&](const PostingMap& map, std::uint64_t key) {
        const auto list = map.find(key);
        const std::size_t size = list ? map.roughSize(*list) : 0;
        if (size < best.size) best = {&map, list.value_or(0), size};
    };
    const auto isLiteral = [&](std::size_t i) {
        return i < pattern.size() && pattern[i] != '*' && pattern[i] != '?';
    };
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        if (!isLiteral(i)) continue;
        if (isLiteral(i + 1) && isLiteral(i + 2)) {
            consider(from.trigrams, trigramKey(pattern[i], pattern[i + 1], pattern[i + 2]));
        } else if (isLiteral(i + 1)) {
            consider(from.bigrams, bigramKey(pattern[i], pattern[i + 1]));
        } else {
            consider(from.unigrams, unigramKey(pattern[i]));
        }
    }
    return best;
}

bool NameSearch::markCandidates(const std::vector<Units>& patterns, FlatArray<std::uint64_t>& marks) const {
    if (!from.listsComplete) return false;
    std::vector<GramList> lists;
    std::size_t entries = 0;
    for (const Units& pattern : patterns) {
        lists.push_back(rarestGram(pattern));
        if (lists.back().map == nullptr) return false;
        entries += lists.back().size;
        // A pass over all names reads memory in order; a mark costs a fraction of a name.
        if (entries > from.columns.size() / 2) return false;
    }
    marks.assign(from.columns.liveWords().size(), 0);
    for (const GramList& list : lists) {
        if (list.size == 0) continue;
        list.map->forEachSegment(list.list, [&](const PostingSegment& segment) {
            for (std::size_t i = 0; i < segment.count; ++i) {
                const std::uint32_t entry = segment.at(i);
                if (entry < from.columns.size()) marks[entry / 64] |= std::uint64_t{1} << entry % 64;
            }
        });
    }
    return true;
}

void NameSearch::findPatterns(const std::vector<std::wstring>& patterns, Ids& found) const {
    std::vector<Units> globs;
    for (const std::wstring& pattern : patterns) globs.push_back(loweredUnits(pattern));
    NameStream stream(from.columns, from.names,
                      [&](std::uint32_t index, const std::uint16_t* name, std::size_t limit) {
                          for (const Units& glob : globs) {
                              if (!globMatches(glob, name, limit)) continue;
                              found.push_back(index);
                              return;
                          }
                      });
    const auto look = [&](std::uint32_t index) {
        if (usable(index)) stream.push(index);
    };
    FlatArray<std::uint64_t> marks;
    const FlatArray<std::uint64_t>& alive = from.columns.liveWords();
    if (globs.empty()) return;
    if (markCandidates(globs, marks)) {
        forBits(marks, alive, look);
    } else {
        forBits(alive, alive, look);
    }
    stream.flush();
}

}  // namespace varnelo
