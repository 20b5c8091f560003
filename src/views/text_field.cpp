// Mouse, focus and time. What keys and commands do to the text is in text_field_edit.cpp.

#include "views/text_field.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <utility>

#include "views/clipboard_text.h"
#include "views/edit_menu.h"
#include "views/frame_input.h"
#include "views/text_measure.h"
#include "views/text_units.h"
#include "views/word_boundaries.h"

namespace varnelo {

namespace {

constexpr float kPaddingShare = 0.15F;  // of the height
constexpr std::uint32_t kTripleClickTicks = 501;
constexpr float kSpinnerDegreesPerSecond = 360;
constexpr float kBlinkSeconds = 0.53F;
constexpr float kCaretRoom = 1.5F;  // kept free at the end of the box, for the caret's line

}  // namespace

void TextField::place(const ViewRect& newArea) {
    area = newArea;
    paddingPixels = kPaddingShare * area.h;
    revealCaret();
}

float TextField::shownHeight() const {
    return collapsedHeight > 0 && collapsedHeight < area.h ? collapsedHeight : area.h;
}

float TextField::boxWidth() const {
    return std::max(area.w - 2 * paddingPixels - (busy ? shownHeight() : 0), 0.0F);
}

bool TextField::cursorInside() const { return area.contains(services.input.cursorX, services.input.cursorY); }

void TextField::showCaret() {
    caretTimer = 0;
    caretShown = true;
}

void TextField::loseFocus() {
    hasFocus = false;
    dragging = false;
    wordClickPending = false;
    clearSelection();
}

void TextField::onMouseDown() {
    if (!cursorInside()) {
        loseFocus();
        return;
    }
    if (!enabled) return;
    hasFocus = true;
    showCaret();
    // Unsigned, so that it holds across the wrap of the ticks.
    const std::uint32_t sinceDoubleClick = services.ticks() - lastDoubleClickTick;
    if (wordClickPending && sinceDoubleClick < kTripleClickTicks) {
        if (!content.empty()) selectAll();
    } else {
        moveCaret(static_cast<std::size_t>(hitTestCaret(services.input.cursorX)), Extend::No);
        dragging = true;
    }
    wordClickPending = false;
}

void TextField::onMouseMove(bool leftButtonDown) {
    // The release may have gone to another window.
    if (!leftButtonDown) dragging = false;
    if (!dragging || !takesInput()) return;
    showCaret();
    moveCaret(static_cast<std::size_t>(hitTestCaret(services.input.cursorX)), Extend::Yes);
}

void TextField::onMouseUp() { dragging = false; }

void TextField::onDoubleClick() {
    if (!enabled || content.empty() || !cursorInside()) return;
    dragging = false;
    const TextRange word = wordAt(content, caretPlace());
    select(word.begin, word.end);
    wordClickPending = true;
    lastDoubleClickTick = services.ticks();
}

void TextField::onRightClick() {
    if (!takesInput() || !cursorInside()) return;
    const EditCommand command =
        services.menu.choose({hasSelection(), !content.empty(), services.clipboard.hasText()});
    if (takesInput()) run(command);
}

std::int32_t TextField::hitTestCaret(float x) const {
    const std::span<const float> widths = services.measure.prefixWidths(content);
    const float inText = x - area.x - paddingPixels + scrolled;
    std::size_t index = 0;
    while (index < content.size()) {
        const std::size_t next = nextPlace(content, index);
        if ((widths[index] + widths[next]) / 2 > inText) break;
        index = next;
    }
    return static_cast<std::int32_t>(index);
}

// As little as possible, and no empty room behind the text while some of it is hidden at the left.
void TextField::revealCaret() {
    const std::span<const float> widths = services.measure.prefixWidths(content);
    const float box = boxWidth();
    const float room = std::max(box - kCaretRoom, 0.0F);
    const float place = widths[caretPlace()];
    scrolled = std::clamp(scrolled, std::max(place - room, 0.0F), place);
    scrolled = std::min(scrolled, std::max(widths.back() - room, 0.0F));
}

bool TextField::update(float dt) {
    if (!std::isfinite(dt) || dt < 0) dt = 0;
    const float scrolledBefore = scrolled;
    revealCaret();
    bool changed = scrolled != scrolledBefore;
    if (busy) {
        spinnerDegrees = std::fmod(spinnerDegrees + kSpinnerDegreesPerSecond * dt, 360.0F);
        changed = true;
    }
    if (!takesInput()) return changed;
    caretTimer += dt;
    if (caretTimer >= kBlinkSeconds) {
        caretTimer = std::fmod(caretTimer - kBlinkSeconds, kBlinkSeconds);
        caretShown = !caretShown;
        changed = true;
    }
    return changed;
}

}  // namespace varnelo
