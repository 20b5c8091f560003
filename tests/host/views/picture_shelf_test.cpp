#include "views/picture_shelf.h"

#include <gtest/gtest.h>

#include <set>
#include <tuple>
#include <utility>

namespace varnelo {
namespace {

constexpr PictureLook kLabel{PictureKind::Label, false, false, 94};
constexpr SlotSize kSlot{106, 48};

class PictureShelfTest : public ::testing::Test {
protected:
    const PicturePlace& place(const std::wstring& text, SlotSize slot = kSlot) {
        return shelf.place(kLabel, text, {-6, -4, 60, 20}, slot);
    }
    bool has(const std::wstring& text) { return shelf.find(kLabel, text) != nullptr; }
    void placeMany(int count, const std::wstring& prefix = L"n") {
        for (int i = 0; i < count; ++i) place(prefix + std::to_wstring(i));
    }
    PictureShelf shelf;
};

TEST_F(PictureShelfTest, FindsWhatWasPlaced) {
    const PicturePlace placed = place(L"notes.txt");
    const PicturePlace* found = shelf.find(kLabel, L"notes.txt");
    ASSERT_TRUE(found);
    EXPECT_EQ(found->x, placed.x);
    EXPECT_EQ(found->extent.width, 60);
    EXPECT_EQ(found->extent.left, -6);
}

TEST_F(PictureShelfTest, EveryPartOfTheLookTellsPicturesApart) {
    place(L"a");
    EXPECT_FALSE(shelf.find({PictureKind::Header, false, false, 94}, L"a"));
    EXPECT_FALSE(shelf.find({PictureKind::Label, true, false, 94}, L"a"));
    EXPECT_FALSE(shelf.find({PictureKind::Label, false, true, 94}, L"a"));
    EXPECT_FALSE(shelf.find({PictureKind::Label, false, false, 142}, L"a"));
    EXPECT_FALSE(shelf.find(kLabel, L"b"));
    EXPECT_TRUE(shelf.find(kLabel, L"a"));
}

TEST_F(PictureShelfTest, SlotsDoNotOverlapAndLieOnTheirPage) {
    std::set<std::tuple<std::size_t, int, int>> corners;
    for (int i = 0; i < 300; ++i) {
        const PicturePlace& at = place(std::to_wstring(i));
        ASSERT_TRUE(corners.insert({at.page, at.x, at.y}).second);
        EXPECT_EQ(at.x % kSlot.width, 0);
        EXPECT_EQ(at.y % kSlot.height, 0);
        EXPECT_LE(at.x + kSlot.width, shelf.page(at.page).width());
        EXPECT_LE(at.y + kSlot.height, shelf.page(at.page).height());
    }
    for (std::size_t i = 0; i < shelf.pageCount(); ++i) {
        EXPECT_LE(shelf.page(i).width(), PictureShelf::kPageWidth);
        EXPECT_LE(shelf.page(i).height(), PictureShelf::kPageHeight);
    }
}

TEST_F(PictureShelfTest, APageHoldsAsManySlotsAsFitButAtLeastOne) {
    const auto cut = [this](const std::wstring& text, SlotSize slot) {
        const PictureShelf::Page& page = shelf.page(place(text, slot).page);
        return std::pair(page.columns, page.rows);
    };
    EXPECT_EQ(cut(L"small", {106, 48}), std::pair(9, 5));
    EXPECT_EQ(cut(L"high", {106, 200}), std::pair(9, 1));
    EXPECT_EQ(cut(L"higher than a page", {106, 300}), std::pair(9, 1));
}

TEST_F(PictureShelfTest, APageIsFullBeforeTheNextIsMade) {
    placeMany(9 * 5);
    EXPECT_EQ(shelf.pageCount(), 1U);
    place(L"one more");
    EXPECT_EQ(shelf.pageCount(), 2U);
}

TEST_F(PictureShelfTest, SlotsOfOneWidthButAnotherHeightLieOnAnotherPage) {
    const std::size_t first = place(L"a", {106, 48}).page;
    const std::size_t higher = place(L"b", {106, 64}).page;
    const std::size_t wider = place(L"c", {128, 48}).page;
    EXPECT_EQ((std::set<std::size_t>{first, higher, wider}).size(), 3U);
    EXPECT_EQ(place(L"d", {106, 48}).page, first);
}

TEST_F(PictureShelfTest, ASlotIsAtLeastAsLargeAsItsPicture) {
    const PicturePlace& at = shelf.place(kLabel, L"wide", {0, 0, 500, 20}, {64, 64});
    EXPECT_GE(shelf.page(at.page).slot.width, 500);
    const PicturePlace& tall = shelf.place(kLabel, L"tall", {0, 0, 60, 90}, {64, 64});
    EXPECT_GE(shelf.page(tall.page).slot.height, 90);
}

TEST_F(PictureShelfTest, APictureWiderThanAPageHasAPageOfItsOwn) {
    const PicturePlace& at = shelf.place(kLabel, L"wide", {0, 0, 4096, 30}, {4096, 32});
    EXPECT_EQ(shelf.page(at.page).columns, 1);
    EXPECT_EQ(shelf.page(at.page).width(), 4096);
}

TEST_F(PictureShelfTest, TheOneUsedLongestAgoMakesRoom) {
    placeMany(static_cast<int>(PictureShelf::kMaxPictures));
    shelf.beginFrame();
    EXPECT_TRUE(has(L"n0"));
    place(L"new");
    EXPECT_EQ(shelf.pictureCount(), PictureShelf::kMaxPictures);
    EXPECT_FALSE(has(L"n1"));
    EXPECT_TRUE(has(L"n0"));
    EXPECT_TRUE(has(L"new"));
}

TEST_F(PictureShelfTest, APictureOfThisFrameNeverGivesWay) {
    const int more = static_cast<int>(PictureShelf::kMaxPictures) + 50;
    placeMany(more);
    for (int i = 0; i < more; ++i) EXPECT_TRUE(has(L"n" + std::to_wstring(i)));
    shelf.beginFrame();
    place(L"next frame");
    EXPECT_EQ(shelf.pictureCount(), PictureShelf::kMaxPictures);
}

TEST_F(PictureShelfTest, APictureAskedForInThisFrameNeverGivesWayEither) {
    const int all = static_cast<int>(PictureShelf::kMaxPictures);
    placeMany(all);
    shelf.beginFrame();
    for (int i = 0; i < all; ++i) EXPECT_TRUE(has(L"n" + std::to_wstring(i)));
    place(L"new");
    EXPECT_TRUE(has(L"n0"));
    EXPECT_EQ(shelf.pictureCount(), PictureShelf::kMaxPictures + 1);
}

TEST_F(PictureShelfTest, FreedSlotsAreUsedAgainBeforeANewPage) {
    placeMany(static_cast<int>(PictureShelf::kMaxPictures));
    const std::size_t pages = shelf.pageCount();
    for (int i = 0; i < 2000; ++i) {
        shelf.beginFrame();
        place(L"m" + std::to_wstring(i));
    }
    EXPECT_EQ(shelf.pageCount(), pages);
}

TEST_F(PictureShelfTest, AnEmptyPageIsCutAnewForAnotherSize) {
    placeMany(static_cast<int>(PictureShelf::kMaxPictures));
    const std::size_t pages = shelf.pageCount();
    for (std::size_t i = 0; i < PictureShelf::kMaxPictures; ++i) {
        shelf.beginFrame();
        place(L"large" + std::to_wstring(i), {154, 48});
    }
    EXPECT_LE(shelf.pageCount(), 2 * pages);
    for (std::size_t i = 0; i < PictureShelf::kMaxPictures; ++i) {
        shelf.beginFrame();
        place(L"again" + std::to_wstring(i));
    }
    EXPECT_LE(shelf.pageCount(), 2 * pages);
}

TEST_F(PictureShelfTest, APageCutAnewForgetsItsOldSlots) {
    place(L"a");
    shelf.place(kLabel, L"a", {}, {});  // gives the slot up
    ASSERT_EQ(shelf.page(0).used, 0U);
    EXPECT_EQ(place(L"large", {154, 48}).page, 0U);
    EXPECT_EQ(shelf.page(0).columns, 6);
    EXPECT_EQ(shelf.page(0).free.size(), 6U * 5 - 1);
}

TEST_F(PictureShelfTest, ATextThatShowsNothingIsRememberedWithoutASlot) {
    shelf.place(kLabel, L"\x200B", {}, kSlot);
    const PicturePlace* found = shelf.find(kLabel, L"\x200B");
    ASSERT_TRUE(found);
    EXPECT_TRUE(found->extent.empty());
    EXPECT_EQ(shelf.pageCount(), 0U);
}

TEST_F(PictureShelfTest, PlacingAgainReplacesThePicture) {
    place(L"a");
    shelf.place(kLabel, L"a", {}, {});
    EXPECT_EQ(shelf.pictureCount(), 1U);
    EXPECT_TRUE(shelf.find(kLabel, L"a")->extent.empty());
    EXPECT_EQ(shelf.page(0).used, 0U);
}

TEST_F(PictureShelfTest, APictureThatTookNoSlotGivesNoneUp) {
    place(L"a");
    shelf.place(kLabel, L"b", {}, kSlot);
    place(L"b");
    place(L"c");
    EXPECT_EQ(shelf.page(0).used, 3U);
    EXPECT_EQ(shelf.page(0).free.size(), 9U * 5 - 3);
}

TEST_F(PictureShelfTest, AfterClearingTheOldestIsOneOfTheNewPictures) {
    placeMany(10);
    shelf.clear();
    placeMany(static_cast<int>(PictureShelf::kMaxPictures), L"m");
    shelf.beginFrame();
    place(L"new");
    EXPECT_FALSE(has(L"m0"));
    EXPECT_TRUE(has(L"m1"));
    EXPECT_EQ(shelf.pictureCount(), PictureShelf::kMaxPictures);
}

TEST_F(PictureShelfTest, ClearingForgetsAll) {
    placeMany(10);
    shelf.clear();
    EXPECT_FALSE(has(L"n0"));
    EXPECT_EQ(shelf.pageCount(), 0U);
    EXPECT_EQ(shelf.pictureCount(), 0U);
}

}  // namespace
}  // namespace varnelo
