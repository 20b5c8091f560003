#pragma once

#include <cstdint>

// ntfs.cache: see docs/formats/ntfs-cache.md.
namespace varnelo::cache {

inline constexpr std::uint32_t kMagic = 0x4E544653;  // "SFTN"
inline constexpr std::uint32_t kVersion = 4;
inline constexpr std::uint64_t kMostExtensions = 100000;
inline constexpr std::uint64_t kLongestExtension = 1024;  // units

}  // namespace varnelo::cache
