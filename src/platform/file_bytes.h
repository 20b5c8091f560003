#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace varnelo {

// A larger file is taken as unreadable rather than tried: no file that the program keeps comes near it.
inline constexpr std::uint64_t kWholeFileLimitBytes = std::uint64_t{1} << 32;

// The content of a file, read while others may read, write, rename or delete it. Nothing when it cannot be
// opened, fails under way or is larger than `limitBytes`.
std::optional<std::vector<std::uint8_t>> readWholeFile(const std::wstring& path,
                                                       std::uint64_t limitBytes = kWholeFileLimitBytes);

// Makes `content` the file's content, or leaves the old file untouched and answers false: the bytes are
// written to a new file in the same folder, flushed to the disk and moved over the old one. Nothing is left
// beside it after a failure. The folder must exist.
bool replaceFile(const std::wstring& path, std::span<const std::uint8_t> content);

}  // namespace varnelo
