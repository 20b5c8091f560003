#pragma once

#include <string>
#include <string_view>

namespace varnelo {

// Case folding for matching, everywhere in the program: ASCII letters only, as the C locale has it, so that
// a result does not depend on the user's language. Umlauts stay what they are.
constexpr wchar_t lowerUnit(wchar_t unit) {
    return unit >= L'A' && unit <= L'Z' ? static_cast<wchar_t>(unit + (L'a' - L'A')) : unit;
}
std::wstring lowered(std::wstring_view text);
bool equalIgnoringCase(std::wstring_view a, std::wstring_view b);

// As swprintf, into at most kFormatLimitUnits units; what is longer is cut off. Wide strings are written as
// %ls, which means the same in both builds; %s does not.
inline constexpr int kFormatLimitUnits = 2047;
std::wstring formatText(const wchar_t* format, ...);

// Without blanks, tabs, carriage returns and line feeds at both ends. A view into `text`.
std::wstring_view trimmed(std::wstring_view text);

// Behind the last '\' or '/' of a path, or all of it. A view into `path`.
std::wstring_view leafOf(std::wstring_view path);
// From the last dot of the leaf on, with the dot; empty when the leaf has none. A view into `path`.
std::wstring_view extensionOf(std::wstring_view path);

}  // namespace varnelo
