#include "index/grams.h"

#include <algorithm>
#include <array>
#include <span>

#include "index/posting_map.h"
#include "index/slot_table.h"

namespace varnelo {

namespace {

constexpr std::size_t kAtOnce = 64;

// Calls use(map, keys) for the grams that begin in one stretch of the name after the other: the same for
// names of any length, without memory of their own.
template <class Map, class Use>
void forGrams(NameUnits name, Map& unigrams, Map& bigrams, Map& trigrams, Use use) {
    std::array<std::uint16_t, kAtOnce + 2> units{};
    std::array<std::uint64_t, kAtOnce> ones;
    std::array<std::uint64_t, kAtOnce> twos;
    std::array<std::uint64_t, kAtOnce> threes;
    for (std::size_t begin = 0; begin < name.size(); begin += kAtOnce) {
        const std::size_t count = std::min(kAtOnce, name.size() - begin);
        const std::size_t filled = std::min(count + 2, name.size() - begin);
        std::transform(name.begin() + begin, name.begin() + begin + filled, units.begin(), lowerNameUnit);
        for (std::size_t i = 0; i < count; ++i) {
            ones[i] = unigramKey(units[i]);
            twos[i] = bigramKey(units[i], units[i + 1]);
            threes[i] = trigramKey(units[i], units[i + 1], units[i + 2]);
        }
        const auto within = [&](std::size_t gramUnits) {
            return begin + gramUnits > name.size() ? 0 : std::min(count, name.size() - begin - gramUnits + 1);
        };
        use(unigrams, std::span(ones.data(), count));
        use(bigrams, std::span(twos.data(), within(2)));
        use(trigrams, std::span(threes.data(), within(3)));
    }
}

}  // namespace

void appendGrams(NameUnits name, std::uint32_t index, PostingMap& unigrams, PostingMap& bigrams,
                 PostingMap& trigrams) {
    forGrams(name, unigrams, bigrams, trigrams,
             [&](PostingMap& map, std::span<const std::uint64_t> keys) { map.append(keys, index); });
}

void removeGrams(NameUnits name, std::uint32_t index, PostingMap& unigrams, PostingMap& bigrams,
                 PostingMap& trigrams) {
    forGrams(name, unigrams, bigrams, trigrams, [&](PostingMap& map, std::span<const std::uint64_t> keys) {
        for (const std::uint64_t key : keys) map.remove(key, index);
    });
}

std::uint64_t gramWeight(std::size_t units, std::uint64_t key) {
    return mixedHash(key | std::uint64_t{units} << 48);
}

std::uint64_t gramSum(NameUnits name) {
    constexpr std::array<std::size_t, 3> kUnits{1, 2, 3};
    std::uint64_t sum = 0;
    forGrams(name, kUnits[0], kUnits[1], kUnits[2],
             [&](std::size_t units, std::span<const std::uint64_t> keys) {
                 for (const std::uint64_t key : keys) sum += gramWeight(units, key);
             });
    return sum;
}

}  // namespace varnelo
