#include "index/absent_words.h"

#include <algorithm>
#include <array>

#include "index/grams.h"

namespace varnelo {

namespace {

constexpr std::size_t kLongestName = 255;
constexpr std::size_t kMostPairs = 512;

// Of a word its last four units count.
AbsentWords bitsOf(std::uint64_t a, std::uint64_t b, std::uint64_t c, std::uint64_t d) {
    const std::uint64_t hash = (a << 48 | b << 32 | c << 16 | d) * 0x9E3779B97F4A7C15;
    const std::uint64_t first = hash >> 58;
    const std::uint64_t second = first + 1 + (hash >> 48) % 63;
    return AbsentWords{1} << first | AbsentWords{1} << second % 64;
}

// The words that come of one text standing at two places of a name, `first` and `second`: what stands before
// it here, the text, and what stands behind it there. Two equal units are known at both places, and different
// ones, or none, before them.
AbsentWords wordsOfRepeat(std::span<const std::uint16_t> name, std::size_t first, std::size_t second) {
    std::size_t length = 2;
    while (second + length < name.size() && name[first + length] == name[second + length]) ++length;
    const auto word = [&](std::size_t from, std::size_t to) -> AbsentWords {
        if (from == 0 || to + length == name.size()) return 0;
        const std::size_t end = from + length;
        return bitsOf(name[length == 2 ? from - 1 : end - 3], name[end - 2], name[end - 1],
                      name[to + length]);
    };
    return word(first, second) | word(second, first);
}

}  // namespace

AbsentWords absentWordsOf(NameUnits name) {
    if (name.size() > kLongestName) return kAnyWord;
    std::array<std::uint16_t, kLongestName> lowered;
    std::transform(name.begin(), name.end(), lowered.begin(), lowerNameUnit);
    const std::span<const std::uint16_t> units(lowered.data(), name.size());

    // Places are counted from 1; 0 is none. Pairs of units with one hash are chained.
    std::array<std::uint8_t, 256> newest{};
    std::array<std::uint8_t, kLongestName> before;
    AbsentWords words = 0;
    std::size_t pairs = 0;
    for (std::size_t i = 0; i + 1 < units.size(); ++i) {
        std::uint8_t& chain = newest[(units[i] * 31u + units[i + 1] * 0x9Du) % newest.size()];
        for (std::size_t place = chain; place != 0; place = before[place - 1]) {
            const std::size_t other = place - 1;
            if (++pairs > kMostPairs) return kAnyWord;
            if (units[other] != units[i] || units[other + 1] != units[i + 1]) continue;
            if (other != 0 && units[other - 1] == units[i - 1]) continue;
            words |= wordsOfRepeat(units, other, i);
        }
        before[i] = chain;
        chain = static_cast<std::uint8_t>(i + 1);
    }
    return words;
}

std::vector<AbsentWords> wordsIn(std::span<const std::uint16_t> text) {
    std::vector<AbsentWords> words;
    for (std::size_t i = 3; i < text.size(); ++i) {
        words.push_back(bitsOf(text[i - 3], text[i - 2], text[i - 1], text[i]));
    }
    return words;
}

}  // namespace varnelo
