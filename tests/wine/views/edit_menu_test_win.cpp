#include "views/edit_menu_win.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "app/language_table.h"
#include "support/cursor_win.h"
#include "support/surface_window_win.h"

namespace varnelo {
namespace {

class EditMenuWinTest : public ::testing::Test {
protected:
    EditMenuWinTest() { language.loadLanguage(GetModuleHandleW(nullptr), Language::German); }

    static std::wstring textAt(HMENU menu, UINT row) {
        wchar_t text[64] = {};
        GetMenuStringW(menu, row, text, 64, MF_BYPOSITION);
        return text;
    }
    static bool greyed(HMENU menu, EditCommand command) {
        return (GetMenuState(menu, static_cast<UINT>(command), MF_BYCOMMAND) & MF_GRAYED) != 0;
    }

    LanguageTable language;
};

TEST_F(EditMenuWinTest, TheRowsAreInTheUsersLanguage) {
    const MenuHandle menu = makeEditMenu({true, true, true}, language);
    ASSERT_EQ(GetMenuItemCount(menu.get()), 6);
    EXPECT_EQ(textAt(menu.get(), 0), L"Ausschneiden");
    EXPECT_EQ(textAt(menu.get(), 1), L"Kopieren");
    EXPECT_EQ(textAt(menu.get(), 2), L"Einf\u00FCgen");
    EXPECT_EQ(textAt(menu.get(), 3), L"L\u00F6schen");
    EXPECT_NE(GetMenuState(menu.get(), 4, MF_BYPOSITION) & MF_SEPARATOR, 0U);
    EXPECT_EQ(textAt(menu.get(), 5), L"Alles ausw\u00E4hlen");
    for (const int row : {0, 1, 2, 3}) EXPECT_EQ(GetMenuItemID(menu.get(), row), static_cast<UINT>(row + 1));
    EXPECT_EQ(GetMenuItemID(menu.get(), 5), 5U);
}

TEST_F(EditMenuWinTest, WhatCannotBeDoneIsGreyed) {
    const MenuHandle all = makeEditMenu({true, true, true}, language);
    const MenuHandle none = makeEditMenu({false, false, false}, language);
    for (const EditCommand command : {EditCommand::Cut, EditCommand::Copy, EditCommand::Paste,
                                      EditCommand::Delete, EditCommand::SelectAll}) {
        EXPECT_FALSE(greyed(all.get(), command));
        EXPECT_TRUE(greyed(none.get(), command));
    }
}

// Presses keys once the menu is up, and closes it if they did not.
constexpr UINT_PTR kKeysTimer = 1;
HWND menuOwner = nullptr;
std::string_view menuKeys;
RECT menuPlace{};

void CALLBACK pressKeys(HWND, UINT, UINT_PTR, DWORD) {
    const HWND menu = FindWindowW(L"#32768", nullptr);
    if (!menu) return;
    GetWindowRect(menu, &menuPlace);
    if (menuKeys.empty()) {
        EndMenu();
        return;
    }
    for (const char key : menuKeys) PostMessageW(menuOwner, WM_KEYDOWN, static_cast<WPARAM>(key), 0);
    menuKeys = {};
}

TEST_F(EditMenuWinTest, TheChosenRowIsTheAnswer) {
    const HiddenWindow window(50, 50);
    menuOwner = window.get();
    PopupEditMenu menu(menuOwner, language);
    const auto chosenBy = [&](std::string_view keys) {
        menuKeys = keys;
        SetTimer(menuOwner, kKeysTimer, 20, pressKeys);
        const EditCommand command = menu.choose({true, true, true});
        KillTimer(menuOwner, kKeysTimer);
        return command;
    };
    const char down = VK_DOWN, up = VK_UP, enter = VK_RETURN, escape = VK_ESCAPE;
    EXPECT_EQ(chosenBy(std::string{down, down, enter}), EditCommand::Copy);
    EXPECT_EQ(chosenBy(std::string{up, enter}), EditCommand::SelectAll);
    EXPECT_EQ(chosenBy(std::string{escape}), EditCommand::None);
}

TEST_F(EditMenuWinTest, ItOpensWithItsCornerAtTheCursor) {
    const HiddenWindow window(50, 50);
    menuOwner = window.get();
    PopupEditMenu menu(menuOwner, language);
    for (const POINT cursor : {POINT{120, 90}, POINT{31, 202}}) {
        ASSERT_TRUE(restCursorAt(cursor.x, cursor.y));
        menuKeys = {};
        menuPlace = {};
        SetTimer(menuOwner, kKeysTimer, 20, pressKeys);
        EXPECT_EQ(menu.choose({true, true, true}), EditCommand::None);
        KillTimer(menuOwner, kKeysTimer);
        EXPECT_EQ(menuPlace.left, cursor.x);
        EXPECT_EQ(menuPlace.top, cursor.y);
    }
}

}  // namespace
}  // namespace varnelo
