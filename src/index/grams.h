#pragma once

#include <cstdint>

#include "index/name_pool.h"

namespace varnelo {

class PostingMap;

// ASCII letters folded, as lowerUnit() does it.
constexpr std::uint16_t lowerNameUnit(std::uint16_t unit) {
    return unit >= 'A' && unit <= 'Z' ? static_cast<std::uint16_t>(unit + ('a' - 'A')) : unit;
}

// The keys of one, two and three lower-cased units in a row.
constexpr std::uint64_t unigramKey(std::uint16_t a) { return a; }
constexpr std::uint64_t bigramKey(std::uint16_t a, std::uint16_t b) { return std::uint64_t{a} << 16 | b; }
constexpr std::uint64_t trigramKey(std::uint16_t a, std::uint16_t b, std::uint16_t c) {
    return std::uint64_t{a} << 32 | std::uint64_t{b} << 16 | c;
}

// One entry for each occurrence of each gram of the name, or all entries away again.
void appendGrams(NameUnits name, std::uint32_t index, PostingMap& unigrams, PostingMap& bigrams,
                 PostingMap& trigrams);
void removeGrams(NameUnits name, std::uint32_t index, PostingMap& unigrams, PostingMap& bigrams,
                 PostingMap& trigrams);

// What a list's entry counts for in such a sum; `units` is the length of its gram.
std::uint64_t gramWeight(std::size_t units, std::uint64_t key);
// The weights of all grams of the name, each as often as it occurs.
std::uint64_t gramSum(NameUnits name);

}  // namespace varnelo
