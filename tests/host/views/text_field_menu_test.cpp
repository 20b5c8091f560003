// The popup menu of a text field, its rows, and blocks of the clipboard.

#include "host/views/text_field_test.h"

namespace varnelo {
namespace {

class TextFieldMenuTest : public TextFieldTest {};

TEST_F(TextFieldMenuTest, TheMenuKnowsWhatThereIsToDo) {
    given(L"a[b]c");
    clipboard.content = L"x";
    choose(EditCommand::None);
    ASSERT_TRUE(menu.shown);
    EXPECT_TRUE(menu.shown->hasSelection && menu.shown->hasText && menu.shown->clipboardHasText);
    EXPECT_EQ(shown(), L"a[b]c");
    given(L"|");
    clipboard.content.reset();
    choose(EditCommand::None);
    EXPECT_FALSE(menu.shown->hasSelection || menu.shown->hasText || menu.shown->clipboardHasText);
}

TEST_F(TextFieldMenuTest, TheMenuOpensOnlyInsideTheField) {
    given(L"abc|");
    cursorTo(90, 65);
    field.onRightClick();
    EXPECT_FALSE(menu.shown);
}

TEST_F(TextFieldMenuTest, TheMenusCommandsDoWhatTheKeysDo) {
    given(L"a[b]c");
    choose(EditCommand::Copy);
    EXPECT_EQ(clipboard.content, L"b");
    EXPECT_EQ(shown(), L"a[b]c");
    choose(EditCommand::Delete);
    EXPECT_EQ(shown(), L"a|c");
    choose(EditCommand::Paste);
    EXPECT_EQ(shown(), L"ab|c");
    choose(EditCommand::SelectAll);
    EXPECT_EQ(shown(), L"[abc]");
    choose(EditCommand::Cut);
    EXPECT_EQ(shown(), L"|");
    EXPECT_EQ(clipboard.content, L"abc");
    EXPECT_EQ(changes, (Texts{L"ac", L"abc", L""}));
}

TEST_F(TextFieldMenuTest, TheMenusDeleteErasesNothingButASelection) {
    given(L"a|bc");
    choose(EditCommand::Delete);
    EXPECT_EQ(shown(), L"a|bc");
}

TEST_F(TextFieldMenuTest, AFieldThatWasDisabledWhileItsMenuWasOpenIgnoresTheChoice) {
    struct DisablingMenu final : EditMenu {
        TextField* field = nullptr;
        EditCommand choose(const EditMenuState&) override {
            field->enabled = false;
            return EditCommand::SelectAll;
        }
    } disabling;
    TextField other({input, measure, clipboard, disabling, [this] { return now; }});
    disabling.field = &other;
    other.place(field.rect());
    other.setText(L"abc");
    cursorTo(110, 65);
    other.onMouseDown();
    other.onRightClick();
    EXPECT_FALSE(other.hasSelection());
}

TEST(EditMenuTest, RowsAreGreyedWithoutWhatTheyWorkOn) {
    using enum EditCommand;
    for (const EditCommand command : {Cut, Copy, Delete}) {
        EXPECT_TRUE(available(command, {true, false, false}));
        EXPECT_FALSE(available(command, {false, true, true}));
    }
    EXPECT_TRUE(available(Paste, {false, false, true}));
    EXPECT_FALSE(available(Paste, {true, true, false}));
    EXPECT_TRUE(available(SelectAll, {false, true, false}));
    EXPECT_FALSE(available(SelectAll, {true, false, true}));
}

TEST(EditMenuTest, TheRowsStandInTheirOrder) {
    std::wstring rows;
    for (const EditMenuRow& row : kEditMenuRows) {
        rows += row.languageKey ? std::to_wstring(static_cast<int>(row.command)) + row.languageKey : L"-";
        rows += L' ';
    }
    EXPECT_EQ(rows, L"1EDIT_CUT 2EDIT_COPY 3EDIT_PASTE 4EDIT_DELETE - 5EDIT_SELECT_ALL ");
}

TEST(ClipboardTextTest, ABlockEndsAtItsFirstZeroOrWithItself) {
    const wchar_t block[] = {L'a', L'b', L'\0', L'c'};
    EXPECT_EQ(clipboardTextOf(block, 4), L"ab");
    EXPECT_EQ(clipboardTextOf(block, 2), L"ab");
    EXPECT_EQ(clipboardTextOf(block, 0), L"");
}

TEST(ClipboardTextTest, AFilledBlockEndsInAZeroWhateverItHeldBefore) {
    wchar_t block[] = L"??????";
    fillClipboardBlock(block, L"abc");
    EXPECT_STREQ(block, L"abc");
    EXPECT_EQ(block[4], L'?') << "no more than that is written";
    fillClipboardBlock(block, L"");
    EXPECT_STREQ(block, L"");
}

}  // namespace
}  // namespace varnelo
