#include "views/splitter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace varnelo {
namespace {

class SplitterTest : public ::testing::Test {
protected:
    void SetUp() override { splitter.setArea({0, 0, 1000, 600}); }

    void dragBarTo(float x) {
        splitter.beginDrag();
        splitter.dragTo(x, 300);
        splitter.endDrag();
    }
    // Frames until nothing moves; how many they were.
    int rest(float seconds = 0.016F) {
        int frames = 0;
        while (splitter.advance(seconds) && frames < 10000) ++frames;
        return frames;
    }

    Splitter splitter;
};

TEST_F(SplitterTest, TheTabbedAreaStartsWithSevenTenths) {
    EXPECT_EQ(splitter.ratio(), 0.7F);
    EXPECT_EQ(splitter.displayRatio(), 0.7F);
    EXPECT_EQ(splitter.restoreRatio(), 0.7F);
    EXPECT_EQ(splitter.barRect(), (ViewRect{698, 0, 4, 600}));
    EXPECT_EQ(splitter.firstRect(), (ViewRect{0, 0, 698, 600}));
    EXPECT_EQ(splitter.secondRect(), (ViewRect{702, 0, 298, 600}));
    EXPECT_FALSE(splitter.softwareHidden());
}

TEST_F(SplitterTest, TheAreaNeedNotStartAtTheCorner) {
    splitter.setArea({100, 50, 1000, 600});
    EXPECT_EQ(splitter.barRect(), (ViewRect{798, 50, 4, 600}));
    EXPECT_EQ(splitter.firstRect().w, 698);
    EXPECT_EQ(splitter.secondRect().right(), 1100);
    splitter.beginDrag();
    splitter.dragTo(900, 60);
    EXPECT_EQ(splitter.ratio(), 0.8F);
}

TEST_F(SplitterTest, ARowDividesByHeight) {
    Splitter rows(Splitter::Bar::Row);
    rows.setArea({0, 0, 1000, 600});
    EXPECT_EQ(rows.barRect(), (ViewRect{0, 418, 1000, 4}));
    EXPECT_EQ(rows.firstRect(), (ViewRect{0, 0, 1000, 418}));
    EXPECT_EQ(rows.secondRect(), (ViewRect{0, 422, 1000, 178}));
    rows.beginDrag();
    rows.dragTo(900, 300);
    EXPECT_EQ(rows.ratio(), 0.5F);
    EXPECT_TRUE(rows.hitBar(900, 300));
    EXPECT_FALSE(rows.hitBar(900, 303));
    rows.dragTo(900, 450);
    EXPECT_EQ(rows.ratio(), 0.75F);
    rows.snapSecondPart(116);
    EXPECT_FLOAT_EQ(rows.ratio(), 0.8F);
}

TEST_F(SplitterTest, ARowNeedNotStartAtTheCornerNorHaveRoom) {
    Splitter rows(Splitter::Bar::Row);
    rows.setArea({100, 50, 1000, 600});
    EXPECT_EQ(rows.firstRect(), (ViewRect{100, 50, 1000, 418}));
    EXPECT_EQ(rows.barRect(), (ViewRect{100, 468, 1000, 4}));
    EXPECT_EQ(rows.secondRect().bottom(), 650);
    rows.beginDrag();
    rows.dragTo(0, 530);
    EXPECT_EQ(rows.ratio(), 0.8F);
    rows.setArea({0, 0, 1000, 0});
    EXPECT_EQ(rows.firstRect().h, 0);
    EXPECT_EQ(rows.secondRect().h, 0);
}

TEST_F(SplitterTest, ARowWhoseSecondPartIsHiddenReachesTenPixelsFurther) {
    Splitter rows(Splitter::Bar::Row);
    rows.setArea({0, 0, 1000, 600});
    rows.restore(1);
    EXPECT_TRUE(rows.hitBar(500, 588));
    EXPECT_FALSE(rows.hitBar(500, 587.5F));
    EXPECT_TRUE(rows.hitBar(500, 612));
    EXPECT_FALSE(rows.hitBar(500, 612.5F));
}

TEST_F(SplitterTest, ASavedRatioIsTakenWithinTheLimits) {
    splitter.restore(0.6F);
    EXPECT_EQ(splitter.ratio(), 0.6F);
    EXPECT_EQ(splitter.displayRatio(), 0.6F);
    EXPECT_EQ(splitter.restoreRatio(), 0.6F);
    splitter.restore(0.2F);
    EXPECT_EQ(splitter.ratio(), 0.5F);
    splitter.restore(7);
    EXPECT_EQ(splitter.ratio(), 1);
}

TEST_F(SplitterTest, ASavedRatioOfZeroMeansThatNoneWasSaved) {
    splitter.restore(0);
    EXPECT_EQ(splitter.ratio(), 0.7F);
}

TEST_F(SplitterTest, ASavedRatioBeyondTheThresholdIsNoPlaceToComeBackTo) {
    splitter.restore(0.99F);
    EXPECT_EQ(splitter.ratio(), 0.99F);
    EXPECT_EQ(splitter.restoreRatio(), 0.7F);
    EXPECT_TRUE(splitter.softwareHidden());
    splitter.restore(0.98F);
    EXPECT_EQ(splitter.restoreRatio(), 0.7F);
}

TEST_F(SplitterTest, ASavedValueThatIsNoNumberGivesTheLeastRatio) {
    splitter.restore(std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(splitter.ratio(), 0.5F);
}

TEST_F(SplitterTest, TheSoftwarePaneIsHiddenFromTheThresholdOn) {
    splitter.restore(0.98F);
    EXPECT_TRUE(splitter.softwareHidden());
    splitter.restore(0.9799F);
    EXPECT_FALSE(splitter.softwareHidden());
}

TEST_F(SplitterTest, ADragFollowsTheCursorWithinTheLimits) {
    splitter.beginDrag();
    splitter.dragTo(812, 10);
    EXPECT_EQ(splitter.ratio(), 0.812F);
    EXPECT_EQ(splitter.displayRatio(), 0.812F);
    EXPECT_EQ(splitter.restoreRatio(), 0.812F);
    EXPECT_EQ(splitter.barRect().x, 810);
    splitter.dragTo(-50, 10);
    EXPECT_EQ(splitter.ratio(), 0.5F);
    splitter.dragTo(2000, 10);
    EXPECT_EQ(splitter.ratio(), 1);
}

TEST_F(SplitterTest, WithoutADragTheCursorMovesNothing) {
    splitter.dragTo(812, 10);
    splitter.endDrag();
    EXPECT_EQ(splitter.ratio(), 0.7F);
    splitter.restore(0.99F);
    splitter.endDrag();
    EXPECT_FALSE(splitter.isAnimating());
}

TEST_F(SplitterTest, AfterTheReleaseTheCursorMovesNothing) {
    dragBarTo(812);
    EXPECT_FALSE(splitter.isDragging());
    splitter.dragTo(600, 10);
    EXPECT_EQ(splitter.ratio(), 0.812F);
}

TEST_F(SplitterTest, APressWithoutAMoveRemembersWhereTheBarWasSnappedTo) {
    splitter.snapSecondPart(198);
    splitter.beginDrag();
    splitter.endDrag();
    EXPECT_FLOAT_EQ(splitter.restoreRatio(), 0.798F);
}

TEST_F(SplitterTest, ReleasedBeyondTheThresholdThePaneFoldsAwayAndRemembersTheLastPlace) {
    splitter.beginDrag();
    splitter.dragTo(850, 10);
    splitter.dragTo(980, 10);
    splitter.endDrag();
    EXPECT_EQ(splitter.restoreRatio(), 0.85F);
    EXPECT_EQ(splitter.ratio(), 1);
    EXPECT_EQ(splitter.displayRatio(), 0.98F);
    EXPECT_TRUE(splitter.isAnimating());
    EXPECT_GT(rest(), 5);
    EXPECT_EQ(splitter.displayRatio(), 1);
    EXPECT_EQ(splitter.barRect().x, 998);
    EXPECT_EQ(splitter.secondRect().w, 0);
    EXPECT_TRUE(splitter.softwareHidden());
}

TEST_F(SplitterTest, ReleasedBelowTheThresholdNothingFolds) {
    dragBarTo(979);
    EXPECT_FALSE(splitter.isAnimating());
    EXPECT_EQ(splitter.restoreRatio(), 0.979F);
}

TEST_F(SplitterTest, TheFoldClosesTheGapExponentially) {
    dragBarTo(980);
    ASSERT_TRUE(splitter.advance(0.1F));
    EXPECT_FLOAT_EQ(splitter.displayRatio(), 0.98F + (1 - std::exp(-0.8F)) * 0.02F);
    EXPECT_FLOAT_EQ(splitter.barRect().x, 1000 * splitter.displayRatio() - 2);
}

TEST_F(SplitterTest, TheFoldTakesTheSameTimeAtAnyFrameRate) {
    dragBarTo(980);
    Splitter slow = splitter;
    for (int i = 0; i < 10; ++i) splitter.advance(0.01F);
    slow.advance(0.1F);
    EXPECT_NEAR(splitter.displayRatio(), slow.displayRatio(), 1e-5F);
}

TEST_F(SplitterTest, TheFoldEndsWithinAThousandth) {
    const auto secondsToGap = [](float gap) { return -std::log(gap / 0.02F) / 8; };
    dragBarTo(980);
    EXPECT_TRUE(splitter.advance(secondsToGap(0.0011F)));
    dragBarTo(980);
    EXPECT_FALSE(splitter.advance(secondsToGap(0.0009F))) << "no frame after the last place";
    EXPECT_EQ(splitter.displayRatio(), 1);
}

TEST_F(SplitterTest, AtRestNoFrameIsNeeded) { EXPECT_FALSE(splitter.advance(0.016F)); }

TEST_F(SplitterTest, ANewDragEndsTheFold) {
    dragBarTo(990);
    splitter.advance(0.016F);
    splitter.beginDrag();
    splitter.dragTo(600, 0);
    EXPECT_FALSE(splitter.isAnimating());
    EXPECT_EQ(splitter.ratio(), 0.6F);
    EXPECT_FALSE(splitter.softwareHidden());
}

TEST_F(SplitterTest, TheBarIsFourPixelsWideToTheMouse) {
    EXPECT_TRUE(splitter.hitBar(698, 300));
    EXPECT_TRUE(splitter.hitBar(702, 0));
    EXPECT_FALSE(splitter.hitBar(697.5F, 300));
    EXPECT_FALSE(splitter.hitBar(703, 300));
    EXPECT_FALSE(splitter.hitBar(700, 601));
}

TEST_F(SplitterTest, WhileThePaneIsHiddenTheBarReachesTenPixelsFurther) {
    splitter.restore(1);
    EXPECT_TRUE(splitter.hitBar(988, 300));
    EXPECT_FALSE(splitter.hitBar(987.5F, 300));
    EXPECT_TRUE(splitter.hitBar(1012, 300));
}

TEST_F(SplitterTest, ASnappedPaneMovesTheBarToItsEdge) {
    splitter.snapSecondPart(198);
    EXPECT_FLOAT_EQ(splitter.ratio(), 0.798F);
    EXPECT_EQ(splitter.displayRatio(), splitter.ratio());
    splitter.snapSecondPart(900);
    EXPECT_EQ(splitter.ratio(), 0.5F);
}

TEST_F(SplitterTest, AnAreaWithoutSizeIsHarmless) {
    splitter.setArea({0, 0, 0, 0});
    splitter.snapSecondPart(100);
    splitter.beginDrag();
    splitter.dragTo(5, 5);
    EXPECT_EQ(splitter.ratio(), 0.7F);
    EXPECT_EQ(splitter.firstRect().w, 0);
    EXPECT_EQ(splitter.secondRect().w, 0);
}

TEST_F(SplitterTest, ANewAreaKeepsTheRatio) {
    splitter.restore(0.8F);
    splitter.setArea({0, 0, 500, 400});
    EXPECT_EQ(splitter.barRect(), (ViewRect{398, 0, 4, 400}));
}

}  // namespace
}  // namespace varnelo
