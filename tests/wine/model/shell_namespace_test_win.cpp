#include "model/shell_namespace_win.h"

#include <gtest/gtest.h>
#include <windows.h>

#include "platform/text.h"
#include "support/real_desktop_win.h"

namespace varnelo {
namespace {

class WindowsShellNamespaceTest : public RealDesktopTest {
protected:
    std::vector<ItemIdList> enumerated() {
        std::vector<ItemIdList> children;
        EXPECT_TRUE(shell.enumerateDesktop(root, children));
        return children;
    }
    // The items of the desktop with this path.
    std::vector<ItemIdList> itemsAt(const std::wstring& path) {
        std::vector<ItemIdList> found;
        for (ItemIdList& child : enumerated()) {
            const auto childPath = shell.fileSystemPath(child);
            if (childPath && equalIgnoringCase(*childPath, path)) found.push_back(std::move(child));
        }
        return found;
    }

    ItemIdList root;
};

// 200 characters, of which a file name may have 255.
std::wstring longName() { return L"00 " + std::wstring(193, L'n') + L".txt"; }

TEST_F(WindowsShellNamespaceTest, FilesOfAnyNameAreEnumeratedOnceWithNameAndPath) {
    const std::wstring names[] = {L"00 plain.txt", L"00 \u00E4\u00F6\u00FC \u00DF \u00C4.txt",
                                  L"00 \u65E5\u672C\u8A9E.txt", L"00 \U0001F600 smile.txt", longName()};
    for (const std::wstring& name : names) writeFile(pathOf(name));
    for (const std::wstring& name : names) {
        const auto items = itemsAt(pathOf(name));
        ASSERT_EQ(items.size(), 1u) << name.size();
        EXPECT_EQ(shell.fileSystemPath(items[0]), pathOf(name));
        // With or without the extension, as the shell is set up to show it.
        const std::wstring shown = shell.displayName(items[0]).value();
        EXPECT_TRUE(shown == name || shown == name.substr(0, name.rfind(L'.')));
    }
}

TEST_F(WindowsShellNamespaceTest, HiddenItemsAndFoldersAreEnumerated) {
    writeFile(pathOf(L"00 hidden.txt"));
    ASSERT_TRUE(SetFileAttributesW(pathOf(L"00 hidden.txt").c_str(), FILE_ATTRIBUTE_HIDDEN));
    ASSERT_TRUE(CreateDirectoryW(pathOf(L"00 folder").c_str(), nullptr));
    EXPECT_EQ(itemsAt(pathOf(L"00 hidden.txt")).size(), 1u);
    EXPECT_EQ(itemsAt(pathOf(L"00 folder")).size(), 1u);
}

TEST_F(WindowsShellNamespaceTest, TheRootIsTheDesktopAndTheImmediateParentOfItsItems) {
    ASSERT_TRUE(CreateDirectoryW(pathOf(L"00 folder").c_str(), nullptr));
    writeFile(pathOf(L"00 folder\\inside.txt"));
    const auto folder = itemsAt(pathOf(L"00 folder"));
    ASSERT_EQ(folder.size(), 1u);
    EXPECT_EQ(root.bytes().size(), 2u);
    EXPECT_TRUE(shell.isImmediateParent(root, folder[0]));
    const auto inside = shell.parseDesktopName(pathOf(L"00 folder\\inside.txt"));
    ASSERT_TRUE(inside);
    EXPECT_FALSE(shell.isImmediateParent(root, *inside));
    EXPECT_FALSE(shell.isImmediateParent(ItemIdList(), folder[0]));
}

TEST_F(WindowsShellNamespaceTest, AVirtualItemHasANameButNoPath) {
    int virtualItems = 0;
    for (const ItemIdList& child : enumerated()) {
        if (shell.fileSystemPath(child)) continue;
        ++virtualItems;
        EXPECT_FALSE(shell.displayName(child).value_or(L"").empty());
        EXPECT_TRUE(shell.isImmediateParent(root, child));
    }
    EXPECT_GT(virtualItems, 0);
}

TEST_F(WindowsShellNamespaceTest, AParsedNameIsTheEnumeratedItem) {
    for (const std::wstring& name : {std::wstring(L"00 \u65E5\u672C \U0001F600.txt"), longName()}) {
        writeFile(pathOf(name));
        const auto parsed = shell.parseDesktopName(name);
        ASSERT_TRUE(parsed);
        EXPECT_EQ(shell.fileSystemPath(*parsed), pathOf(name));
        const auto items = itemsAt(pathOf(name));
        ASSERT_EQ(items.size(), 1u);
        EXPECT_TRUE(shell.equal(*parsed, items[0]));
    }
    EXPECT_FALSE(shell.parseDesktopName(L"00 no such file.txt"));
}

TEST_F(WindowsShellNamespaceTest, DifferentItemsAndEmptyListsAreNotEqual) {
    writeFile(pathOf(L"00 a.txt"));
    writeFile(pathOf(L"00 b.txt"));
    const auto a = shell.parseDesktopName(L"00 a.txt");
    const auto b = shell.parseDesktopName(L"00 b.txt");
    ASSERT_TRUE(a && b);
    EXPECT_FALSE(shell.equal(*a, *b));
    EXPECT_TRUE(shell.equal(*a, *a));
    EXPECT_FALSE(shell.equal(ItemIdList(), ItemIdList()));
    EXPECT_FALSE(shell.displayName(ItemIdList()));
    EXPECT_FALSE(shell.fileSystemPath(ItemIdList()));
}

TEST_F(WindowsShellNamespaceTest, ALinkGivesItsTargetWhetherItExistsOrNot) {
    const TemporaryFolder work(L"targets");
    const std::wstring targets[] = {work.path() + L"\\plan \u00E4.txt", work.path(),
                                    work.path() + L"\\missing.doc", work.path() + L"\\noextension"};
    writeFile(targets[0]);
    writeFile(targets[3]);
    for (const std::wstring& target : targets) {
        makeLink(pathOf(L"00 link.lnk"), target);
        EXPECT_EQ(shell.linkTarget(pathOf(L"00 link.lnk")), target);
    }
}

TEST_F(WindowsShellNamespaceTest, WhatIsNoLinkHasNoTarget) {
    writeFile(pathOf(L"00 broken.lnk"), "this is no link at all");
    EXPECT_FALSE(shell.linkTarget(pathOf(L"00 broken.lnk")));
    writeFile(pathOf(L"00 empty.lnk"), "");
    EXPECT_FALSE(shell.linkTarget(pathOf(L"00 empty.lnk")));
    EXPECT_FALSE(shell.linkTarget(pathOf(L"00 missing.lnk")));
}

}  // namespace
}  // namespace varnelo
