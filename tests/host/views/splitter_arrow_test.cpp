#include "views/splitter_arrow.h"

#include <gtest/gtest.h>

namespace varnelo {
namespace {

TEST(SplitterArrow, PointsToTheLeftFromTheMiddleOfTheBar) {
    const Float2 centre = splitterArrowCentre({100, 20, 4, 600});
    EXPECT_EQ(centre.x, 102);
    EXPECT_EQ(centre.y, 320);
    EXPECT_EQ(kSplitterArrow[0].x, -4);
    EXPECT_EQ(kSplitterArrow[0].y, 0);
    EXPECT_EQ(kSplitterArrow[1].x, 4);
    EXPECT_EQ(kSplitterArrow[1].y, -7);
    EXPECT_EQ(kSplitterArrow[2].x, 4);
    EXPECT_EQ(kSplitterArrow[2].y, 7);
    EXPECT_EQ(kSplitterArrowColor.r, 1);
    EXPECT_EQ(kSplitterArrowColor.g, 1);
    EXPECT_EQ(kSplitterArrowColor.b, 1);
    EXPECT_EQ(kSplitterArrowColor.a, 0.7F);
}

}  // namespace
}  // namespace varnelo
