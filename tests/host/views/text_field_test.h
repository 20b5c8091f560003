#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "views/clipboard_text.h"
#include "views/edit_menu.h"
#include "views/frame_input.h"
#include "views/text_field.h"
#include "views/text_measure.h"

namespace varnelo {

// Every unit is as wide as every other.
struct EvenMeasure final : TextMeasure {
    static constexpr float kUnit = 10;
    std::vector<float> widths;

    std::span<const float> prefixWidths(std::wstring_view text) override {
        widths.clear();
        for (std::size_t i = 0; i <= text.size(); ++i) widths.push_back(kUnit * static_cast<float>(i));
        return widths;
    }
};

struct ScriptedClipboard final : ClipboardText {
    std::optional<std::wstring> content;
    bool opens = true;

    bool hasText() const override { return content.has_value(); }
    std::optional<std::wstring> read() override { return opens ? content : std::nullopt; }
    bool write(std::wstring_view text) override {
        if (opens) content = text;
        return opens;
    }
};

struct ScriptedMenu final : EditMenu {
    EditCommand answer = EditCommand::None;
    std::optional<EditMenuState> shown;

    EditCommand choose(const EditMenuState& state) override {
        shown = state;
        return answer;
    }
};

// A field of 300 by 30 pixels at (100, 50): padding 4.5, room for 29 units.
class TextFieldTest : public ::testing::Test {
protected:
    static constexpr int kEnter = 13, kEnd = 35, kHome = 36, kLeft = 37, kRight = 39, kDelete = 46;
    static constexpr wchar_t kBackspace = 8;
    static constexpr wchar_t kHigh = 0xD83D, kLow = 0xDE00;  // together a smiling face

    TextFieldTest() {
        field.place({100, 50, 300, 30});
        field.onChange = [this](const std::wstring& text) { changes.push_back(text); };
        field.onEnter = [this](const std::wstring& text) { entered.push_back(text); };
    }

    void cursorTo(float x, float y) { input.cursorX = x, input.cursorY = y; }
    // `x` from the left edge of the text's box.
    void press(float x, float y = 65) {
        cursorTo(104.5F + x, y);
        field.onMouseDown();
        field.onMouseUp();
    }
    void pressOutside() { press(-50); }
    // The messages of a double click with a first press of its own.
    void doubleClick(float x) {
        press(x);
        field.onDoubleClick();
        field.onMouseUp();
    }
    void dragTo(float x) {
        cursorTo(104.5F + x, 65);
        field.onMouseMove(true);
    }

    // A focused field with that text; "|" is the caret, "[" the selection's start and "]" its end, where the
    // caret is then.
    void given(std::wstring_view picture) {
        std::wstring text;
        std::optional<std::size_t> start;
        std::size_t caret = 0;
        for (const wchar_t unit : picture) {
            if (unit == L'[') {
                start = text.size();
            } else if (unit == L'|' || unit == L']') {
                caret = text.size();
            } else {
                text += unit;
            }
        }
        field.setText(text);
        press(0);
        walkTo(start.value_or(caret));
        if (start) {
            input.shiftDown = true;
            walkTo(caret);
            input.shiftDown = false;
        }
        changes.clear();
    }
    // The same picture of the field as it is.
    std::wstring shown() const {
        std::wstring picture = field.text();
        const auto caret = static_cast<std::size_t>(field.caret());
        if (!field.hasSelection()) return picture.insert(caret, L"|");
        EXPECT_EQ(field.selectionEnd(), field.caret());
        const auto start = static_cast<std::size_t>(field.selectionStart());
        if (start < caret) return picture.insert(caret, L"]").insert(start, L"[");
        return picture.insert(start, L"[").insert(caret, L"]");
    }

    void key(int virtualKey) { field.onKeyDown(virtualKey); }
    void withShift(int virtualKey) {
        input.shiftDown = true;
        key(virtualKey);
        input.shiftDown = false;
    }
    void withCtrl(int virtualKey, bool andShift = false) {
        input.ctrlDown = true;
        input.shiftDown = andShift;
        key(virtualKey);
        input.ctrlDown = input.shiftDown = false;
    }
    void type(std::wstring_view text) {
        for (const wchar_t unit : text) field.onChar(unit);
    }
    void choose(EditCommand command) {
        menu.answer = command;
        cursorTo(110, 65);
        field.onRightClick();
    }

    using Texts = std::vector<std::wstring>;

    FrameInput input;
    EvenMeasure measure;
    ScriptedClipboard clipboard;
    ScriptedMenu menu;
    std::uint32_t now = 1000;
    TextField field{{input, measure, clipboard, menu, [this] { return now; }}};
    Texts changes;
    Texts entered;

private:
    void walkTo(std::size_t place) {
        while (static_cast<std::size_t>(field.caret()) < place) key(kRight);
        while (static_cast<std::size_t>(field.caret()) > place) key(kLeft);
    }
};

}  // namespace varnelo
