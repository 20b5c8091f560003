#include "views/picture_shelf.h"

#include <gtest/gtest.h>

#include <set>
#include <tuple>

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

TEST_F(PictureShelfTest, ClearingForgetsAll) {
    placeMany(10);
    shelf.clear();
    EXPECT_FALSE(has(L"n0"));
    EXPECT_EQ(shelf.pageCount(), 0U);
    EXPECT_EQ(shelf.pictureCount(), 0U);
}

}  // namespace
}  // namespace varnelo
