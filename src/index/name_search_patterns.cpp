#include <algorithm>
#include <bit>

#include "index/glob_sweep.h"
#include "index/in_stretches.h"
#include "index/name_filter.h"
#include "index/name_search.h"

namespace varnelo {

namespace {

bool matchesOneOf(const std::vector<Glob>& globs, NameUnits name) {
    return std::any_of(globs.begin(), globs.end(), [&](const Glob& glob) { return glob.matches(name); });
}

}  // namespace

void NameSearch::findPatterns(const std::vector<Glob>& globs, Ids& found) const {
    if (globs.empty()) return;
    const auto lengthTells = [](const Glob& glob) { return glob.wildcardsOnly(); };
    if (from.columns.allNamed() && std::all_of(globs.begin(), globs.end(), lengthTells)) {
        return findByLengths(globs, found);
    }
    Marks candidates;
    if (!markCandidates(globs, candidates)) return findBySweep(globs, found);
    Ids ids;
    collect(candidates, ids);
    NameFilter filter(from.columns, from.names, found,
                      [&](std::uint32_t offset) { return matchesOneOf(globs, from.names.at(offset)); });
    filter.push(ids);
    filter.flush();
}

void NameSearch::findByLengths(const std::vector<Glob>& globs, Ids& found) const {
    const FlatArray<std::uint16_t>& lengths = from.columns.nameLengths();
    if (lengths.empty()) return;
    std::vector<std::uint8_t> fitting(std::size_t{*std::max_element(lengths.begin(), lengths.end())} + 1, 0);
    for (std::size_t length = 0; length < fitting.size(); ++length) {
        const auto fits = [&](const Glob& glob) { return glob.fits(length); };
        fitting[length] = std::any_of(globs.begin(), globs.end(), fits) ? 1 : 0;
    }
    collectByValue(lengths, fitting, found);
}

void NameSearch::findBySweep(const std::vector<Glob>& globs, Ids& found) const {
    constexpr std::size_t kWordsAtOnce = kRecordsInStretch / 64;
    Marks matches;
    matches.resizeUnwritten(from.columns.liveWords().size());
    inStretches(matches.size(), kWordsAtOnce,
                [&](std::size_t begin, std::size_t end) { sweepWords(globs, begin, end, matches); });
    collect(matches, found);
}

void NameSearch::sweepWords(const std::vector<Glob>& globs, std::size_t beginWord, std::size_t endWord,
                            Marks& matches) const {
    const auto offsetsAt = [&](std::size_t word) {
        return from.columns.nameOffsets().begin() +
               std::min(word * GlobSweep::kMostAtOnce, from.columns.size());
    };
    if (beginWord == endWord) return;
    GlobSweep sweep(globs, from.names, *std::min_element(offsetsAt(beginWord), offsetsAt(endWord)));
    const FlatArray<std::uint64_t>& alive = from.columns.liveWords();
    for (std::size_t w = beginWord; w < endWord; ++w) {
        const std::size_t begin = w * GlobSweep::kMostAtOnce;
        const GlobSweep::Answers answers = sweep.answersFor(from.columns, begin);
        matches[w] = answers.matching & alive[w];
        for (std::uint64_t bits = answers.unknown & alive[w]; bits != 0; bits &= bits - 1) {
            const std::uint64_t lowest = bits & ~(bits - 1);
            const NameUnits name = from.names.at(from.columns.nameOffsets()[begin + std::countr_zero(bits)]);
            if (matchesOneOf(globs, name)) matches[w] |= lowest;
        }
    }
}

bool NameSearch::markCandidates(const std::vector<Glob>& globs, Marks& candidates) const {
    // A sweep costs as much for each of all records as it costs to look at a name here and there for so many.
    constexpr std::size_t kSweptForAName = 16;
    if (!from.listsProven) return false;
    std::vector<std::vector<GramList>> listsOfAll;
    std::size_t count = 0;
    for (const Glob& glob : globs) {
        listsOfAll.push_back(gramsOf(glob.units()));
        if (listsOfAll.back().empty()) return false;
        count += listsOfAll.back().front().size;
    }
    if (count > from.columns.size() / kSweptForAName) return false;
    candidates.assign(from.columns.liveWords().size(), 0);
    for (const std::vector<GramList>& lists : listsOfAll) {
        const Marks marks = recordsInAll(lists);
        for (std::size_t w = 0; w < marks.size(); ++w) candidates[w] |= marks[w];
    }
    return true;
}

}  // namespace varnelo
