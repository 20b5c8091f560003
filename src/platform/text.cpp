#include "platform/text.h"

#include <algorithm>
#include <cstdarg>
#include <cwchar>

namespace varnelo {

std::wstring lowered(std::wstring_view text) {
    std::wstring result(text);
    std::transform(result.begin(), result.end(), result.begin(), lowerUnit);
    return result;
}

bool equalIgnoringCase(std::wstring_view a, std::wstring_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](wchar_t x, wchar_t y) { return lowerUnit(x) == lowerUnit(y); });
}

std::wstring formatText(const wchar_t* format, ...) {
    wchar_t buffer[kFormatLimitUnits + 1] = {};
    va_list arguments;
    va_start(arguments, format);
    std::vswprintf(buffer, kFormatLimitUnits + 1, format, arguments);
    va_end(arguments);
    // A text that does not fit is reported as an error by some C libraries and left without its end by
    // others.
    buffer[kFormatLimitUnits] = L'\0';
    return buffer;
}

std::wstring_view trimmed(std::wstring_view text) {
    constexpr std::wstring_view kBlanks = L" \t\r\n";
    const std::size_t begin = text.find_first_not_of(kBlanks);
    if (begin == std::wstring_view::npos) return {};
    return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

std::wstring_view leafOf(std::wstring_view path) {
    const std::size_t separator = path.find_last_of(L"\\/");
    return separator == std::wstring_view::npos ? path : path.substr(separator + 1);
}

std::wstring_view extensionOf(std::wstring_view path) {
    const std::wstring_view leaf = leafOf(path);
    const std::size_t dot = leaf.find_last_of(L'.');
    return dot == std::wstring_view::npos ? std::wstring_view{} : leaf.substr(dot);
}

}  // namespace varnelo
