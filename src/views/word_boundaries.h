#pragma once

#include <cstddef>
#include <string_view>

namespace varnelo {

// Where words begin and end for a double click and for Ctrl with an arrow key. Unlike the matching of file
// names, which knows ASCII letters only, this is for the eye: letters and digits of every script make words.

// A letter, a digit, a mark that belongs to a letter, or "_". The answer is the same in both builds and for
// every language of the user.
bool isWordCharacter(char32_t character);

// Units `begin` up to, not including, `end`.
struct TextRange {
    std::size_t begin = 0, end = 0;
    bool operator==(const TextRange&) const = default;
};

// The word at `index`, which is taken back to the last unit. Between words it is the nearer one, the left one
// at equal distance; without any word the whole text.
TextRange wordAt(std::wstring_view text, std::size_t index);

// The start of the word, or of the run of other signs, that follows or precedes `index`; blanks separate.
std::size_t nextWordStart(std::wstring_view text, std::size_t index);
std::size_t previousWordStart(std::wstring_view text, std::size_t index);

}  // namespace varnelo
