// Mouse, focus, time and scrolling.

#include <cmath>

#include "host/views/text_field_test.h"

namespace varnelo {
namespace {

TEST_F(TextFieldTest, APressInsideTakesTheFocusAndPlacesTheCaret) {
    field.setText(L"hello");
    EXPECT_FALSE(field.focused());
    press(22);
    EXPECT_TRUE(field.focused());
    EXPECT_TRUE(field.caretVisible());
    EXPECT_EQ(shown(), L"he|llo");
}

TEST_F(TextFieldTest, APressClearsTheSelection) {
    given(L"a[bc]d");
    press(12);
    EXPECT_EQ(shown(), L"a|bcd");
    EXPECT_EQ(field.selectionStart(), -1);
    EXPECT_EQ(field.selectionEnd(), -1);
}

TEST_F(TextFieldTest, APressOutsideDropsFocusSelectionAndThePendingWordClick) {
    given(L"hello world|");
    doubleClick(20);
    pressOutside();
    EXPECT_FALSE(field.focused());
    EXPECT_FALSE(field.hasSelection());
    press(20);
    EXPECT_FALSE(field.hasSelection()) << "it is a first press again";
}

TEST_F(TextFieldTest, AFieldThatIsNotEnabledTakesNoFocus) {
    field.enabled = false;
    press(10);
    EXPECT_FALSE(field.focused());
}

TEST_F(TextFieldTest, TheCaretGoesToTheNearerSideOfACharacter) {
    field.setText(L"abc");
    const float left = 104.5F;
    EXPECT_EQ(field.hitTestCaret(left - 50), 0);
    EXPECT_EQ(field.hitTestCaret(left), 0);
    EXPECT_EQ(field.hitTestCaret(left + 4.75F), 0);
    EXPECT_EQ(field.hitTestCaret(left + 5), 1) << "the middle itself is not exceeded";
    EXPECT_EQ(field.hitTestCaret(left + 14.75F), 1);
    EXPECT_EQ(field.hitTestCaret(left + 24.75F), 2);
    EXPECT_EQ(field.hitTestCaret(left + 25), 3);
    EXPECT_EQ(field.hitTestCaret(left + 500), 3);
}

TEST_F(TextFieldTest, TheCaretNeverGoesBetweenTheHalvesOfAPair) {
    field.setText(L"a" + std::wstring{kHigh, kLow} + L"b");
    EXPECT_EQ(field.hitTestCaret(104.5F + 19), 1);
    EXPECT_EQ(field.hitTestCaret(104.5F + 21), 3);
}

TEST_F(TextFieldTest, ADoubleClickSelectsTheWord) {
    given(L"hello big_world 42|");
    doubleClick(72);
    EXPECT_EQ(shown(), L"hello [big_world] 42");
}

TEST_F(TextFieldTest, ADoubleClickBetweenTwoWordsTakesTheNearerOne) {
    given(L"ab   cd|");
    doubleClick(22);
    EXPECT_EQ(shown(), L"[ab]   cd");
    now += 1000;
    doubleClick(41);
    EXPECT_EQ(shown(), L"ab   [cd]");
    now += 1000;
    doubleClick(32);
    EXPECT_EQ(shown(), L"[ab]   cd") << "the left one at equal distance";
}

TEST_F(TextFieldTest, ADoubleClickWithoutAnyWordSelectsAll) {
    given(L"?! ...|");
    doubleClick(22);
    EXPECT_EQ(shown(), L"[?! ...]");
}

TEST_F(TextFieldTest, ADoubleClickInAnEmptyFieldOrOutsideSelectsNothing) {
    given(L"|");
    doubleClick(5);
    EXPECT_EQ(field.selectionStart(), -1);
    given(L"word|");
    cursorTo(50, 65);
    field.onDoubleClick();
    EXPECT_FALSE(field.hasSelection());
}

TEST_F(TextFieldTest, ADoubleClickInAFieldThatIsNotEnabledSelectsNothing) {
    given(L"word|");
    field.enabled = false;
    field.onDoubleClick();
    EXPECT_FALSE(field.hasSelection());
}

TEST_F(TextFieldTest, ADragShowsTheCaret) {
    given(L"hello world|");
    cursorTo(104.5F + 32, 65);
    field.onMouseDown();
    field.update(0.53F);
    ASSERT_FALSE(field.caretVisible());
    dragTo(52);
    EXPECT_TRUE(field.caretVisible());
}

TEST_F(TextFieldTest, ATextThatIsSetHasItsCaretBehindItAndNoSelection) {
    given(L"a[bc]");
    field.setText(L"hello");
    EXPECT_EQ(field.caret(), 5);
    EXPECT_EQ(field.selectionStart(), -1);
    EXPECT_EQ(field.selectionEnd(), -1);
    field.setText(std::wstring(40, L'x'));
    EXPECT_GT(field.scrollX(), 0);
    EXPECT_EQ(changes, Texts{}) << "the user changed nothing";
}

TEST_F(TextFieldTest, AThirdPressWithin500MillisecondsSelectsAll) {
    given(L"hello world|");
    doubleClick(20);
    now += 500;
    press(20);
    EXPECT_EQ(shown(), L"[hello world]");
    now += 1;
    press(20);
    EXPECT_EQ(shown(), L"he|llo world") << "the fourth is a plain press";
}

TEST_F(TextFieldTest, AFourthPressIsAPlainOneHoweverSoonItComes) {
    given(L"hello world|");
    doubleClick(20);
    press(20);
    press(20);
    EXPECT_EQ(shown(), L"he|llo world");
}

TEST_F(TextFieldTest, AThirdPressAfter501MillisecondsPlacesTheCaret) {
    given(L"hello world|");
    doubleClick(20);
    now += 501;
    press(20);
    EXPECT_EQ(shown(), L"he|llo world");
}

TEST_F(TextFieldTest, ATripleClickHoldsAcrossTheWrapOfTheTicks) {
    given(L"hello world|");
    now = 0xFFFFFF00;
    doubleClick(20);
    now = 0x80;
    press(20);
    EXPECT_EQ(shown(), L"[hello world]");
    doubleClick(20);
    now += 501;
    press(20);
    EXPECT_EQ(shown(), L"he|llo world");
}

TEST_F(TextFieldTest, AThirdPressThatMovesKeepsAllSelected) {
    given(L"hello world|");
    doubleClick(20);
    cursorTo(124, 65);
    field.onMouseDown();
    dragTo(60);
    EXPECT_EQ(shown(), L"[hello world]");
}

TEST_F(TextFieldTest, AHeldPressDragsTheSelection) {
    given(L"hello world|");
    cursorTo(104.5F + 32, 65);
    field.onMouseDown();
    dragTo(52);
    EXPECT_EQ(shown(), L"hel[lo] world");
    dragTo(12);
    EXPECT_EQ(shown(), L"h]el[lo world");
    dragTo(32);
    EXPECT_EQ(shown(), L"hel|lo world");
    dragTo(900);
    EXPECT_EQ(shown(), L"hel[lo world]");
    field.onMouseUp();
    dragTo(12);
    EXPECT_EQ(shown(), L"hel[lo world]");
}

TEST_F(TextFieldTest, ADragEndsWhenTheButtonWasReleasedElsewhere) {
    given(L"hello|");
    cursorTo(104.5F + 22, 65);
    field.onMouseDown();
    cursorTo(104.5F + 42, 65);
    field.onMouseMove(false);
    field.onMouseMove(true);
    EXPECT_EQ(shown(), L"he|llo");
}

TEST_F(TextFieldTest, TheMouseAloneSelectsNothing) {
    given(L"hello|");
    dragTo(12);
    EXPECT_EQ(shown(), L"hello|");
}

TEST_F(TextFieldTest, TheSpinnerTurnsOnceASecondWhileBusy) {
    EXPECT_FALSE(field.update(0.25F));
    EXPECT_EQ(field.spinnerAngle(), 0);
    field.busy = true;
    EXPECT_TRUE(field.update(0.25F));
    EXPECT_FLOAT_EQ(field.spinnerAngle(), 90);
    field.update(0.5F);
    EXPECT_FLOAT_EQ(field.spinnerAngle(), 270);
    field.update(0.25F);
    EXPECT_FLOAT_EQ(field.spinnerAngle(), 0) << "360 is 0 again";
    field.update(1.5F);
    EXPECT_FLOAT_EQ(field.spinnerAngle(), 180);
}

TEST_F(TextFieldTest, TheCaretBlinksAndKeepsTheRestOfTheTime) {
    given(L"a|");
    EXPECT_FALSE(field.update(0.52F));
    EXPECT_TRUE(field.caretVisible());
    EXPECT_TRUE(field.update(0.11F));  // 0.63: 0.1 remains
    EXPECT_FALSE(field.caretVisible());
    EXPECT_FALSE(field.update(0.42F));
    EXPECT_FALSE(field.caretVisible());
    EXPECT_TRUE(field.update(0.02F));
    EXPECT_TRUE(field.caretVisible());
}

TEST_F(TextFieldTest, TheCaretRestsWithoutFocusOrWhenNotEnabled) {
    given(L"a|");
    field.enabled = false;
    EXPECT_FALSE(field.update(0.6F));
    EXPECT_TRUE(field.caretVisible());
    field.enabled = true;
    field.loseFocus();
    EXPECT_FALSE(field.update(0.6F));
}

TEST_F(TextFieldTest, AFrameTimeThatIsNoTimeMovesNothing) {
    given(L"a|");
    field.busy = true;
    for (const float dt : {NAN, INFINITY, -1.0F}) field.update(dt);
    EXPECT_EQ(field.spinnerAngle(), 0);
    EXPECT_TRUE(field.caretVisible());
}

// 29 units fit, and the caret's line beside them.

TEST_F(TextFieldTest, ATextThatFitsIsNotScrolled) {
    given(std::wstring(28, L'x') + L"|");
    EXPECT_EQ(field.scrollX(), 0);
    key(kHome);
    EXPECT_EQ(field.scrollX(), 0);
}

TEST_F(TextFieldTest, ALongTextScrollsSoThatTheCaretStaysInView) {
    given(std::wstring(40, L'x') + L"|");
    EXPECT_FLOAT_EQ(field.scrollX(), 400 - (291 - 1.5F));
    key(kLeft);
    EXPECT_FLOAT_EQ(field.scrollX(), 400 - (291 - 1.5F)) << "still in view";
    key(kHome);
    EXPECT_EQ(field.scrollX(), 0);
}

TEST_F(TextFieldTest, NoRoomIsLeftBehindATextThatGetsShorter) {
    given(std::wstring(40, L'x') + L"|");
    for (int i = 0; i < 5; ++i) field.onChar(kBackspace);
    EXPECT_FLOAT_EQ(field.scrollX(), 350 - (291 - 1.5F));
    for (int i = 0; i < 30; ++i) field.onChar(kBackspace);
    EXPECT_EQ(field.scrollX(), 0);
}

TEST_F(TextFieldTest, HitsAndDragsCountTheScrolling) {
    given(std::wstring(60, L'x') + L"|");
    const auto first = static_cast<std::int32_t>(std::lround(field.scrollX() / 10));
    EXPECT_EQ(field.hitTestCaret(104.5F), first);
    cursorTo(104.5F + 100, 65);
    field.onMouseDown();
    const std::int32_t start = field.caret();
    EXPECT_EQ(start, first + 10);
    dragTo(-30);
    EXPECT_EQ(field.selectionStart(), start);
    EXPECT_EQ(field.caret(), first - 3) << "beyond the edge the text comes along";
    EXPECT_LE(field.scrollX(), 10.0F * static_cast<float>(field.caret()));
}

TEST_F(TextFieldTest, AFieldThatGetsNarrowerKeepsItsCaretInView) {
    given(std::wstring(28, L'x') + L"|");
    field.busy = true;
    EXPECT_TRUE(field.update(0));
    EXPECT_FLOAT_EQ(field.scrollX(), 280 - (291 - 30 - 1.5F));
    field.busy = false;
    EXPECT_TRUE(field.update(0)) << "the text moved back";
    field.place({100, 50, 200, 30});
    EXPECT_FLOAT_EQ(field.scrollX(), 280 - (191 - 1.5F));
    field.place({100, 50, 2, 30});
    EXPECT_FLOAT_EQ(field.scrollX(), 280);
}

TEST_F(TextFieldTest, ThePaddingFollowsTheHeight) {
    EXPECT_FLOAT_EQ(field.padding(), 4.5F);
    field.place({0, 0, 100, 60});
    EXPECT_FLOAT_EQ(field.padding(), 9);
}

}  // namespace
}  // namespace varnelo
