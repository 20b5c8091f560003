// Any pattern on any name: the walk by two pointers agrees with a table of all prefixes, and with what a Glob
// tells beforehand.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "index/glob.h"
#include "index/grams.h"

namespace {

using Units = std::vector<std::uint16_t>;

// reach[j] says whether the pattern so far matches the first j units of the name.
bool tableMatches(const Units& pattern, const Units& name) {
    std::vector<char> reach(name.size() + 1, 0);
    reach[0] = 1;
    for (const std::uint16_t unit : pattern) {
        std::vector<char> next(name.size() + 1, 0);
        if (unit == '*') {
            char any = 0;
            for (std::size_t j = 0; j <= name.size(); ++j) next[j] = any = static_cast<char>(any | reach[j]);
        } else {
            for (std::size_t j = 0; j < name.size(); ++j) {
                next[j + 1] =
                    static_cast<char>(reach[j] && (unit == '?' || unit == varnelo::lowerNameUnit(name[j])));
            }
        }
        reach = next;
    }
    return reach[name.size()] != 0;
}

}  // namespace

// The first byte is the pattern's length; small letters of few kinds make matches likely.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::size_t patternSize = std::min<std::size_t>(data[0], size - 1);
    const Units pattern(data + 1, data + 1 + patternSize);
    Units name(data + 1 + patternSize, data + size);
    std::erase(name, 0);
    const bool expected = tableMatches(pattern, name);
    if (varnelo::globMatches(pattern, name) != expected || varnelo::Glob(pattern).matches(name) != expected) {
        std::fprintf(stderr, "broken: the matchers differ\n");
        std::abort();
    }
    return 0;
}
