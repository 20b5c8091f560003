#include "views/icon_pixels.h"

#include <algorithm>
#include <cstddef>

namespace varnelo {

namespace {

constexpr std::uint32_t kAlphaBits = 0xFF000000;
constexpr std::uint32_t kColourBits = 0x00FFFFFF;

}  // namespace

void alphaFromMask(std::span<std::uint32_t> pixels, std::span<const std::uint32_t> mask) {
    const auto hasAlpha = [](std::uint32_t pixel) { return (pixel & kAlphaBits) != 0; };
    if (std::any_of(pixels.begin(), pixels.end(), hasAlpha)) return;
    const bool masked = mask.size() == pixels.size();
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        const bool transparent = masked && (mask[i] & kColourBits) != 0;
        if (!transparent) pixels[i] |= kAlphaBits;
    }
}

}  // namespace varnelo
