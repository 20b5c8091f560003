#include "index/glob.h"

#include <utility>

#include "index/grams.h"

namespace varnelo {

namespace {

// Of equal length; the pattern has no star.
bool sameUnits(GlobUnits pattern, NameUnits name) {
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        if (pattern[i] != '?' && pattern[i] != lowerNameUnit(name[i])) return false;
    }
    return true;
}

// The first place from `at` on that the unit behind a star may take.
std::size_t nextPlace(std::uint16_t unit, NameUnits name, std::size_t at) {
    if (unit == '*' || unit == '?') return at;
    while (at < name.size() && lowerNameUnit(name[at]) != unit) ++at;
    return at;
}

}  // namespace

bool globMatches(GlobUnits pattern, NameUnits name) {
    constexpr std::size_t kNoStar = ~std::size_t{0};
    std::size_t i = 0;
    std::size_t j = 0;
    std::size_t behindStar = kNoStar;
    std::size_t matched = 0;  // how much of the name the last star and what stands before it take
    while (j < name.size()) {
        if (i < pattern.size() && pattern[i] == '*') {
            behindStar = ++i;
            if (behindStar == pattern.size()) return true;
            j = matched = nextPlace(pattern[behindStar], name, j);
        } else if (i < pattern.size() && (pattern[i] == '?' || pattern[i] == lowerNameUnit(name[j]))) {
            ++i;
            ++j;
        } else if (behindStar != kNoStar) {
            // A literal unit behind the star: no place before its next one can match.
            matched = nextPlace(pattern[behindStar], name, matched + 1);
            j = matched;
            i = behindStar;
        } else {
            return false;
        }
    }
    while (i < pattern.size() && pattern[i] == '*') ++i;
    return i == pattern.size();
}

Glob::Glob(std::vector<std::uint16_t> loweredPattern) : pattern(std::move(loweredPattern)) {
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        if (pattern[i] == '*') {
            if (!hasStar) firstStar = i;
            hasStar = true;
            behindLastStar = i + 1;
            continue;
        }
        ++shortest;
        if (pattern[i] != '?') onlyWildcards = false;
    }
}

bool Glob::matches(NameUnits name) const {
    if (!fits(name.size())) return false;
    if (onlyWildcards) return true;
    if (!hasStar) return sameUnits(pattern, name);
    const GlobUnits end = units().subspan(behindLastStar);
    if (!sameUnits(units().first(firstStar), name.first(firstStar))) return false;
    if (!sameUnits(end, name.last(end.size()))) return false;
    const GlobUnits middle = units().subspan(firstStar, behindLastStar - firstStar);
    return middle.size() == 1 ||
           globMatches(middle, name.subspan(firstStar, name.size() - firstStar - end.size()));
}

}  // namespace varnelo
