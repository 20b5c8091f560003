#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "index/name_pool.h"

namespace varnelo {

// A lower-cased pattern in the units of names: '*' stands for any run, '?' for one unit, nothing escapes
// them.
using GlobUnits = std::span<const std::uint16_t>;

// Whether the whole name matches; its letters are folded on the way. The steps are at most the product of
// both lengths.
bool globMatches(GlobUnits pattern, NameUnits name);

// A pattern with what can be told before its units are walked through.
class Glob {
public:
    explicit Glob(std::vector<std::uint16_t> loweredPattern);

    GlobUnits units() const { return pattern; }
    bool fits(std::size_t nameLength) const {
        return nameLength == shortest || (hasStar && nameLength > shortest);
    }
    // Whether fits() is all that matters.
    bool wildcardsOnly() const { return onlyWildcards; }
    bool matches(NameUnits name) const;

private:
    std::vector<std::uint16_t> pattern;
    std::size_t shortest = 0;  // units of a name
    std::size_t firstStar = 0;
    std::size_t behindLastStar = 0;
    bool hasStar = false;
    bool onlyWildcards = true;
};

}  // namespace varnelo
