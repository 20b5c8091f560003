#include "views/word_boundaries.h"

#include "views/text_units.h"

namespace varnelo {

namespace {

enum class UnitKind { Blank, Word, Other };

// Both halves of a pair answer for the character that they make together.
char32_t characterAround(std::wstring_view text, std::size_t index) {
    const std::size_t start = insidePair(text, index) ? index - 1 : index;
    const auto first = static_cast<char32_t>(text[start]);
    if (!insidePair(text, start + 1)) return first;
    return 0x10000 + ((first - 0xD800) << 10) + (static_cast<char32_t>(text[start + 1]) - 0xDC00);
}

bool isWordUnit(std::wstring_view text, std::size_t index) {
    return isWordCharacter(characterAround(text, index));
}

bool isBlank(wchar_t unit) {
    return unit == L' ' || (unit >= L'\t' && unit <= L'\r') || unit == 0xA0 || unit == 0x3000;
}

UnitKind kindOf(std::wstring_view text, std::size_t index) {
    if (isBlank(text[index])) return UnitKind::Blank;
    return isWordUnit(text, index) ? UnitKind::Word : UnitKind::Other;
}

// A unit of the word nearest to `index`, or the text's size when there is no word.
std::size_t nearestWordUnit(std::wstring_view text, std::size_t index) {
    for (std::size_t distance = 0; distance < text.size(); ++distance) {
        if (distance <= index && isWordUnit(text, index - distance)) return index - distance;
        if (index + distance < text.size() && isWordUnit(text, index + distance)) return index + distance;
    }
    return text.size();
}

}  // namespace

TextRange wordAt(std::wstring_view text, std::size_t index) {
    if (text.empty()) return {};
    const std::size_t found = nearestWordUnit(text, index < text.size() ? index : text.size() - 1);
    if (found == text.size()) return {0, text.size()};
    TextRange word{found, found + 1};
    while (word.begin > 0 && isWordUnit(text, word.begin - 1)) --word.begin;
    while (word.end < text.size() && isWordUnit(text, word.end)) ++word.end;
    return word;
}

std::size_t nextWordStart(std::wstring_view text, std::size_t index) {
    if (index >= text.size()) return text.size();
    const UnitKind kind = kindOf(text, index);
    while (index < text.size() && kind != UnitKind::Blank && kindOf(text, index) == kind) ++index;
    while (index < text.size() && kindOf(text, index) == UnitKind::Blank) ++index;
    return index;
}

std::size_t previousWordStart(std::wstring_view text, std::size_t index) {
    if (index > text.size()) index = text.size();
    while (index > 0 && kindOf(text, index - 1) == UnitKind::Blank) --index;
    if (index == 0) return 0;
    const UnitKind kind = kindOf(text, index - 1);
    while (index > 0 && kindOf(text, index - 1) == kind) --index;
    return index;
}

}  // namespace varnelo
