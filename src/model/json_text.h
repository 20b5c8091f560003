#pragma once

// The JSON text that the service speaks: enough to write a string into it and to read one member out of it.

#include <string>
#include <string_view>

namespace varnelo {

// The content of a JSON string, UTF-8. Bytes from 0x20 on pass as they are, whether they are UTF-8 or not,
// except the double quote and the backslash.
std::string jsonEscape(std::string_view text);

// The value of one member of a flat object, found by search and not by parsing: what stands behind the first
// ':' behind the first `"key"`, up to the next ',' or '}' or the end, without white space at its ends and
// without one pair of quotes around it. Nothing is unescaped, and a comma or a brace inside a string ends the
// value, which keeps its opening quote then. Empty when the key or the ':' is missing.
std::wstring jsonValue(std::wstring_view json, std::wstring_view key);

}  // namespace varnelo
