#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "index/ntfs_index.h"

namespace varnelo {

// Whether a file of that name, without its folder, defines a project or a build. Only the name is looked at,
// in any case of its letters; a folder of such a name would pass as well.
bool isProjectFileName(std::wstring_view name);
// The same of a record. One that does not exist, or whose name does not, is none.
bool isProjectFile(const NTFSIndex& index, std::uint32_t recordIndex);

// What is compared with, in lower case. Names that stand for themselves,
std::span<const std::wstring_view> projectFileNames();
// extensions with their dot,
std::span<const std::wstring_view> projectExtensions();
// and names that carry such an extension, but are generated.
std::span<const std::wstring_view> projectFalsePositives();

}  // namespace varnelo
