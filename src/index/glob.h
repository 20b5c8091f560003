#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace varnelo {

// A lower-cased pattern in the units of names: '*' stands for any run, '?' for one unit, nothing escapes
// them.
using GlobPattern = std::span<const std::uint16_t>;

// Whether the whole name matches; its letters are folded on the way. The name ends at a NUL or after `limit`
// units. The steps are at most the product of both lengths.
bool globMatches(GlobPattern pattern, const std::uint16_t* name, std::size_t limit);

}  // namespace varnelo
