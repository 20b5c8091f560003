#pragma once

// Internet shortcuts (.url): a text file whose first line that begins with "URL=" names the address.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace varnelo {

// How much of a file is looked at; the address stands in the first lines, real files have some hundred bytes.
inline constexpr std::size_t kUrlFileLimitBytes = 64 * 1024;

// The address in the file's text, which can be empty; nothing when no line begins with "URL=". The four
// characters are matched as they stand, in their case and without blanks before them. A line ends at a line
// feed, with or without a carriage return before it, or with the text.
//
// The text is UTF-16 when it begins with that byte order mark (either order), UTF-8 when the line is valid
// UTF-8, and otherwise of some old code page, of which Latin-1 is assumed. A UTF-8 mark is passed over.
std::optional<std::wstring> urlFileTarget(std::span<const std::uint8_t> content);

}  // namespace varnelo
