// Mouse, focus, time and scrolling.

#include <cmath>
#include <random>

#include "host/views/text_field_test.h"
#include "views/text_units.h"

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

// Whatever the user does, in whatever order: the caret stays between characters of the text, and the text is
// what a plain string says.
class TextFieldPropertyTest : public TextFieldTest {
protected:
    int upTo(int below) { return static_cast<int>(random() % static_cast<unsigned>(below)); }

    wchar_t anyUnit() {
        static constexpr wchar_t kUnits[] = {L'a', L'Z', L'_', L' ', L'.', 0xE4, 0x65E5, kHigh, kLow,
                                             1,    22,   127,  8,    13,   9,    0x85,   0x20};
        return kUnits[upTo(std::size(kUnits))];
    }
    std::wstring anyText() {
        std::wstring text;
        for (int i = upTo(12); i > 0; --i) text += anyUnit();
        return text;
    }

    void doSomething() {
        input.shiftDown = upTo(2) == 0;
        input.ctrlDown = upTo(4) == 0;
        cursorTo(80 + static_cast<float>(upTo(340)), 40 + static_cast<float>(upTo(50)));
        switch (upTo(14)) {
            case 0:
                return field.onMouseDown();
            case 1:
                return field.onMouseMove(upTo(3) != 0);
            case 2:
                return field.onMouseUp();
            case 3:
                return field.onDoubleClick();
            case 4:
                menu.answer = static_cast<EditCommand>(upTo(6));
                return field.onRightClick();
            case 5:
                clipboard.content = upTo(4) == 0 ? std::nullopt : std::optional(anyText());
                clipboard.opens = upTo(4) != 0;
                return;
            case 6:
                now += static_cast<std::uint32_t>(upTo(700));
                field.busy = upTo(2) == 0;
                field.update(0.1F);
                return;
            case 7:
            case 8:
            case 9:
            case 10: {
                static constexpr int kKeys[] = {kEnter, kEnd, kHome, kLeft, kRight, kDelete,
                                                'A',    'C',  'V',   'X',   'Q'};
                return key(kKeys[upTo(std::size(kKeys))]);
            }
            default:
                return field.onChar(anyUnit());
        }
    }

    void expectWhole(std::int32_t place) {
        ASSERT_GE(place, 0);
        ASSERT_LE(place, static_cast<std::int32_t>(field.text().size()));
        ASSERT_FALSE(insidePair(field.text(), static_cast<std::size_t>(place)));
    }

    std::mt19937 random{7};
};

TEST_F(TextFieldPropertyTest, TheFieldStaysInOnePieceWhateverHappens) {
    for (int run = 0; run < 4; ++run) {
        press(0);
        for (int step = 0; step < 10000; ++step) {
            doSomething();
            expectWhole(field.caret());
            ASSERT_EQ(field.selectionStart() < 0, field.selectionEnd() < 0);
            if (field.selectionStart() >= 0) {
                expectWhole(field.selectionStart());
                expectWhole(field.selectionEnd());
            }
            for (const wchar_t unit : field.text()) {
                ASSERT_TRUE(unit != L'\r' && unit != L'\n');
                // Only a paste can bring other ones, and keeps them.
                ASSERT_TRUE(unit >= 32 || unit == 9 || unit == 1 || unit == 22 || unit == 8) << int(unit);
            }
            ASSERT_GE(field.scrollX(), 0);
            if (HasFatalFailure()) return;
        }
        field.setText(anyText());
    }
}

TEST_F(TextFieldPropertyTest, TypedTextHoldsNoControlCharacters) {
    press(0);
    for (int step = 0; step < 10000; ++step) {
        field.onChar(static_cast<wchar_t>(upTo(upTo(2) == 0 ? 0xA1 : 0x10000)));
        if (upTo(40) == 0) key(kHome);
    }
    for (const wchar_t unit : field.text()) ASSERT_TRUE(unit >= 32 && (unit < 127 || unit >= 160));
}

TEST_F(TextFieldPropertyTest, EditingIsWhatAPlainStringSays) {
    given(L"|");
    std::wstring plain;
    std::size_t caret = 0, anchor = 0;
    const auto drop = [&] {
        const auto [first, last] = std::minmax({caret, anchor});
        plain.erase(first, last - first);
        caret = anchor = first;
    };
    for (int step = 0; step < 10000; ++step) {
        const bool shift = upTo(2) == 0;
        const auto moveTo = [&](std::size_t place) {
            caret = place;
            if (!shift) anchor = caret;
        };
        const auto press = [&](int virtualKey) { shift ? withShift(virtualKey) : key(virtualKey); };
        const bool collapses = !shift && caret != anchor;
        switch (upTo(7)) {
            case 0:
                press(kLeft);
                moveTo(collapses ? std::min(caret, anchor) : caret - (caret > 0));
                break;
            case 1:
                press(kRight);
                moveTo(collapses ? std::max(caret, anchor) : caret + (caret < plain.size()));
                break;
            case 2:
                press(upTo(2) == 0 ? kHome : kEnd);
                moveTo(field.caret() == 0 ? 0 : plain.size());
                break;
            case 3:
                key(kDelete);
                if (caret == anchor) anchor = caret + (caret < plain.size());
                drop();
                break;
            case 4:
                field.onChar(kBackspace);
                if (caret == anchor) anchor = caret - (caret > 0);
                drop();
                break;
            default: {
                const auto unit = static_cast<wchar_t>(L'a' + upTo(26));
                field.onChar(unit);
                drop();
                plain.insert(caret, 1, unit);
                anchor = ++caret;
            }
        }
        ASSERT_EQ(field.text(), plain);
        ASSERT_EQ(static_cast<std::size_t>(field.caret()), caret);
        ASSERT_EQ(field.hasSelection(), caret != anchor);
    }
}

}  // namespace
}  // namespace varnelo
