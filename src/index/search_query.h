#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace varnelo {

// What the first field of the search tab says.

// Whether the query is one of patterns, which match whole names, or a text that names hold anywhere.
bool hasPatterns(std::wstring_view query);

// The patterns of a query, lower-cased: what stands between semicolons, bars and commas, without blanks at
// both ends, and if anything is left.
std::vector<std::wstring> splitPatterns(std::wstring_view query);

// The extensions with their dots, when every pattern is "*." and an extension without wildcards.
std::optional<std::vector<std::wstring>> extensionsOf(const std::vector<std::wstring>& patterns);

}  // namespace varnelo
