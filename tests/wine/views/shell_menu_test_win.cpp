// The two menus: what they hold, and what is done with the choice.

#include <gmock/gmock.h>
#include <windows.h>

#include <algorithm>
#include <cstring>

#include "support/shell_files_win.h"
#include "views/shell_menu_win.h"

namespace varnelo {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// --- the own menu

struct InstalledProgram final : FileMetaData {
    std::wstring uninstaller;
    std::wstring uninstallPath() const override { return uninstaller; }
};

const std::wstring kMenu = L"menu 258, window";  // TPM_RETURNCMD | TPM_RIGHTBUTTON

class ItemMenuTest : public ShellFilesTest {
protected:
    std::vector<std::wstring> afterChoice(int choice) {
        calls.done.clear();
        calls.executed.clear();
        calls.choice = choice;
        FileEntry shown = entry(virtualItem());
        shown.metaData = &program;
        recorded.showItemMenu(shown);
        return calls.done;
    }
    InstalledProgram program;
};

TEST_F(ItemMenuTest, OffersToRunTheItemAndToRunItAsAdministrator) {
    EXPECT_THAT(afterChoice(0), ElementsAre(kMenu));
    EXPECT_THAT(calls.menuItems, ElementsAre(L"1 Run", L"2 Run as Administrator"));
}

TEST_F(ItemMenuTest, OffersToUninstallWhatHasAnUninstaller) {
    program.uninstaller = L"c:\\tool\\uninst.exe";
    afterChoice(0);
    EXPECT_THAT(calls.menuItems, ElementsAre(L"1 Run", L"2 Run as Administrator", L"-", L"3 Uninstall"));
}

TEST_F(ItemMenuTest, RunsTheItemByItsIdList) {
    EXPECT_THAT(afterChoice(1), ElementsAre(kMenu, L"execute open, mask 4, window, file null, show 1"));
    EXPECT_THAT(calls.executed, ElementsAre(virtualItem()));
    EXPECT_THAT(afterChoice(2), ElementsAre(kMenu, L"execute runas, mask 4, window, file null, show 1"));
    EXPECT_THAT(calls.executed, ElementsAre(virtualItem()));
}

TEST_F(ItemMenuTest, RunsTheUninstallerInItsFolder) {
    program.uninstaller = L"c:\\my tool\\uninst.exe";
    EXPECT_THAT(afterChoice(3),
                ElementsAre(kMenu, L"open window, c:\\my tool\\uninst.exe, null, c:\\my tool, 1"));
    program.uninstaller = L"uninst.exe";
    EXPECT_THAT(afterChoice(3), ElementsAre(kMenu, L"open window, uninst.exe, null, null, 1"));
}

TEST_F(ItemMenuTest, RunsTheUninstallerOfTheItemThatWasClickedWhateverHappensMeanwhile) {
    program.uninstaller = L"c:\\a\\uninst.exe";
    calls.whileMenuIsOpen = [this](HMENU) { program.uninstaller = L"c:\\b\\uninst.exe"; };
    EXPECT_EQ(afterChoice(3).back(), L"open window, c:\\a\\uninst.exe, null, c:\\a, 1");
}

TEST_F(ItemMenuTest, OpensWithoutMetadataButNotWithoutAnIdList) {
    recorded.showItemMenu(entry(virtualItem()));
    EXPECT_THAT(calls.done, ElementsAre(kMenu));
    recorded.showItemMenu(FileEntry());
    EXPECT_THAT(calls.done, ElementsAre(kMenu));
}

// --- the shell's menu, filled by a stand-in

class StandInMenu final : public IContextMenu3 {
public:
    HRESULT filled = S_OK;
    HRESULT named = S_OK;
    std::string verb = "frobnicate";
    bool takesMessages = true;
    bool isOld = false;  // without the interface that answers messages
    std::vector<std::wstring> done;
    ULONG references = 1;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
        const bool ofMessages = id == IID_IContextMenu2 || id == IID_IContextMenu3;
        if (id != IID_IUnknown && id != IID_IContextMenu &&
            !(ofMessages && takesMessages && !(isOld && id == IID_IContextMenu3))) {
            *object = nullptr;
            return E_NOINTERFACE;
        }
        *object = this;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override { return --references; }

    HRESULT STDMETHODCALLTYPE QueryContextMenu(HMENU menu, UINT index, UINT first, UINT last,
                                               UINT flags) override {
        AppendMenuW(menu, MF_STRING, first + 6, L"Frobnicate");
        done.push_back(L"fill " + std::to_wstring(index) + L" " + std::to_wstring(first) + L" " +
                       std::to_wstring(last) + L" " + std::to_wstring(flags));
        return filled;
    }
    HRESULT STDMETHODCALLTYPE GetCommandString(UINT_PTR command, UINT type, UINT* reserved, LPSTR name,
                                               UINT size) override {
        done.push_back(L"name " + std::to_wstring(command) + L" " + std::to_wstring(type) + L" " +
                       std::to_wstring(size) + (reserved ? L" reserved" : L""));
        std::memcpy(name, verb.c_str(), std::min<std::size_t>(size, verb.size() + 1));  // as some do: no end
        return named;
    }
    HRESULT STDMETHODCALLTYPE InvokeCommand(CMINVOKECOMMANDINFO* info) override {
        done.push_back(L"invoke " + std::to_wstring(reinterpret_cast<UINT_PTR>(info->lpVerb)) + L", size " +
                       std::to_wstring(info->cbSize) + L", mask " + std::to_wstring(info->fMask) +
                       (info->hwnd ? L", window" : L"") + L", show " + std::to_wstring(info->nShow));
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE HandleMenuMsg(UINT message, WPARAM, LPARAM) override {
        done.push_back(L"old message " + std::to_wstring(message));
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE HandleMenuMsg2(UINT message, WPARAM, LPARAM, LRESULT* result) override {
        done.push_back(L"message " + std::to_wstring(message));
        *result = 77;
        return S_OK;
    }
};

class ContextMenuTest : public ShellFilesTest {
protected:
    std::vector<std::wstring> afterChoice(int choice) {
        calls.choice = choice;
        showContextMenu(
            menu, window, [this](bool cut) { menu.done.push_back(cut ? L"cut" : L"copy"); }, calls);
        return menu.done;
    }
    StandInMenu menu;
    const std::wstring filled = L"fill 0 1 32767 0";
    const std::wstring named = L"name 6 0 256";
};

TEST_F(ContextMenuTest, InvokesTheChosenCommandByItsOffset) {
    EXPECT_THAT(afterChoice(7), ElementsAre(filled, named, L"invoke 6, size 56, mask 0, window, show 1"));
    EXPECT_THAT(calls.done, ElementsAre(kMenu));
    EXPECT_THAT(calls.menuItems, ElementsAre(L"7 Frobnicate"));
    EXPECT_EQ(menu.references, 1u);
}

TEST_F(ContextMenuTest, WithoutAChoiceNothingIsDone) {
    EXPECT_THAT(afterChoice(0), ElementsAre(filled));
    EXPECT_THAT(afterChoice(-1), ElementsAre(filled, filled));
}

TEST_F(ContextMenuTest, CutAndCopyStayInTheProgram) {
    menu.verb = "cut";
    EXPECT_THAT(afterChoice(7), ElementsAre(filled, named, L"cut"));
    menu.done.clear();
    menu.verb = "copy";
    EXPECT_THAT(afterChoice(7), ElementsAre(filled, named, L"copy"));
    menu.done.clear();
    menu.verb = "copyaspath";
    EXPECT_THAT(afterChoice(7), ElementsAre(filled, named, L"invoke 6, size 56, mask 0, window, show 1"));
}

// So it is with entries of programs that name none of theirs.
TEST_F(ContextMenuTest, ACommandWithoutAVerbIsNotInvoked) {
    menu.named = E_NOTIMPL;
    EXPECT_THAT(afterChoice(7), ElementsAre(filled, named));
}

TEST_F(ContextMenuTest, AVerbThatFillsTheBufferIsHarmless) {
    menu.verb = std::string(5000, 'v');
    EXPECT_EQ(afterChoice(7).back(), L"invoke 6, size 56, mask 0, window, show 1");
}

TEST_F(ContextMenuTest, AMenuThatCannotBeFilledIsNotShown) {
    menu.filled = E_FAIL;
    EXPECT_THAT(afterChoice(7), ElementsAre(filled));
    EXPECT_THAT(calls.done, IsEmpty());
}

TEST_F(ContextMenuTest, WhileItIsOpenTheMenuTakesItsMessages) {
    calls.whileMenuIsOpen = [this](HMENU shown) {
        menu.done.clear();
        EXPECT_EQ(SendMessageW(window, WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(shown), 0), 77);
        EXPECT_EQ(SendMessageW(window, WM_MENUCHAR, 'x', 0), 77);
        EXPECT_EQ(SendMessageW(window, WM_DRAWITEM, 0, 0), 77);
        EXPECT_EQ(SendMessageW(window, WM_MEASUREITEM, 0, 0), 77);
        // Of a control, and of no menu.
        SendMessageW(window, WM_DRAWITEM, 1, 0);
        SendMessageW(window, WM_SIZE, 0, 0);
    };
    EXPECT_THAT(afterChoice(0), ElementsAre(L"message 279", L"message 288", L"message 43", L"message 44"));
    SendMessageW(window, WM_INITMENUPOPUP, 0, 0);
    EXPECT_EQ(menu.done.size(), 4u);
    EXPECT_EQ(menu.references, 1u);
}

// The older interface gives no answers; a key that no item knows needs one, and keeps the system's.
TEST_F(ContextMenuTest, AnOldMenuTakesItsMessagesButNoKeys) {
    menu.isOld = true;
    calls.whileMenuIsOpen = [this](HMENU shown) {
        menu.done.clear();
        EXPECT_EQ(SendMessageW(window, WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(shown), 0), 0);
        EXPECT_EQ(SendMessageW(window, WM_DRAWITEM, 0, 0), TRUE);
        EXPECT_EQ(SendMessageW(window, WM_MEASUREITEM, 0, 0), TRUE);
        SendMessageW(window, WM_MENUCHAR, 'x', 0);
    };
    EXPECT_THAT(afterChoice(0), ElementsAre(L"old message 279", L"old message 43", L"old message 44"));
    EXPECT_EQ(menu.references, 1u);
}

TEST_F(ContextMenuTest, AMenuThatWantsNoMessagesIsShownAllTheSame) {
    menu.takesMessages = false;
    calls.whileMenuIsOpen = [this](HMENU) { SendMessageW(window, WM_INITMENUPOPUP, 0, 0); };
    EXPECT_EQ(afterChoice(7).back(), L"invoke 6, size 56, mask 0, window, show 1");
}

// --- the shell's menu of real files

class ShellMenuTest : public ShellFilesTest {
protected:
    // The id of the command with that verb in the menu of these items, as its program would name it.
    int idOf(const std::string& verb, const std::vector<ItemIdList>& items) {
        int id = 0;
        calls.whileMenuIsOpen = [&](HMENU shown) {
            for (int i = 0; i < GetMenuItemCount(shown); ++i) {
                wchar_t text[100] = {};
                GetMenuStringW(shown, static_cast<UINT>(i), text, 100, MF_BYPOSITION);
                std::string plain;
                for (const wchar_t unit : std::wstring(text)) {
                    if (unit == L'\t') break;
                    if (unit != L'&')
                        plain.push_back(static_cast<char>(std::tolower(static_cast<char>(unit))));
                }
                if (plain == verb) id = static_cast<int>(GetMenuItemID(shown, i));
            }
        };
        calls.choice = 0;
        recorded.showShellMenu(items);
        calls.whileMenuIsOpen = nullptr;
        return id;
    }
    std::map<std::wstring, std::vector<std::uint8_t>> clipboardAfter(const std::string& verb,
                                                                     const std::vector<ItemIdList>& items) {
        calls.choice = idOf(verb, items);
        EXPECT_GT(calls.choice, 0) << verb;
        emptyClipboard();
        recorded.showShellMenu(items);
        return clipboardBlocks();
    }
};

TEST_F(ShellMenuTest, CutAndCopyPutTheSameThereAsTheKeysDo) {
    const std::vector<ItemIdList> items = {itemAt(file(L"a & b.txt")), itemAt(file(L"\u65E5\u672C.txt"))};
    actions.copyItems(items, false);
    const auto copied = clipboardBlocks();
    actions.copyItems(items, true);
    const auto cut = clipboardBlocks();
    EXPECT_EQ(clipboardAfter("copy", items), copied);
    EXPECT_EQ(clipboardAfter("cut", items), cut);
}

TEST_F(ShellMenuTest, IsThatOfTheShellForFilesFoldersAndVirtualItems) {
    for (const ItemIdList& shown : {itemAt(file(L"a.txt")), itemAt(directory(L"folder")), virtualItem()}) {
        calls.menuItems.clear();
        recorded.showShellMenu({shown});
        EXPECT_FALSE(calls.menuItems.empty());
    }
}

TEST_F(ShellMenuTest, IsNotShownForNothing) {
    recorded.showShellMenu({});
    EXPECT_THAT(calls.done, IsEmpty());
}

// The real menu on the screen, worked by keys.
TEST_F(ShellMenuTest, IsWorkedByKeys) {
    const std::vector<ItemIdList> items = {itemAt(file(L"a.txt"))};
    const int copy = idOf("copy", items);
    ASSERT_GT(copy, 0);
    int downs = 0;
    calls.whileMenuIsOpen = [&](HMENU shown) {
        for (int i = 0; i < GetMenuItemCount(shown); ++i) {
            MENUITEMINFOW info = {};
            info.cbSize = sizeof info;
            info.fMask = MIIM_FTYPE | MIIM_ID | MIIM_STATE;
            GetMenuItemInfoW(shown, static_cast<UINT>(i), TRUE, &info);
            if (!(info.fType & MFT_SEPARATOR)) ++downs;
            if (static_cast<int>(info.wID) == copy) return;
        }
    };
    recorded.showShellMenu(items);
    for (int i = 0; i < downs; ++i) PostMessageW(window, WM_KEYDOWN, VK_DOWN, 0);
    PostMessageW(window, WM_KEYDOWN, VK_RETURN, 0);
    actions.showShellMenu(items);
    const auto blocks = clipboardBlocks();
    EXPECT_EQ(blocks.at(L"Preferred DropEffect"), (std::vector<std::uint8_t>{1, 0, 0, 0}));
    EXPECT_EQ(blocks.count(L"Shell IDList Array"), 1u);
}

TEST_F(ShellMenuTest, ClosedByAKeyItDoesNothing) {
    PostMessageW(window, WM_KEYDOWN, VK_ESCAPE, 0);
    actions.showShellMenu({itemAt(file(L"a.txt"))});
    EXPECT_THAT(clipboardBlocks(), IsEmpty());
    EXPECT_THAT(namesIn(folder.path()), ElementsAre(L"a.txt"));
}

}  // namespace
}  // namespace varnelo
