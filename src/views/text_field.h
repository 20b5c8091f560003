#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "views/view_rect.h"

namespace varnelo {

class ClipboardText;
class EditMenu;
class TextMeasure;
enum class EditCommand;
struct FrameInput;

// One line of text that the user edits: text, caret, selection, mouse and keys. text_field_layout.h tells
// what is drawn of it.
//
// Places in the text are counted in UTF-16 units. The caret and the ends of the selection lie from 0 to the
// text's length and never between the halves of a surrogate pair. A text that is wider than the field scrolls
// so that the caret stays in view. User-interface thread only.
class TextField {
public:
    // All of it outlives the field.
    struct Services {
        const FrameInput& input;  // cursor, Ctrl and Shift, of the event that is handled
        TextMeasure& measure;     // in this field's font
        ClipboardText& clipboard;
        EditMenu& menu;
        std::function<std::uint32_t()> ticks;  // milliseconds; wraps around
    };

    explicit TextField(Services fieldServices) : services(std::move(fieldServices)) {}

    // At each layout. Sets the padding as well.
    void place(const ViewRect& area);

    // The field takes the focus by a press inside and loses it by one outside. While it is not enabled it
    // takes no input at all.
    void onMouseDown();
    // A press that is held drags the selection along.
    void onMouseMove(bool leftButtonDown);
    void onMouseUp();
    // Comes in place of the second press.
    void onDoubleClick();
    // Opens the popup menu. Returns when it closes.
    void onRightClick();
    void onKeyDown(int virtualKey);
    // One unit a call; the halves of a pair come one after the other.
    void onChar(wchar_t unit);

    // Spinner and caret, `dt` in seconds. True when the field looks different now.
    bool update(float dt);

    // What a press outside does to the field.
    void loseFocus();

    // Units that typing and pasting may fill; what goes beyond is left out. A text is laid out whole at each
    // change.
    static constexpr std::size_t kLongestText = 32'767;

    // Replaces the text, without its line breaks and without onChange; the caret stands behind it.
    void setText(std::wstring newText);

    // The place between characters nearest to `x`, pixels of the client area.
    std::int32_t hitTestCaret(float x) const;

    const std::wstring& text() const { return content; }
    std::int32_t caret() const { return caretIndex; }
    // The ends in the order in which the selection was made; both -1 without one. Equal ends select nothing.
    std::int32_t selectionStart() const { return selectionFrom; }
    std::int32_t selectionEnd() const { return selectionTo; }
    bool hasSelection() const {
        return selectionFrom >= 0 && selectionTo >= 0 && selectionFrom != selectionTo;
    }
    bool focused() const { return hasFocus; }
    bool caretVisible() const { return caretShown; }
    float spinnerAngle() const { return spinnerDegrees; }  // from 0 to below 360
    // How far the text is moved to the left, pixels; 0 while it fits.
    float scrollX() const { return scrolled; }
    const ViewRect& rect() const { return area; }
    float padding() const { return paddingPixels; }
    TextMeasure& measure() const { return services.measure; }
    // Height of what shows of the field: less than its own while it is cut.
    float shownHeight() const;
    // Width for the text, beside padding and spinner.
    float boxWidth() const;

    std::wstring placeholder;  // shown while the text is empty
    bool enabled = true;
    bool busy = false;                                  // shows the spinner
    float collapsedHeight = 0;                          // cuts the field at this height; 0 or less: not cut
    std::function<void(const std::wstring&)> onChange;  // after every change of the text by the user
    std::function<void(const std::wstring&)> onEnter;

private:
    enum class Extend { No, Yes };  // whether the selection follows the caret
    struct Selected {
        std::size_t begin, end;
    };

    bool takesInput() const { return hasFocus && enabled; }
    bool cursorInside() const;
    Selected selected() const;
    std::size_t caretPlace() const { return static_cast<std::size_t>(caretIndex); }
    void clearSelection() { selectionFrom = selectionTo = -1; }
    void select(std::size_t begin, std::size_t end);
    void showCaret();
    void revealCaret();
    void moveCaret(std::size_t place, Extend extend);
    void moveLeft();
    void moveRight();
    void controlKey(int virtualKey);
    void run(EditCommand command);

    void insert(std::wstring_view inserted);
    void erase(std::size_t begin, std::size_t end);
    void eraseSelectionOr(std::size_t begin, std::size_t end);
    void textChanged();
    void selectAll() { select(0, content.size()); }
    bool copy();
    void cut();
    void paste();

    Services services;
    ViewRect area;
    std::wstring content;
    std::int32_t caretIndex = 0;
    std::int32_t selectionFrom = -1;
    std::int32_t selectionTo = -1;
    bool hasFocus = false;
    bool dragging = false;
    bool wordClickPending = false;  // a third press selects all
    std::uint32_t lastDoubleClickTick = 0;
    float caretTimer = 0;  // seconds since the caret's last change
    bool caretShown = false;
    float spinnerDegrees = 0;
    float paddingPixels = 0;
    float scrolled = 0;
};

}  // namespace varnelo
