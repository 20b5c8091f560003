#include "views/icon_pixels.h"

#include <gtest/gtest.h>

#include <vector>

namespace varnelo {
namespace {

using Pixels = std::vector<std::uint32_t>;

Pixels withMask(Pixels pixels, const Pixels& mask) {
    alphaFromMask(pixels, mask);
    return pixels;
}

TEST(IconPixels, AnIconWithAlphaKeepsIt) {
    const Pixels icon{0x00000000, 0x80112233, 0x00445566};
    EXPECT_EQ(withMask(icon, {0, 0, 0}), icon);
}

TEST(IconPixels, AnOldIconTakesItsAlphaFromTheMask) {
    EXPECT_EQ(withMask({0x112233, 0x445566}, {0x000000, 0xFFFFFF}), (Pixels{0xFF112233, 0x00445566}));
}

TEST(IconPixels, OnlyTheColourOfAMaskCounts) {
    EXPECT_EQ(withMask({0x112233, 0x445566}, {0xFF000000, 0xFFFFFFFF}), (Pixels{0xFF112233, 0x00445566}));
}

TEST(IconPixels, AnOldIconWithoutAMaskIsOpaque) {
    EXPECT_EQ(withMask({0x112233, 0}, {}), (Pixels{0xFF112233, 0xFF000000}));
}

TEST(IconPixels, AMaskOfAnotherSizeIsNotRead) {
    EXPECT_EQ(withMask({0x112233, 0x445566}, {0xFFFFFF}), (Pixels{0xFF112233, 0xFF445566}));
}

TEST(IconPixels, NoPixelsAreNoTrouble) { EXPECT_TRUE(withMask({}, {}).empty()); }

}  // namespace
}  // namespace varnelo
