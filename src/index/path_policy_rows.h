#pragma once

// The constant rows that a PathPolicy is made of, beside the known folders.

#include <span>
#include <string_view>

namespace varnelo {

// Folders inside the Windows folder, all with a variable to be expanded.
std::span<const std::wstring_view> excludedSystemRows();

// Folders of programs, toolchains, caches and games. A row with a percent sign is to be expanded; the others
// are meant as they stand, on drive C alone.
std::span<const std::wstring_view> excludedPlaceRows();

// Folder names that are excluded wherever they stand, to be compared with a lowered path as they are.
// "__MACOSX" keeps its capitals and so never matches: such folders are shown.
std::span<const std::wstring_view> excludedFolderNameRows();

}  // namespace varnelo
