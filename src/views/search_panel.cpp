#include "views/search_panel.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "views/frame_input.h"

namespace varnelo {

namespace {

constexpr float kFoldRate = 18;       // per second
constexpr float kFoldArrived = 0.5F;  // pixels
constexpr float kLongestBlink = 0.53F;

}  // namespace

SearchPanel::SearchPanel(const FrameInput& frameInput, TextField::Services name, TextField::Services content)
    : nameField(std::move(name)), contentField(std::move(content)), input(frameInput) {}

void SearchPanel::place(const ViewLayout& layout) {
    nameField.place(layout.nameField);
    contentField.place(layout.contentField);
    expander = layout.expander;
}

void SearchPanel::setTexts(const std::wstring& namePlaceholder, const std::wstring& contentPlaceholder) {
    nameField.placeholder = namePlaceholder;
    contentField.placeholder = contentPlaceholder;
    expanderLabel = contentPlaceholder;
}

void SearchPanel::setReady(bool ready) {
    nameField.enabled = ready;
    contentField.enabled = ready;
}

std::wstring SearchPanel::expanderText() const {
    return (expanded ? L"\u25bc " : L"\u25b6 ") + expanderLabel;
}

bool SearchPanel::update(float dt, float elapsed) {
    bool moving = advanceFold(dt);
    // A longer pause is one blink, not many.
    const float blink = std::min(elapsed, kLongestBlink);
    for (TextField* field : {&nameField, &contentField}) {
        field->update(blink);
        moving |= field->busy;
    }
    return moving;
}

bool SearchPanel::advanceFold(float dt) {
    if (foldCurrent == foldTarget) return false;
    foldCurrent += (1 - std::exp(-kFoldRate * dt)) * (foldTarget - foldCurrent);
    if (std::abs(foldTarget - foldCurrent) <= kFoldArrived) foldCurrent = foldTarget;
    contentField.collapsedHeight = foldCurrent >= kSearchFieldHeight ? -1 : foldCurrent;
    if (onResized) onResized();
    return foldCurrent != foldTarget;
}

bool SearchPanel::overExpander() const { return expander.contains(input.cursorX, input.cursorY); }

void SearchPanel::toggleContent() {
    expanded = !expanded;
    foldTarget = expanded ? kSearchFieldHeight : 0;
    if (!expanded) contentField.loseFocus();
}

void SearchPanel::onMouseDown() {
    if (overExpander()) {
        toggleContent();
        return;
    }
    nameField.onMouseDown();
    if (expanded) contentField.onMouseDown();
}

void SearchPanel::onMouseMove(bool leftButtonDown) {
    nameField.onMouseMove(leftButtonDown);
    if (expanded) contentField.onMouseMove(leftButtonDown);
}

void SearchPanel::onMouseUp() {
    nameField.onMouseUp();
    contentField.onMouseUp();
}

void SearchPanel::onDoubleClick() {
    if (overExpander()) return;
    nameField.onDoubleClick();
    if (expanded) contentField.onDoubleClick();
}

void SearchPanel::onRightClick() {
    nameField.onRightClick();
    if (expanded) contentField.onRightClick();
}

void SearchPanel::onKeyDown(int virtualKey) {
    nameField.onKeyDown(virtualKey);
    if (expanded) contentField.onKeyDown(virtualKey);
}

void SearchPanel::onChar(wchar_t unit) {
    nameField.onChar(unit);
    if (expanded) contentField.onChar(unit);
}

bool SearchPanel::hasFocus() const { return nameField.focused() || (expanded && contentField.focused()); }

void SearchPanel::clearFocus() {
    nameField.loseFocus();
    contentField.loseFocus();
}

}  // namespace varnelo
