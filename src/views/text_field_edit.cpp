// What keys and commands do to a text field's text, caret and selection.

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include "views/clipboard_text.h"
#include "views/edit_menu.h"
#include "views/frame_input.h"
#include "views/text_field.h"
#include "views/text_units.h"
#include "views/word_boundaries.h"

namespace varnelo {

namespace {

// Virtual keys, as winuser.h numbers them.
constexpr int kKeyEnter = 13;
constexpr int kKeyEnd = 35;
constexpr int kKeyHome = 36;
constexpr int kKeyLeft = 37;
constexpr int kKeyRight = 39;
constexpr int kKeyDelete = 46;

constexpr wchar_t kBackspace = 8;
constexpr wchar_t kControlBackspace = 127;

// Of these, those that come with a key (1, 3, 22 and 24 with Ctrl+A, C, V and X) have done their work there.
bool isControlCharacter(wchar_t unit) { return unit < 32 || (unit >= 127 && unit < 160); }

bool breaksLine(wchar_t unit) { return unit == L'\r' || unit == L'\n'; }

}  // namespace

TextField::Selected TextField::selected() const {
    const auto [first, last] = std::minmax({selectionFrom, selectionTo});
    return {static_cast<std::size_t>(first), static_cast<std::size_t>(last)};
}

void TextField::select(std::size_t begin, std::size_t end) {
    selectionFrom = static_cast<std::int32_t>(begin);
    selectionTo = caretIndex = static_cast<std::int32_t>(end);
    revealCaret();
}

void TextField::moveCaret(std::size_t place, Extend extend) {
    if (extend == Extend::Yes) {
        select(hasSelection() ? static_cast<std::size_t>(selectionFrom) : caretPlace(), place);
        return;
    }
    caretIndex = static_cast<std::int32_t>(place);
    clearSelection();
    revealCaret();
}

void TextField::moveLeft() {
    const Extend extend = services.input.shiftDown ? Extend::Yes : Extend::No;
    if (services.input.ctrlDown) {
        moveCaret(previousWordStart(content, caretPlace()), extend);
    } else if (extend == Extend::No && hasSelection()) {
        moveCaret(selected().begin, extend);
    } else {
        moveCaret(previousPlace(content, caretPlace()), extend);
    }
}

void TextField::moveRight() {
    const Extend extend = services.input.shiftDown ? Extend::Yes : Extend::No;
    if (services.input.ctrlDown) {
        moveCaret(nextWordStart(content, caretPlace()), extend);
    } else if (extend == Extend::No && hasSelection()) {
        moveCaret(selected().end, extend);
    } else {
        moveCaret(nextPlace(content, caretPlace()), extend);
    }
}

void TextField::onKeyDown(int virtualKey) {
    if (!takesInput()) return;
    showCaret();
    const Extend extend = services.input.shiftDown ? Extend::Yes : Extend::No;
    switch (virtualKey) {
        case kKeyEnter:
            if (onEnter) onEnter(content);
            break;
        case kKeyEnd:
            moveCaret(content.size(), extend);
            break;
        case kKeyHome:
            moveCaret(0, extend);
            break;
        case kKeyLeft:
            moveLeft();
            break;
        case kKeyRight:
            moveRight();
            break;
        case kKeyDelete:
            eraseSelectionOr(caretPlace(), nextPlace(content, caretPlace()));
            break;
        default:
            if (services.input.ctrlDown && !services.input.altDown) controlKey(virtualKey);
    }
}

void TextField::controlKey(int virtualKey) {
    switch (virtualKey) {
        case 'A':
            return selectAll();
        case 'C':
            copy();
            return;
        case 'V':
            return paste();
        case 'X':
            return cut();
        default:
            return;
    }
}

void TextField::run(EditCommand command) {
    switch (command) {
        case EditCommand::Cut:
            return cut();
        case EditCommand::Copy:
            copy();
            return;
        case EditCommand::Paste:
            return paste();
        case EditCommand::Delete:
            return eraseSelectionOr(caretPlace(), caretPlace());
        case EditCommand::SelectAll:
            return selectAll();
        case EditCommand::None:
            return;
    }
}

void TextField::onChar(wchar_t unit) {
    if (!takesInput()) return;
    if (unit == kBackspace) {
        eraseSelectionOr(previousPlace(content, caretPlace()), caretPlace());
    } else if (unit == kControlBackspace) {
        eraseSelectionOr(previousWordStart(content, caretPlace()), caretPlace());
    } else if (!isControlCharacter(unit)) {
        insert(std::wstring(1, unit));
    }
}

void TextField::insert(std::wstring_view inserted) {
    Selected replaced{caretPlace(), caretPlace()};
    if (hasSelection()) replaced = selected();
    const std::size_t kept = content.size() - (replaced.end - replaced.begin);
    std::size_t room = kLongestText - std::min(kept, kLongestText);
    if (room < inserted.size() && insidePair(inserted, room)) --room;
    inserted = inserted.substr(0, room);
    if (inserted.empty()) return;
    content.replace(replaced.begin, replaced.end - replaced.begin, inserted);
    caretIndex = static_cast<std::int32_t>(replaced.begin + inserted.size());
    textChanged();
}

void TextField::erase(std::size_t begin, std::size_t end) {
    if (begin == end) return;
    content.erase(begin, end - begin);
    caretIndex = static_cast<std::int32_t>(begin);
    textChanged();
}

void TextField::eraseSelectionOr(std::size_t begin, std::size_t end) {
    if (hasSelection()) {
        erase(selected().begin, selected().end);
    } else {
        erase(begin, end);
    }
}

void TextField::textChanged() {
    clearSelection();
    // Two lone halves may have come together around the caret.
    if (insidePair(content, caretPlace())) ++caretIndex;
    revealCaret();
    if (onChange) onChange(content);
}

void TextField::setText(std::wstring newText) {
    std::erase_if(newText, breaksLine);
    content = std::move(newText);
    caretIndex = static_cast<std::int32_t>(content.size());
    clearSelection();
    revealCaret();
}

bool TextField::copy() {
    if (!hasSelection()) return false;
    const auto [begin, end] = selected();
    return services.clipboard.write(std::wstring_view(content).substr(begin, end - begin));
}

void TextField::cut() {
    // What could not be copied is not lost.
    if (copy()) eraseSelectionOr(caretPlace(), caretPlace());
}

void TextField::paste() {
    std::optional<std::wstring> pasted = services.clipboard.read();
    if (!pasted) return;
    std::erase_if(*pasted, breaksLine);
    if (!pasted->empty()) insert(*pasted);
}

}  // namespace varnelo
