#pragma once

#include <string>
#include <string_view>

namespace varnelo {

// Between UTF-8 and wide text of UTF-16 units, one for each wchar_t (also where wchar_t is wider). Results
// are those of the Windows code page 65001 without flags: what is not well-formed becomes U+FFFD, on the
// UTF-8 side one for each longest sequence that could still have become a character. Nothing fails.
std::string utf8FromWide(std::wstring_view text);
std::wstring wideFromUtf8(std::string_view text);

}  // namespace varnelo
