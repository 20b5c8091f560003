#include "views/tab_strip.h"

#include <gtest/gtest.h>

namespace varnelo {
namespace {

// Four tabs on 330 pixels from x = 40.
class TabStripTest : public ::testing::Test {
protected:
    TabStripTest() {
        strip.place({40, 0, 330, 40});
        for (const wchar_t* label : {L"Desktop", L"Overview", L"System", L"Search"}) {
            strip.addTab(label, [this, label] { chosen = label; });
        }
    }
    TabStrip strip;
    std::wstring chosen;
};

TEST_F(TabStripTest, TabsShareTheWidthEquallyWithoutRounding) {
    ASSERT_EQ(strip.tabs.size(), 4U);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_FLOAT_EQ(strip.tabs[i].rect.x, 40 + 82.5F * static_cast<float>(i));
        EXPECT_FLOAT_EQ(strip.tabs[i].rect.w, 82.5F);
        EXPECT_EQ(strip.tabs[i].rect.y, 0);
        EXPECT_EQ(strip.tabs[i].rect.h, 40);
    }
    EXPECT_EQ(strip.height(), 40);
}

TEST_F(TabStripTest, TabsFollowTheStrip) {
    strip.place({0, 10, 100, 20});
    EXPECT_EQ(strip.tabs[1].rect, (ViewRect{25, 10, 25, 20}));
}

TEST_F(TabStripTest, APointHitsTheTabUnderIt) {
    EXPECT_EQ(strip.hitTab(40, 0), 0);
    EXPECT_EQ(strip.hitTab(122, 20), 0);
    EXPECT_EQ(strip.hitTab(122.5F, 20), 1) << "an edge belongs to the right tab";
    EXPECT_EQ(strip.hitTab(370, 40), 3);
}

TEST_F(TabStripTest, EveryPointOfTheStripHitsATabWhateverItsWidth) {
    for (int width = 1; width < 2000; width += 7) {
        strip.place({13, 0, static_cast<float>(width), 40});
        for (int x = 0; x <= width; ++x) {
            const auto tab = strip.hitTab(13 + static_cast<float>(x), 20);
            ASSERT_GE(tab, 0);
            ASSERT_LT(tab, 4);
        }
    }
}

TEST_F(TabStripTest, OutsideTheStripThereIsNoTab) {
    EXPECT_EQ(strip.hitTab(39, 20), -1);
    EXPECT_EQ(strip.hitTab(371, 20), -1);
    EXPECT_EQ(strip.hitTab(100, -1), -1);
    EXPECT_EQ(strip.hitTab(100, 41), -1);
    TabStrip empty;
    empty.place({0, 0, 100, 40});
    EXPECT_EQ(empty.hitTab(50, 20), -1);
}

TEST_F(TabStripTest, AtTheStartTheFirstTabIsActiveAndNoneIsUnderTheMouse) {
    EXPECT_EQ(strip.activeIndex, 0);
    EXPECT_EQ(strip.hoverIndex, -1);
}

TEST_F(TabStripTest, TheActiveTabsTintStandsAboveTheHoveredOne) {
    strip.activeIndex = 1;
    strip.hoverIndex = 2;
    EXPECT_EQ(&strip.tint(0), &kTabTint);
    EXPECT_EQ(&strip.tint(1), &kTabActiveTint);
    EXPECT_EQ(&strip.tint(2), &kTabHoveredTint);
    strip.hoverIndex = 1;
    EXPECT_EQ(&strip.tint(1), &kTabActiveTint);
    EXPECT_EQ(&strip.tint(2), &kTabTint);
}

TEST_F(TabStripTest, ATabKeepsItsFunctionWhenItsLabelChanges) {
    strip.setLabel(3, L"Suche");
    strip.setLabel(4, L"none");
    EXPECT_EQ(strip.tabs[3].label, L"Suche");
    strip.tabs[3].run();
    EXPECT_EQ(chosen, L"Search");
    EXPECT_EQ(TabStrip::kFontShare, 0.4F);
    EXPECT_EQ(TabStrip::kShadowOpacity, 0.75F);
}

}  // namespace
}  // namespace varnelo
