// Keys, characters and the clipboard.

#include "host/views/text_field_test.h"

namespace varnelo {
namespace {

class TextFieldEditTest : public TextFieldTest {};

TEST_F(TextFieldEditTest, AltGrMakesCharactersAndNoCommands) {
    given(L"a[bc]d");
    clipboard.content = L"other";
    input.altDown = true;
    for (const int letter : {'A', 'C', 'V', 'X'}) withCtrl(letter);
    EXPECT_EQ(shown(), L"a[bc]d");
    EXPECT_EQ(clipboard.content, L"other");
}

TEST_F(TextFieldEditTest, CharactersAreInsertedAtTheCaretWhichMovesOn) {
    given(L"ad|e");
    field.onKeyDown(kLeft);
    type(L"bc");
    EXPECT_EQ(shown(), L"abc|de");
    EXPECT_EQ(changes, (Texts{L"abde", L"abcde"}));
}

TEST_F(TextFieldEditTest, ACharacterReplacesTheSelectionWhicheverWayItWasMade) {
    given(L"a[bc]d");
    type(L"x");
    EXPECT_EQ(shown(), L"ax|d");
    given(L"a]bc[d");
    type(L"x");
    EXPECT_EQ(shown(), L"ax|d");
    EXPECT_EQ(changes, (Texts{L"axd"}));
}

TEST_F(TextFieldEditTest, ControlCharactersAreDropped) {
    given(L"a[b]c");
    for (wchar_t unit = 0; unit < 160; ++unit) {
        const bool printable = unit >= 32 && unit < 127;
        const bool erases = unit == kBackspace || unit == 127;
        if (!printable && !erases) field.onChar(unit);
    }
    EXPECT_EQ(shown(), L"a[b]c");
    EXPECT_EQ(changes, Texts{});
    type(L"\x20\x7E\xA0\xFF");
    EXPECT_EQ(field.text(),
              L"a\x20\x7E\xA0\xFF"
              L"c");
}

TEST_F(TextFieldEditTest, BackspaceErasesTheSelectionOrTheCharacterBefore) {
    given(L"ab|c");
    field.onChar(kBackspace);
    EXPECT_EQ(shown(), L"a|c");
    given(L"a]bc[d");
    field.onChar(kBackspace);
    EXPECT_EQ(shown(), L"a|d");
    given(L"|abc");
    field.onChar(kBackspace);
    EXPECT_EQ(shown(), L"|abc");
    EXPECT_EQ(changes, Texts{}) << "nothing was changed";
}

TEST_F(TextFieldEditTest, DeleteErasesTheSelectionOrTheCharacterBehind) {
    given(L"a|bc");
    key(kDelete);
    EXPECT_EQ(shown(), L"a|c");
    given(L"a[bc]d");
    key(kDelete);
    EXPECT_EQ(shown(), L"a|d");
    EXPECT_EQ(changes, (Texts{L"ad"}));
    given(L"abc|");
    key(kDelete);
    EXPECT_EQ(shown(), L"abc|");
    EXPECT_EQ(changes, Texts{}) << "nothing was changed";
}

TEST_F(TextFieldEditTest, HomeAndEndMoveTheCaretAndClearTheSelection) {
    given(L"a[b]c");
    key(kEnd);
    EXPECT_EQ(shown(), L"abc|");
    EXPECT_EQ(field.selectionStart(), -1);
    EXPECT_EQ(field.selectionEnd(), -1);
    given(L"a[b]c");
    key(kHome);
    EXPECT_EQ(shown(), L"|abc");
}

TEST_F(TextFieldEditTest, WithShiftASelectionStartsAtTheOldCaret) {
    given(L"ab|cd");
    withShift(kEnd);
    EXPECT_EQ(shown(), L"ab[cd]");
    given(L"ab|cd");
    withShift(kHome);
    EXPECT_EQ(shown(), L"]ab[cd");
    given(L"ab|cd");
    withShift(kLeft);
    EXPECT_EQ(shown(), L"a]b[cd");
    given(L"ab|cd");
    withShift(kRight);
    EXPECT_EQ(shown(), L"ab[c]d");
}

TEST_F(TextFieldEditTest, WithShiftASelectionKeepsItsStart) {
    given(L"ab[c]d");
    withShift(kHome);
    EXPECT_EQ(shown(), L"]ab[cd");
    withShift(kEnd);
    EXPECT_EQ(shown(), L"ab[cd]");
    withShift(kLeft);
    EXPECT_EQ(shown(), L"ab[c]d");
    withShift(kLeft);
    EXPECT_EQ(shown(), L"ab|cd");
    withShift(kLeft);
    EXPECT_EQ(shown(), L"a]b[cd");
}

TEST_F(TextFieldEditTest, ShiftWithLeftAtTheBeginningKeepsStartAndCaret) {
    given(L"]ab[c");
    withShift(kLeft);
    EXPECT_EQ(shown(), L"]ab[c");
    given(L"|abc");
    withShift(kLeft);
    EXPECT_EQ(shown(), L"|abc");
}

TEST_F(TextFieldEditTest, ShiftWithRightAtTheEndKeepsStartAndCaret) {
    given(L"a[bc]");
    withShift(kRight);
    EXPECT_EQ(shown(), L"a[bc]");
}

TEST_F(TextFieldEditTest, LeftAndRightTakeOneStepInsideTheText) {
    given(L"ab|");
    key(kLeft);
    EXPECT_EQ(shown(), L"a|b");
    key(kLeft);
    key(kLeft);
    EXPECT_EQ(shown(), L"|ab");
    key(kRight);
    EXPECT_EQ(shown(), L"a|b");
    key(kRight);
    key(kRight);
    EXPECT_EQ(shown(), L"ab|");
}

TEST_F(TextFieldEditTest, LeftMovesToTheLowerEndOfASelectionWhicheverWayItWasMade) {
    given(L"a[bc]d");
    key(kLeft);
    EXPECT_EQ(shown(), L"a|bcd");
    given(L"a]bc[d");
    key(kLeft);
    EXPECT_EQ(shown(), L"a|bcd");
}

TEST_F(TextFieldEditTest, RightMovesToTheUpperEndOfASelectionWhicheverWayItWasMade) {
    given(L"a[bc]d");
    key(kRight);
    EXPECT_EQ(shown(), L"abc|d");
    given(L"a]bc[d");
    key(kRight);
    EXPECT_EQ(shown(), L"abc|d");
}

TEST_F(TextFieldEditTest, ControlWithAnArrowMovesByWords) {
    given(L"one |two, three");
    withCtrl(kRight);
    EXPECT_EQ(shown(), L"one two|, three");
    withCtrl(kRight);
    EXPECT_EQ(shown(), L"one two, |three");
    withCtrl(kLeft);
    EXPECT_EQ(shown(), L"one two|, three");
    withCtrl(kLeft, true);
    EXPECT_EQ(shown(), L"one ]two[, three");
    withCtrl(kRight, true);
    EXPECT_EQ(shown(), L"one two|, three");
}

TEST_F(TextFieldEditTest, ControlAndShiftWithRightSelectByWords) {
    given(L"one |two three");
    withCtrl(kRight, true);
    EXPECT_EQ(shown(), L"one [two ]three");
}

TEST_F(TextFieldEditTest, ControlWithBackspaceErasesTheWordBefore) {
    given(L"one two|");
    field.onChar(127);
    EXPECT_EQ(shown(), L"one |");
    given(L"one [t]wo");
    field.onChar(127);
    EXPECT_EQ(shown(), L"one |wo");
}

TEST_F(TextFieldEditTest, EnterHandsTheTextOver) {
    given(L"abc|");
    key(kEnter);
    field.onChar(13);
    EXPECT_EQ(entered, (Texts{L"abc"}));
    EXPECT_EQ(field.text(), L"abc");
    EXPECT_EQ(changes, Texts{});
}

TEST_F(TextFieldEditTest, ControlASelectsAllWithTheCaretAtTheEnd) {
    given(L"a|bc");
    withCtrl('A');
    field.onChar(1);
    EXPECT_EQ(shown(), L"[abc]");
    given(L"a|bc");
    key('A');
    EXPECT_EQ(shown(), L"a|bc") << "the letter alone comes as a character";
}

TEST_F(TextFieldEditTest, ControlCCopiesTheSelection) {
    given(L"a]bc[d");
    withCtrl('C');
    field.onChar(3);
    EXPECT_EQ(clipboard.content, L"bc");
    EXPECT_EQ(shown(), L"a]bc[d");
    EXPECT_EQ(changes, Texts{});
}

TEST_F(TextFieldEditTest, WithoutASelectionNothingIsCopied) {
    clipboard.content = L"before";
    given(L"abc|");
    withCtrl('C');
    EXPECT_EQ(clipboard.content, L"before");
}

TEST_F(TextFieldEditTest, ControlXCutsTheSelection) {
    given(L"a[bc]d");
    withCtrl('X');
    field.onChar(24);
    EXPECT_EQ(clipboard.content, L"bc");
    EXPECT_EQ(shown(), L"a|d");
    EXPECT_EQ(changes, (Texts{L"ad"}));
}

TEST_F(TextFieldEditTest, ControlXWithoutASelectionChangesNothing) {
    clipboard.content = L"before";
    given(L"ab|c");
    withCtrl('X');
    EXPECT_EQ(shown(), L"ab|c");
    EXPECT_EQ(clipboard.content, L"before");
    EXPECT_EQ(changes, Texts{});
}

TEST_F(TextFieldEditTest, ControlVPastesInPlaceOfTheSelection) {
    clipboard.content = L"xyz";
    given(L"a[bc]d");
    withCtrl('V');
    field.onChar(22);
    EXPECT_EQ(shown(), L"axyz|d");
    EXPECT_EQ(changes, (Texts{L"axyzd"}));
}

TEST_F(TextFieldEditTest, PastingTwoLinesYieldsOneWithoutTheLineBreak) {
    clipboard.content = L"first\r\nsecond\nthird\r";
    given(L"|");
    withCtrl('V');
    EXPECT_EQ(shown(), L"firstsecondthird|");
}

TEST_F(TextFieldEditTest, PastingKeepsAllButLineBreaks) {
    clipboard.content = L"a\tb  c ";
    given(L"|");
    withCtrl('V');
    EXPECT_EQ(field.text(), L"a\tb  c ");
}

TEST_F(TextFieldEditTest, WhatGoesBeyondTheLongestTextIsLeftOut) {
    constexpr std::size_t kMost = TextField::kLongestText;
    clipboard.content = std::wstring(kMost + 5, L'x');
    given(L"a[bc]d");
    withCtrl('V');
    EXPECT_EQ(field.text(), L"a" + std::wstring(kMost - 2, L'x') + L"d");
    EXPECT_EQ(field.caret(), static_cast<std::int32_t>(kMost - 1));
    changes.clear();
    withCtrl('V');
    field.onChar(L'y');
    EXPECT_EQ(field.text().size(), kMost);
    EXPECT_EQ(changes, Texts{});
}

TEST_F(TextFieldEditTest, TheLongestTextEndsWithAWholeCharacter) {
    clipboard.content = std::wstring(TextField::kLongestText - 2, L'x') + L"\xD83D\xDE00";
    given(L"a|");
    withCtrl('V');
    EXPECT_EQ(field.text().size(), TextField::kLongestText - 1);
    EXPECT_EQ(field.text().back(), L'x');
}

TEST_F(TextFieldEditTest, NothingHappensWhenNothingIsLeftToPaste) {
    for (const std::optional<std::wstring>& content :
         {std::optional<std::wstring>(), std::optional<std::wstring>(L""),
          std::optional<std::wstring>(L"\r\n\n\r")}) {
        clipboard.content = content;
        given(L"a[b]c");
        withCtrl('V');
        EXPECT_EQ(shown(), L"a[b]c");
        EXPECT_EQ(changes, Texts{});
    }
}

TEST_F(TextFieldEditTest, AClipboardThatCannotBeOpenedLeavesEverythingAsItWas) {
    clipboard.content = L"before";
    clipboard.opens = false;
    given(L"a[b]c");
    withCtrl('X');
    withCtrl('C');
    withCtrl('V');
    choose(EditCommand::Cut);
    EXPECT_EQ(shown(), L"a[b]c");
    EXPECT_EQ(clipboard.content, L"before");
    EXPECT_EQ(changes, Texts{});
}

TEST_F(TextFieldEditTest, EveryKeyShowsTheCaret) {
    for (const int virtualKey : {kLeft, kHome, kEnter, int{'Q'}, 112}) {
        given(L"abc|");
        field.update(0.5F);
        field.update(0.04F);
        ASSERT_FALSE(field.caretVisible());
        key(virtualKey);
        EXPECT_TRUE(field.caretVisible());
        field.update(0.52F);
        EXPECT_TRUE(field.caretVisible()) << "the time begins anew";
    }
}

TEST_F(TextFieldEditTest, WithoutFocusOrWhenNotEnabledNothingIsTyped) {
    clipboard.content = L"xyz";
    const auto tryAll = [&] {
        type(L"q");
        field.onChar(kBackspace);
        for (const int virtualKey : {kEnter, kHome, kDelete}) key(virtualKey);
        withCtrl('A');
        withCtrl('V');
        choose(EditCommand::Paste);
    };
    given(L"a|bc");
    field.enabled = false;
    tryAll();
    EXPECT_EQ(shown(), L"a|bc");
    field.enabled = true;
    pressOutside();
    tryAll();
    EXPECT_EQ(shown(), L"a|bc");
    EXPECT_EQ(changes, Texts{});
    EXPECT_EQ(entered, Texts{});
    EXPECT_FALSE(menu.shown);
}

TEST_F(TextFieldEditTest, AFieldWithoutListenersIsEditedAllTheSame) {
    given(L"ab|");
    field.onChange = nullptr;
    field.onEnter = nullptr;
    type(L"c");
    key(kEnter);
    EXPECT_EQ(shown(), L"abc|");
}

TEST_F(TextFieldEditTest, SurrogatePairsMoveAndGoAsOne) {
    const std::wstring smile{kHigh, kLow};
    given(L"a" + smile + L"|b");
    key(kLeft);
    EXPECT_EQ(field.caret(), 1);
    withShift(kRight);
    EXPECT_EQ(field.selectionEnd(), 3);
    key(kRight);
    field.onChar(kBackspace);
    EXPECT_EQ(shown(), L"a|b");
    given(L"a|" + smile + L"b");
    key(kDelete);
    EXPECT_EQ(shown(), L"a|b");
}

TEST_F(TextFieldEditTest, APairIsTypedInTwoHalves) {
    given(L"a|b");
    type(std::wstring{kHigh, kLow});
    EXPECT_EQ(shown(), L"a" + std::wstring({kHigh, kLow}) + L"|b");
    EXPECT_EQ(changes.size(), 2U);
}

TEST_F(TextFieldEditTest, ALoneSurrogateIsACharacterOfItsOwn) {
    for (const wchar_t lone : {kHigh, kLow}) {
        given(L"a" + std::wstring(1, lone) + L"|b");
        key(kLeft);
        EXPECT_EQ(field.caret(), 1);
        key(kDelete);
        EXPECT_EQ(shown(), L"a|b");
    }
}

TEST_F(TextFieldEditTest, HalvesThatComeTogetherAroundTheCaretMakeAPairBehindIt) {
    given(std::wstring{kHigh} + L"x|" + std::wstring{kLow});
    field.onChar(kBackspace);
    EXPECT_EQ(shown(), std::wstring({kHigh, kLow}) + L"|");
    given(L"|" + std::wstring{kLow});
    type(std::wstring{kHigh});
    EXPECT_EQ(shown(), std::wstring({kHigh, kLow}) + L"|");
}

}  // namespace
}  // namespace varnelo
