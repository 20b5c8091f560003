#include "views/menu_bar.h"

#include <gtest/gtest.h>

namespace varnelo {
namespace {

// A button of 40 by 40 at (500, 0) with four rows below.
class MenuBarTest : public ::testing::Test {
protected:
    MenuBarTest() {
        menu.place(500, 0, 40);
        menu.measureWith([](const std::wstring& label) { return 10.0F * static_cast<float>(label.size()); });
        for (const wchar_t* label : {L"Settings", L"Monitors", L"Info", L"Exit"}) {
            menu.addItem(label, [this, label] { chosen = label; });
        }
        menu.open = true;
    }
    // -1 when no row is hit.
    int rowAt(float x, float y) const {
        std::int32_t row = -1;
        const bool hit = menu.hitRow(x, y, row);
        EXPECT_EQ(hit, row >= 0);
        return row;
    }

    MenuBar menu;
    std::wstring chosen;
};

TEST_F(MenuBarTest, TheButtonIsASquareAndARowIsAsHigh) {
    EXPECT_EQ(menu.rect, (ViewRect{500, 0, 40, 40}));
    EXPECT_EQ(menu.rowHeight, 40);
}

TEST_F(MenuBarTest, ThePanelIsTheWidestLabelAndTwentyMore) {
    EXPECT_EQ(menu.panelWidth, 100);
    EXPECT_EQ(menu.panelRect(), (ViewRect{500, 40, 100, 160}));
}

TEST_F(MenuBarTest, ThePanelsWidthFollowsItemsAndLanguage) {
    menu.addItem(L"A longer one", [] {});
    EXPECT_EQ(menu.panelWidth, 140);
    menu.setLabel(4, L"Kurz");
    EXPECT_EQ(menu.panelWidth, 100);
    menu.setLabel(0, L"Einstellungen");
    EXPECT_EQ(menu.panelWidth, 150);
    EXPECT_EQ(menu.items[0].label, L"Einstellungen");
    menu.setLabel(17, L"Much longer than all of the others");
    EXPECT_EQ(menu.panelWidth, 150);
}

TEST_F(MenuBarTest, WithoutAFontThePanelIsTwentyWide) {
    menu.measureWith(nullptr);
    EXPECT_EQ(menu.panelWidth, 20);
    EXPECT_EQ(MenuBar().panelWidth, 20);
}

TEST_F(MenuBarTest, ThePanelFollowsTheButton) {
    menu.place(100, 15, 30);
    EXPECT_EQ(menu.rect, (ViewRect{100, 15, 30, 30}));
    EXPECT_EQ(menu.panelRect(), (ViewRect{100, 45, 100, 120}));
    EXPECT_EQ(menu.rowRect(1), (ViewRect{100, 75, 100, 30}));
    EXPECT_EQ(rowAt(150, 74), 0);
    EXPECT_EQ(rowAt(150, 164), 3);
}

TEST_F(MenuBarTest, RowsLieBelowEachOtherAndTheirLabelsTenPixelsIn) {
    EXPECT_EQ(menu.rowRect(0), (ViewRect{500, 40, 100, 40}));
    EXPECT_EQ(menu.rowRect(3), (ViewRect{500, 160, 100, 40}));
    EXPECT_EQ(menu.labelRect(3), (ViewRect{510, 160, 90, 40}));
}

TEST_F(MenuBarTest, APointInThePanelHitsItsRow) {
    EXPECT_EQ(rowAt(500, 40), 0);
    EXPECT_EQ(rowAt(550, 79), 0);
    EXPECT_EQ(rowAt(550, 80), 1);
    EXPECT_EQ(rowAt(600, 199), 3);
}

TEST_F(MenuBarTest, APointOutsideThePanelHitsNothing) {
    EXPECT_EQ(rowAt(550, 39), -1);
    EXPECT_EQ(rowAt(499, 60), -1);
    EXPECT_EQ(rowAt(601, 60), -1);
    EXPECT_EQ(rowAt(550, 200), -1) << "the lower edge is no row any more";
    EXPECT_EQ(rowAt(550, 220), -1);
}

TEST_F(MenuBarTest, OfAClosedOrEmptyMenuNoRowIsHit) {
    menu.open = false;
    EXPECT_EQ(rowAt(550, 60), -1);
    MenuBar empty;
    empty.place(500, 0, 40);
    empty.open = true;
    std::int32_t row = 7;
    EXPECT_FALSE(empty.hitRow(510, 40, row));
    EXPECT_FALSE(empty.panelShows());
    EXPECT_EQ(row, 7);
}

TEST_F(MenuBarTest, AMenuWithoutHeightHasNoRows) {
    menu.place(500, 0, 0);
    EXPECT_EQ(rowAt(510, 0), -1);
}

TEST_F(MenuBarTest, TheMouseMakesTheButtonAndOneRowHot) {
    EXPECT_FALSE(menu.onMouseMove(520, 20));
    EXPECT_TRUE(menu.hovered);
    EXPECT_EQ(menu.hotRow, -1);
    EXPECT_TRUE(menu.onMouseMove(520, 130));
    EXPECT_FALSE(menu.hovered);
    EXPECT_EQ(menu.hotRow, 2);
    EXPECT_FALSE(menu.onMouseMove(10, 130));
    EXPECT_EQ(menu.hotRow, -1);
    menu.open = false;
    EXPECT_FALSE(menu.onMouseMove(520, 130));
    EXPECT_EQ(menu.hotRow, -1);
}

TEST_F(MenuBarTest, ARowKeepsItsFunctionWhenItsLabelChanges) {
    menu.setLabel(2, L"Information");
    menu.items[2].run();
    EXPECT_EQ(chosen, L"Info");
}

TEST(MenuBarStart, IsClosedAndCold) {
    const MenuBar menu;
    EXPECT_FALSE(menu.open);
    EXPECT_FALSE(menu.hovered);
    EXPECT_EQ(menu.hotRow, -1);
}

TEST(MenuBarLook, HasItsSizesAndItsSign) {
    EXPECT_EQ(MenuBar::kGlyph[0], 0x2630);
    EXPECT_EQ(MenuBar::kGlyphFontShare, 0.6F);
    EXPECT_EQ(MenuBar::kRowFontShare, 0.4F);
    EXPECT_EQ(MenuBar::kGlyphShadowShift, 0.5F);
    EXPECT_EQ(MenuBar::kGlyphShadowOpacity, 0.5F);
}

}  // namespace
}  // namespace varnelo
