#include "platform/item_id_list.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace varnelo {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes bytesOf(const ItemIdList& list) { return {list.bytes().begin(), list.bytes().end()}; }

TEST(ItemIdList, IsEmptyAtFirst) {
    EXPECT_TRUE(ItemIdList().empty());
    EXPECT_TRUE(ItemIdList().bytes().empty());
}

TEST(ItemIdList, HoldsItsBytesWithTheTerminator) {
    const Bytes source{5, 0, 1, 2, 3, 4, 0, 8, 9, 0, 0};
    const auto list = ItemIdList::fromBytes(source);
    ASSERT_TRUE(list);
    EXPECT_FALSE(list->empty());
    EXPECT_EQ(bytesOf(*list), source);
}

TEST(ItemIdList, TheTerminatorAloneIsTheDesktopAndNotEmpty) {
    const auto list = ItemIdList::fromBytes(Bytes{0, 0});
    ASSERT_TRUE(list);
    EXPECT_FALSE(list->empty());
    EXPECT_NE(*list, ItemIdList());
}

TEST(ItemIdList, LeavesOutWhatFollowsTheTerminator) {
    const auto list = ItemIdList::fromBytes(Bytes{3, 0, 7, 0, 0, 99, 99});
    ASSERT_TRUE(list);
    EXPECT_EQ(bytesOf(*list), (Bytes{3, 0, 7, 0, 0}));
}

TEST(ItemIdList, EveryTruncationIsRefused) {
    const Bytes whole{5, 0, 1, 2, 3, 4, 0, 8, 9, 0, 0};
    for (std::size_t size = 0; size < whole.size(); ++size) {
        EXPECT_EQ(ItemIdList::fromBytes(std::span(whole).first(size)), std::nullopt) << size;
    }
}

TEST(ItemIdList, AnItemSmallerThanItsSizeFieldIsRefused) {
    EXPECT_EQ(ItemIdList::fromBytes(Bytes{1, 0, 0, 0, 0}), std::nullopt);
}

TEST(ItemIdList, AnItemBeyondTheEndIsRefused) {
    EXPECT_EQ(ItemIdList::fromBytes(Bytes{0xFF, 0xFF, 1, 2, 0, 0}), std::nullopt);
}

TEST(ItemIdList, EqualBytesAreEqualLists) {
    EXPECT_EQ(ItemIdList::fromBytes(Bytes{3, 0, 7, 0, 0}), ItemIdList::fromBytes(Bytes{3, 0, 7, 0, 0}));
    EXPECT_NE(ItemIdList::fromBytes(Bytes{3, 0, 7, 0, 0}), ItemIdList::fromBytes(Bytes{3, 0, 8, 0, 0}));
}

TEST(ItemIdList, IsDividedIntoItsFolderAndItsLastItem) {
    const ItemIdList list = *ItemIdList::fromBytes(Bytes{3, 0, 7, 4, 0, 8, 9, 5, 0, 1, 2, 3, 0, 0});
    EXPECT_EQ(bytesOf(list.parent()), (Bytes{3, 0, 7, 4, 0, 8, 9, 0, 0}));
    EXPECT_EQ(bytesOf(list.lastItem()), (Bytes{5, 0, 1, 2, 3, 0, 0}));
}

TEST(ItemIdList, OfOneItemLiesOnTheDesktop) {
    const ItemIdList list = *ItemIdList::fromBytes(Bytes{3, 0, 7, 0, 0});
    EXPECT_EQ(bytesOf(list.parent()), (Bytes{0, 0}));
    EXPECT_EQ(list.lastItem(), list);
}

TEST(ItemIdList, OfTheDesktopIsItsOwnFolderAndLastItem) {
    const ItemIdList desktop = *ItemIdList::fromBytes(Bytes{0, 0});
    EXPECT_EQ(desktop.parent(), desktop);
    EXPECT_EQ(desktop.lastItem(), desktop);
    EXPECT_TRUE(ItemIdList().parent().empty());
    EXPECT_TRUE(ItemIdList().lastItem().empty());
}

TEST(ItemIdList, AnItemOfTheGreatestSizeIsPassedOver) {
    Bytes bytes(0xFFFF + 5, 1);
    bytes[0] = bytes[1] = 0xFF;
    const Bytes last{3, 0, 7, 0, 0};
    std::copy(last.begin(), last.end(), bytes.begin() + 0xFFFF);
    EXPECT_EQ(bytesOf(ItemIdList::fromBytes(bytes)->lastItem()), (Bytes{3, 0, 7, 0, 0}));
}

}  // namespace
}  // namespace varnelo
