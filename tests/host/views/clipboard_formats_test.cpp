#include "views/clipboard_formats.h"

#include <gtest/gtest.h>

#include "platform/binary_stream.h"
#include "support/grid_world.h"

namespace varnelo {
namespace {

using Bytes = std::vector<std::uint8_t>;

ItemIdList list(const Bytes& bytes) { return ItemIdList::fromBytes(bytes).value(); }

const Bytes kDesktop = {0, 0};
const Bytes kFolder = {4, 0, 'f', 'o', 0, 0};
const Bytes kPlan = {4, 0, 'f', 'o', 3, 0, 'p', 0, 0};
const Bytes kNotes = {4, 0, 'f', 'o', 4, 0, 'n', 'o', 0, 0};

// --- paths

TEST(DropFilesBlock, IsAHeaderAndThePathsEachEndedAndTheListEnded) {
    EXPECT_EQ(dropFilesBlock({L"C:\\a", L"D:\\\u65E5"}),
              (Bytes{20,  0, 0,   0, 0,    0, 0,    0,    0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0,  //
                     'C', 0, ':', 0, '\\', 0, 'a',  0,    0, 0,                                //
                     'D', 0, ':', 0, '\\', 0, 0xE5, 0x65, 0, 0,                                //
                     0,   0}));
}

TEST(DropFilesBlock, OfAThousandPathsHoldsThemAll) {
    std::vector<std::wstring> paths;
    for (int i = 0; i < 1000; ++i) paths.push_back(L"C:\\a folder\\" + std::to_wstring(1000 + i));
    const Bytes block = dropFilesBlock(paths);
    EXPECT_EQ(block.size(), 20 + 1000 * 2 * (paths[0].size() + 1) + 2);
    EXPECT_EQ(block[block.size() - 6], '9');  // of the last "1999"
}

// --- copy or move

TEST(DropEffectBlock, IsOneForACopyAndTwoForAMove) {
    EXPECT_EQ(dropEffectBlock(DropEffect::Copy), (Bytes{1, 0, 0, 0}));
    EXPECT_EQ(dropEffectBlock(DropEffect::Move), (Bytes{2, 0, 0, 0}));
}

TEST(DropEffectBlock, MeansAMoveWhereTheBitOfMoveIsSet) {
    EXPECT_EQ(parseDropEffect(Bytes{2, 0, 0, 0}), DropEffect::Move);
    EXPECT_EQ(parseDropEffect(Bytes{7, 0, 0, 0x80}), DropEffect::Move);
    EXPECT_EQ(parseDropEffect(Bytes{2, 0, 0, 0, 9, 9}), DropEffect::Move);
    EXPECT_EQ(parseDropEffect(Bytes{5, 2, 0, 0}), DropEffect::Copy);
}

TEST(DropEffectBlock, MeansACopyWhereItIsMissingOrTooShort) {
    EXPECT_EQ(parseDropEffect(Bytes{}), DropEffect::Copy);
    EXPECT_EQ(parseDropEffect(Bytes{2, 0, 0}), DropEffect::Copy);
}

// --- items

TEST(ShellIdListArrayBlock, IsACountTheOffsetsAndTheListsPacked) {
    EXPECT_EQ(shellIdListArrayBlock(asChildrenOfFirst({list(kPlan), list(kNotes)})),
              (Bytes{2, 0, 0,   0,   16, 0, 0, 0, 22, 0, 0, 0, 27, 0, 0, 0,  //
                     4, 0, 'f', 'o', 0,  0,                                  //
                     3, 0, 'p', 0,   0,                                      //
                     4, 0, 'n', 'o', 0,  0}));
}

TEST(ShellIdListArrayBlock, OfADesktopItemHasTheDesktopAsParent) {
    EXPECT_EQ(shellIdListArrayBlock(asChildrenOfFirst({list(kFolder)})),
              (Bytes{1, 0, 0, 0, 12, 0, 0, 0, 14, 0, 0, 0, 0, 0, 4, 0, 'f', 'o', 0, 0}));
}

// A selection in search results may span folders; the block can name one only, and the first wins.
TEST(ShellIdListArrayBlock, TakesAllItemsForChildrenOfTheFirstOnesFolder) {
    const ItemIdList elsewhere = list({5, 0, 'b', 'a', 'r', 3, 0, 'x', 0, 0});
    const ShellIdListArray array = asChildrenOfFirst({list(kPlan), elsewhere});
    EXPECT_EQ(array.parent, list(kFolder));
    EXPECT_EQ(array.items, (std::vector{list({3, 0, 'p', 0, 0}), list({3, 0, 'x', 0, 0})}));
}

TEST(ShellIdListArrayBlock, IsReadBackAsItWasWritten) {
    std::vector<ItemIdList> items;
    for (int i = 0; i < 1000; ++i)
        items.push_back(idOf(L"\u65E5\u672C\u8A9E " + std::to_wstring(i) + L".txt"));
    const ShellIdListArray array = asChildrenOfFirst(items);
    const auto read = parseShellIdListArray(shellIdListArrayBlock(array));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->parent, array.parent);
    EXPECT_EQ(read->items, items);
}

TEST(ShellIdListArrayBlock, MayHaveListsInAnyOrderAndBytesBetweenAndBehindThem) {
    const auto read = parseShellIdListArray(
        Bytes{1, 0, 0, 0, 19, 0, 0, 0, 13, 0, 0, 0, 99, 3, 0, 'p', 0, 0, 99, 4, 0, 'f', 'o', 0, 0, 99, 99});
    ASSERT_TRUE(read);
    EXPECT_EQ(read->parent, list(kFolder));
    EXPECT_EQ(read->items, (std::vector{list({3, 0, 'p', 0, 0})}));
}

TEST(ShellIdListArrayBlock, MayHoldNoItem) {
    const auto read = parseShellIdListArray(Bytes{0, 0, 0, 0, 8, 0, 0, 0, 0, 0});
    ASSERT_TRUE(read);
    EXPECT_TRUE(read->items.empty());
}

TEST(ShellIdListArrayBlock, EveryTruncationIsRefused) {
    const Bytes whole = shellIdListArrayBlock(asChildrenOfFirst({list(kPlan), list(kNotes)}));
    for (std::size_t size = 0; size < whole.size(); ++size) {
        EXPECT_FALSE(parseShellIdListArray(std::span(whole).first(size))) << size;
    }
}

TEST(ShellIdListArrayBlock, ACountThatTheBlockCannotHoldIsRefused) {
    for (const Bytes& count : {Bytes{0xFF, 0xFF, 0xFF, 0xFF}, Bytes{0xFE, 0xFF, 0xFF, 0xFF},
                               Bytes{0, 0, 0, 0x40}, Bytes{3, 0, 0, 0}}) {
        Bytes block = count;
        block.insert(block.end(), {12, 0, 0, 0, 14, 0, 0, 0, 0, 0, 0, 0});
        EXPECT_FALSE(parseShellIdListArray(block)) << int(count[0]);
    }
}

TEST(ShellIdListArrayBlock, AnOffsetBeyondTheBlockIsRefused) {
    for (const Bytes& offset : {Bytes{14, 0, 0, 0}, Bytes{15, 0, 0, 0}, Bytes{0xFF, 0xFF, 0xFF, 0xFF}}) {
        Bytes ofItem = {1, 0, 0, 0, 12, 0, 0, 0};
        ofItem.insert(ofItem.end(), offset.begin(), offset.end());
        ofItem.insert(ofItem.end(), {0, 0});
        EXPECT_FALSE(parseShellIdListArray(ofItem));
        Bytes ofParent = {1, 0, 0, 0};
        ofParent.insert(ofParent.end(), offset.begin(), offset.end());
        ofParent.insert(ofParent.end(), {12, 0, 0, 0, 0, 0});
        EXPECT_FALSE(parseShellIdListArray(ofParent));
    }
}

TEST(ShellIdListArrayBlock, AListWithoutItsEndIsRefused) {
    EXPECT_FALSE(parseShellIdListArray(Bytes{1, 0, 0, 0, 12, 0, 0, 0, 14, 0, 0, 0, 0, 0, 3, 0, 'p'}));
    EXPECT_FALSE(parseShellIdListArray(Bytes{1, 0, 0, 0, 12, 0, 0, 0, 14, 0, 0, 0, 0, 0, 0xFF, 0xFF, 'p'}));
    EXPECT_FALSE(parseShellIdListArray(Bytes{1, 0, 0, 0, 12, 0, 0, 0, 14, 0, 0, 0, 0, 0, 1, 0, 0, 0}));
}

TEST(ShellIdListArrayBlock, OffsetsOfOneLongListCannotBlowItUp) {
    constexpr std::uint32_t kCount = 1000;
    BinaryWriter out;
    out.u32(kCount);
    for (std::uint32_t i = 0; i <= kCount; ++i) out.u32(4 + 4 * (kCount + 1));
    out.u16(20000);
    out.bytes(Bytes(19998, 'x'));
    out.u16(0);
    EXPECT_FALSE(parseShellIdListArray(out.bytes()));
}

}  // namespace
}  // namespace varnelo
