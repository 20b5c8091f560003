#include "index/glob.h"

#include "index/grams.h"

namespace varnelo {

bool globMatches(GlobPattern pattern, const std::uint16_t* name, std::size_t limit) {
    constexpr std::size_t kNoStar = ~std::size_t{0};
    std::size_t i = 0;
    std::size_t j = 0;
    std::size_t behindStar = kNoStar;
    std::size_t matched = 0;  // how much of the name the last star and what stands before it take
    while (j < limit && name[j] != 0) {
        if (i < pattern.size() && pattern[i] == '*') {
            if (i + 1 == pattern.size()) return true;
            behindStar = ++i;
            matched = j;
        } else if (i < pattern.size() && (pattern[i] == '?' || pattern[i] == lowerNameUnit(name[j]))) {
            ++i;
            ++j;
        } else if (behindStar != kNoStar) {
            j = ++matched;
            i = behindStar;
        } else {
            return false;
        }
    }
    while (i < pattern.size() && pattern[i] == '*') ++i;
    return i == pattern.size();
}

}  // namespace varnelo
