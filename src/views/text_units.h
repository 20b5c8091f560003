#pragma once

#include <cstddef>
#include <string_view>

namespace varnelo {

// Places between the UTF-16 units of a text. A pair of surrogates is one character to the user, so a caret
// never rests inside one; a lone surrogate is a character of its own.

constexpr bool isHighSurrogate(wchar_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
constexpr bool isLowSurrogate(wchar_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

// Whether the place before unit `index` lies between the two halves of a pair.
constexpr bool insidePair(std::wstring_view text, std::size_t index) {
    return index > 0 && index < text.size() && isLowSurrogate(text[index]) &&
           isHighSurrogate(text[index - 1]);
}

// One character on from `index`, at most to the end.
constexpr std::size_t nextPlace(std::wstring_view text, std::size_t index) {
    if (index >= text.size()) return text.size();
    return insidePair(text, index + 1) ? index + 2 : index + 1;
}

// One character back from `index`, at least to the beginning.
constexpr std::size_t previousPlace(std::wstring_view text, std::size_t index) {
    if (index == 0) return 0;
    return insidePair(text, index - 1) ? index - 2 : index - 1;
}

}  // namespace varnelo
