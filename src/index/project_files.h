#pragma once

#include <span>
#include <string_view>

namespace varnelo {

// Whether a file of that name, without its folder, defines a project or a build. Only the name is looked at,
// in any case of its letters; a folder of such a name would pass as well.
bool isProjectFileName(std::wstring_view name);

// What is compared with, in lower case. Names that stand for themselves,
std::span<const std::wstring_view> projectFileNames();
// extensions with their dot,
std::span<const std::wstring_view> projectExtensions();
// and names that carry such an extension, but are generated.
std::span<const std::wstring_view> projectFalsePositives();

}  // namespace varnelo
