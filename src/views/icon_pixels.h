#pragma once

#include <cstdint>
#include <span>

namespace varnelo {

// The pixels of an icon, 0xAARRGGBB, straight alpha, top row first.

// Icons older than the alpha channel leave it zero everywhere and have a mask instead: white there is
// transparent. Gives such an icon the alpha that its mask means; without a mask, or with one of another size,
// it becomes opaque. An icon with any alpha of its own is left alone.
void alphaFromMask(std::span<std::uint32_t> pixels, std::span<const std::uint32_t> mask);

}  // namespace varnelo
