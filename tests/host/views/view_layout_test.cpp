#include "views/view_layout.h"

#include <gtest/gtest.h>

#include "views/splitter.h"

namespace varnelo {
namespace {

class ViewLayoutTest : public ::testing::Test {
protected:
    void SetUp() override { givenSurface(1280, 800); }

    void givenSurface(float width, float height) {
        Splitter splitter;
        splitter.setArea({0, 0, width, height});
        input.surfaceWidth = width;
        input.surfaceHeight = height;
        input.firstRect = splitter.firstRect();
        input.secondRect = splitter.secondRect();
    }
    ViewLayout layout() const { return layOutView(input); }

    ViewLayoutInput input;
};

TEST_F(ViewLayoutTest, TheMenuButtonIsASquareOfTheMenuRowInTheCorner) {
    EXPECT_EQ(layout().menuButton, (ViewRect{0, 0, 40, 40}));
    input.dpiScale = 2;
    EXPECT_EQ(layout().menuButton, (ViewRect{0, 0, 80, 80}));
    input.dpiScale = 1.25F;
    EXPECT_EQ(layout().menuButton, (ViewRect{0, 0, 50, 50}));
}

TEST_F(ViewLayoutTest, TheMenuRowHasWholePixels) {
    EXPECT_EQ(menuRowHeight(1.01F), 40);
    EXPECT_EQ(menuRowHeight(1.02F), 41);
}

TEST_F(ViewLayoutTest, AllBelowTheMenuRowMakesRoomForItsHeight) {
    input.dpiScale = 2;
    input.searchVisible = true;
    EXPECT_EQ(layout().nameField.y, 90);
    EXPECT_EQ(layout().tabPane.y, 156);
    EXPECT_EQ(layout().tabPane.bottom(), 800);
}

TEST_F(ViewLayoutTest, TheTabbedAreaNeedNotStartAtTheCorner) {
    input.firstRect = {100, 30, 500, 600};
    const ViewLayout out = layout();
    EXPECT_EQ(out.menuButton, (ViewRect{100, 30, 40, 40}));
    EXPECT_EQ(out.tabStrip, (ViewRect{140, 30, 460, 40}));
    EXPECT_EQ(out.nameField, (ViewRect{110, 80, 480, 30}));
    EXPECT_EQ(out.expander, (ViewRect{110, 116, 480, 20}));
    EXPECT_EQ(out.contentField, (ViewRect{110, 140, 480, 30}));
    EXPECT_EQ(out.tabPane, (ViewRect{100, 70, 500, 560}));
    EXPECT_EQ(out.progressBar, (ViewRect{0, 770, 1280, 30}));
}

TEST_F(ViewLayoutTest, TheTabStripFillsTheRowBesideTheButton) {
    const ViewLayout out = layout();
    EXPECT_EQ(out.tabStrip.x, 40);
    EXPECT_EQ(out.tabStrip.right(), input.firstRect.right());
    EXPECT_EQ(out.tabStrip.h, 40);
}

TEST_F(ViewLayoutTest, TheTabPaneLiesBelowTheMenuRow) {
    const ViewLayout out = layout();
    EXPECT_EQ(out.tabPane, (ViewRect{0, 40, input.firstRect.w, 760}));
}

TEST_F(ViewLayoutTest, TheSearchPanelTakes76Pixels) {
    input.searchVisible = true;
    EXPECT_EQ(layout().tabPane.y, 116);
    EXPECT_EQ(layout().tabPane.bottom(), 800);
}

TEST_F(ViewLayoutTest, TheSecondSearchRowTakesItsHeightAndTenMore) {
    input.searchVisible = true;
    input.contentRowHeight = 30;
    EXPECT_EQ(layout().tabPane.y, 156);
    input.contentRowHeight = 12.5F;
    EXPECT_EQ(layout().tabPane.y, 138.5F);
}

TEST_F(ViewLayoutTest, AnUnfoldedRowWithoutTheSearchPanelTakesNothing) {
    input.contentRowHeight = 30;
    EXPECT_EQ(layout().tabPane.y, 40);
}

TEST_F(ViewLayoutTest, TheSearchFieldsStandTenPixelsInside) {
    const ViewLayout out = layout();
    EXPECT_EQ(out.nameField, (ViewRect{10, 50, input.firstRect.w - 20, 30}));
    EXPECT_EQ(out.expander, (ViewRect{10, 86, input.firstRect.w - 20, 20}));
    EXPECT_EQ(out.contentField, (ViewRect{10, 110, input.firstRect.w - 20, 30}));
}

TEST_F(ViewLayoutTest, TheSoftwarePaneIsTheSecondPart) { EXPECT_EQ(layout().softwarePane, input.secondRect); }

TEST_F(ViewLayoutTest, TheProgressBarLiesAtTheBottomOverTheWholeWidth) {
    EXPECT_EQ(layout().progressBar, (ViewRect{0, 770, 1280, 30}));
}

TEST_F(ViewLayoutTest, AWindowWithoutRoomGivesNoNegativeSizes) {
    givenSurface(20, 30);
    input.searchVisible = true;
    const ViewLayout out = layout();
    EXPECT_EQ(out.tabStrip.w, 0);
    EXPECT_EQ(out.nameField.w, 0);
    EXPECT_EQ(out.tabPane.h, 0);
    EXPECT_EQ(out.tabPane.y, 30);
}

}  // namespace
}  // namespace varnelo
