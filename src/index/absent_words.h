#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "index/name_pool.h"

namespace varnelo {

// The minimal absent words of a name, two bits of 64 for each: the texts of four units or more that the name
// does not hold although it holds them without their first unit and without their last one. "test" is one of
// "est-tes"; so it is that a name may hold all threes of a text and not the text. Two names in three have no
// such word.
using AbsentWords = std::uint64_t;

// Nothing is known of the name.
inline constexpr AbsentWords kAnyWord = ~AbsentWords{0};

// Letters are folded. For a name that repeats itself so much that it would take long: any word.
AbsentWords absentWordsOf(NameUnits name);

// The words that may stand in a text of lowered units, each by itself.
std::vector<AbsentWords> wordsIn(std::span<const std::uint16_t> text);

// False: a name with these absent words that holds all threes of the text holds the text.
inline bool mayLack(AbsentWords words, std::span<const AbsentWords> wordsOfText) {
    for (const AbsentWords word : wordsOfText) {
        if ((words & word) == word) return true;
    }
    return false;
}

}  // namespace varnelo
