#include <algorithm>
#include <random>

#include "host/views/text_field_test.h"
#include "views/text_units.h"

namespace varnelo {
namespace {

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
