// Files on the real clipboard, and the other program that finds or puts them there.

#include <gmock/gmock.h>
#include <windows.h>

#include "platform/item_id_list_win.h"
#include "support/shell_files_win.h"
#include "views/clipboard_formats.h"
#include "views/shell_clipboard_win.h"

namespace varnelo {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Key;
using ::testing::UnorderedElementsAre;

const std::wstring kPaths = std::to_wstring(CF_HDROP);
const std::wstring kEffect = L"Preferred DropEffect";
const std::wstring kItems = L"Shell IDList Array";

class ShellClipboardTest : public ShellFilesTest {
protected:
    // The names in a folder of this test.
    std::vector<std::wstring> in(const std::wstring& name) const { return namesIn(pathOf(name)); }
    std::wstring contentOf(const std::wstring& name) const {
        const auto lines = linesOf(pathOf(name));
        return lines.empty() ? L"" : lines[0];
    }
    DWORD peer(const std::wstring& verb, const std::vector<std::wstring>& names) const {
        std::vector<std::wstring> arguments{verb};
        for (const std::wstring& name : names) arguments.push_back(pathOf(name));
        return runTestProgram(L"file_clipboard_peer.exe", arguments);
    }
};

// --- what is put there

TEST_F(ShellClipboardTest, ACopyPutsThreeFormatsThereByteForByte) {
    const std::vector<std::wstring> paths = {file(L"plan 1.txt"), file(L"\u65E5\u672C\u8A9E & %PATH%.txt")};
    const std::vector<ItemIdList> items = {itemAt(paths[0]), itemAt(paths[1])};
    actions.copyItems(items, false);
    const auto blocks = clipboardBlocks();
    EXPECT_EQ(blocks.at(kPaths), dropFilesBlock(paths));
    EXPECT_EQ(blocks.at(kEffect), (std::vector<std::uint8_t>{1, 0, 0, 0}));
    // The offsets and lists, from the shell's own functions.
    const ShellIdList parent(ILClone(shellIdList(items[0])));
    ASSERT_TRUE(ILRemoveLastID(parent.get()));
    ShellIdListArray array{itemIdListFrom(parent.get()), {}};
    for (const ItemIdList& id : items) array.items.push_back(itemIdListFrom(ILFindLastID(shellIdList(id))));
    EXPECT_EQ(blocks.at(kItems), shellIdListArrayBlock(array));
}

TEST_F(ShellClipboardTest, ACutDiffersInTheEffectAlone) {
    const std::vector<ItemIdList> items = {itemAt(file(L"plan.txt"))};
    actions.copyItems(items, false);
    auto expected = clipboardBlocks();
    actions.copyItems(items, true);
    expected.at(kEffect) = {2, 0, 0, 0};
    EXPECT_EQ(clipboardBlocks(), expected);
}

TEST_F(ShellClipboardTest, NoItemsLeaveTheClipboardAlone) {
    actions.copyItems({itemAt(file(L"plan.txt"))}, false);
    const auto before = clipboardBlocks();
    actions.copyItems({}, true);
    EXPECT_EQ(clipboardBlocks(), before);
}

TEST_F(ShellClipboardTest, WhatWasThereBeforeIsGone) {
    putOnClipboard(L"Varnelo test format", {1, 2, 3});
    actions.copyItems({itemAt(file(L"plan.txt"))}, false);
    EXPECT_THAT(clipboardBlocks(), UnorderedElementsAre(Key(kPaths), Key(kEffect), Key(kItems)));
}

TEST_F(ShellClipboardTest, AVirtualItemIsThereWithoutAPath) {
    actions.copyItems({virtualItem()}, false);
    EXPECT_THAT(clipboardBlocks(), UnorderedElementsAre(Key(kEffect), Key(kItems)));
    actions.copyItems({virtualItem(), itemAt(file(L"plan.txt"))}, false);
    EXPECT_EQ(clipboardBlocks().at(kPaths), dropFilesBlock({pathOf(L"plan.txt")}));
}

// A selection in search results may span folders.
TEST_F(ShellClipboardTest, ItemsOfTwoFoldersHaveTheirOwnPathsAndTheFirstOnesFolder) {
    directory(L"a");
    directory(L"b");
    const std::vector<std::wstring> paths = {file(L"a\\1.txt"), file(L"b\\2.txt")};
    actions.copyItems({itemAt(paths[0]), itemAt(paths[1])}, false);
    const auto blocks = clipboardBlocks();
    EXPECT_EQ(blocks.at(kPaths), dropFilesBlock(paths));
    const auto array = parseShellIdListArray(blocks.at(kItems));
    ASSERT_TRUE(array);
    EXPECT_EQ(itemPath(array->parent), pathOf(L"a"));
    EXPECT_EQ(array->items.size(), 2u);
}

TEST_F(ShellClipboardTest, AThousandItemsAreAllThere) {
    const ItemIdList first = itemAt(file(L"0.txt"));
    std::vector<ItemIdList> items(1000, first);
    actions.copyItems(items, false);
    const auto array = parseShellIdListArray(clipboardBlocks().at(kItems));
    ASSERT_TRUE(array);
    EXPECT_EQ(array->items.size(), 1000u);
    EXPECT_EQ(clipboardBlocks().at(kPaths).size(), 20 + 1000 * 2 * (pathOf(L"0.txt").size() + 1) + 2);
}

TEST_F(ShellClipboardTest, WhileAnotherProgramHasTheClipboardNothingHappens) {
    putOnClipboard(kItems.c_str(), {1, 2, 3});
    const auto before = clipboardBlocks();
    const std::wstring held = pathOf(L"held");
    const ProcessHandle holder = startTestProgram(L"file_clipboard_peer.exe", {L"hold", held});
    ASSERT_TRUE(becomesTrue([&] { return GetFileAttributesW(held.c_str()) != INVALID_FILE_ATTRIBUTES; }));
    actions.copyItems({itemAt(held)}, false);
    recorded.pasteInto(itemAt(folder.path()));
    EXPECT_TRUE(becomesTrue([&] { return DeleteFileW(held.c_str()) != FALSE; }));
    ASSERT_EQ(WaitForSingleObject(holder.get(), 60000), WAIT_OBJECT_0);
    EXPECT_EQ(clipboardBlocks(), before);
    EXPECT_THAT(calls.done, IsEmpty());
}

// --- between two programs

TEST_F(ShellClipboardTest, AnotherProgramPastesWhatWasCopied) {
    directory(L"target");
    file(L"plan 1.txt");
    file(L"\u65E5\u672C\u8A9E & %PATH%.txt");
    actions.copyItems({item(L"plan 1.txt"), item(L"\u65E5\u672C\u8A9E & %PATH%.txt")}, false);
    ASSERT_EQ(peer(L"paste", {L"target"}), 0u);
    EXPECT_THAT(in(L"target"), ElementsAre(L"plan 1.txt", L"\u65E5\u672C\u8A9E & %PATH%.txt"));
    EXPECT_EQ(contentOf(L"target\\plan 1.txt"), pathOf(L"plan 1.txt"));
    EXPECT_EQ(contentOf(L"plan 1.txt"), pathOf(L"plan 1.txt"));
}

TEST_F(ShellClipboardTest, AnotherProgramMovesWhatWasCut) {
    directory(L"target");
    file(L"plan.txt");
    actions.copyItems({item(L"plan.txt")}, true);
    ASSERT_EQ(peer(L"paste", {L"target"}), 0u);
    EXPECT_THAT(in(L"target"), ElementsAre(L"plan.txt"));
    EXPECT_THAT(namesIn(folder.path()), ElementsAre(L"target"));
}

TEST_F(ShellClipboardTest, WhatAnotherProgramCopiedIsCopiedByPaste) {
    directory(L"source");
    directory(L"target");
    directory(L"source\\folder");
    file(L"source\\folder\\inside.txt");
    file(L"source\\\u65E5\u672C & %PATH%.txt");
    ASSERT_EQ(peer(L"copy", {L"source\\folder", L"source\\\u65E5\u672C & %PATH%.txt"}), 0u);
    actions.pasteInto(item(L"target"));
    EXPECT_THAT(in(L"target"), ElementsAre(L"folder", L"\u65E5\u672C & %PATH%.txt"));
    EXPECT_THAT(in(L"target\\folder"), ElementsAre(L"inside.txt"));
    EXPECT_EQ(in(L"source"), in(L"target"));
}

TEST_F(ShellClipboardTest, WhatAnotherProgramCutIsMovedByPaste) {
    directory(L"source");
    directory(L"target");
    file(L"source\\plan.txt");
    ASSERT_EQ(peer(L"cut", {L"source\\plan.txt"}), 0u);
    actions.pasteInto(item(L"target"));
    EXPECT_THAT(in(L"target"), ElementsAre(L"plan.txt"));
    EXPECT_THAT(in(L"source"), IsEmpty());
}

TEST_F(ShellClipboardTest, OwnItemsArePastedAndTheClipboardKeepsThem) {
    directory(L"target");
    file(L"plan.txt");
    actions.copyItems({item(L"plan.txt")}, true);
    const auto before = clipboardBlocks();
    actions.pasteInto(item(L"target"));
    EXPECT_THAT(in(L"target"), ElementsAre(L"plan.txt"));
    EXPECT_EQ(clipboardBlocks(), before);
    // The file is not where the clipboard says any more: nothing to move.
    actions.pasteInto(item(L"target"));
    EXPECT_THAT(in(L"target"), ElementsAre(L"plan.txt"));
}

// --- what paste asks of the shell

class PasteCallsTest : public ShellClipboardTest {
protected:
    std::vector<std::wstring> pasted() {
        calls.done.clear();
        recorded.pasteInto(item(L"target"));
        return calls.done;
    }
    std::wstring call(const wchar_t* function, const std::vector<std::wstring>& names) const {
        std::wstring from;
        for (const std::wstring& name : names) from += L"[" + pathOf(name) + L"]";
        return L"operation " + std::wstring(function) + L", window, " + from + L" to [" + pathOf(L"target") +
               L"], flags 584, title null";
    }
    void SetUp() override {
        directory(L"target");
        file(L"a.txt");
        file(L"b.txt");
    }
};

TEST_F(PasteCallsTest, CopiesOrMovesAllItemsInOneOperation) {
    const std::vector<ItemIdList> items = {item(L"b.txt"), item(L"a.txt")};
    actions.copyItems(items, false);
    EXPECT_THAT(pasted(), ElementsAre(call(L"2", {L"b.txt", L"a.txt"})));
    actions.copyItems(items, true);
    EXPECT_THAT(pasted(), ElementsAre(call(L"1", {L"b.txt", L"a.txt"})));
}

TEST_F(PasteCallsTest, WithoutAnEffectTheItemsAreCopied) {
    actions.copyItems({item(L"a.txt")}, true);
    const auto items = clipboardBlocks().at(kItems);
    emptyClipboard();
    putOnClipboard(kItems.c_str(), items);
    EXPECT_THAT(pasted(), ElementsAre(call(L"2", {L"a.txt"})));
    putOnClipboard(kEffect.c_str(), {5, 0, 0, 0});
    EXPECT_THAT(pasted(), ElementsAre(call(L"2", {L"a.txt"})));
    putOnClipboard(kEffect.c_str(), {3, 0, 0, 0});
    EXPECT_THAT(pasted(), ElementsAre(call(L"1", {L"a.txt"})));
}

TEST_F(PasteCallsTest, PathsAloneAreNotPasted) {
    ASSERT_EQ(peer(L"paths", {L"a.txt"}), 0u);
    ASSERT_THAT(clipboardBlocks(), UnorderedElementsAre(Key(kPaths)));
    EXPECT_THAT(pasted(), IsEmpty());
}

TEST_F(PasteCallsTest, AnEmptyClipboardIsNotPasted) { EXPECT_THAT(pasted(), IsEmpty()); }

TEST_F(PasteCallsTest, AVirtualItemIsNotPasted) {
    actions.copyItems({virtualItem()}, false);
    EXPECT_THAT(pasted(), IsEmpty());
}

TEST_F(PasteCallsTest, NothingIsPastedIntoAFolderWithoutAPathOrIntoNone) {
    actions.copyItems({item(L"a.txt")}, false);
    recorded.pasteInto(virtualItem());
    recorded.pasteInto(ItemIdList());
    EXPECT_THAT(calls.done, IsEmpty());
}

TEST_F(PasteCallsTest, ABrokenListOfItemsIsNotPasted) {
    actions.copyItems({item(L"a.txt"), item(L"b.txt")}, true);
    const auto whole = clipboardBlocks().at(kItems);
    const auto with = [&](std::size_t at, std::uint8_t value) {
        auto block = whole;
        block.at(at) = value;
        return block;
    };
    const std::vector<std::vector<std::uint8_t>> broken = {
        {whole.begin(), whole.end() - 2},    // no end
        {whole.begin(), whole.begin() + 3},  // no count
        with(3, 0xFF),                       // a count that nothing can hold
        with(0, 200),                        // offsets that are none
        with(11, 0xFF),                      // an offset beyond the block
        with(7, 0x7F),                       // the folder's too
    };
    for (const auto& block : broken) {
        emptyClipboard();
        putOnClipboard(kItems.c_str(), block);
        putOnClipboard(kEffect.c_str(), {2, 0, 0, 0});
        EXPECT_THAT(pasted(), IsEmpty());
    }
}

}  // namespace
}  // namespace varnelo
