#pragma once

#include <functional>
#include <string>

#include "views/text_field.h"
#include "views/view_layout.h"

namespace varnelo {

// The head of the search tab: the field for file names, the line that unfolds a second field, and the field
// for file contents. User-interface thread only.
class SearchPanel {
public:
    // `frameInput` outlives the panel, as the fields' services do.
    SearchPanel(const FrameInput& frameInput, TextField::Services name, TextField::Services content);

    void place(const ViewLayout& layout);
    // After a change of language as well.
    void setTexts(const std::wstring& namePlaceholder, const std::wstring& contentPlaceholder);
    // Without it no field takes input. Ready when there is something to search in.
    void setReady(bool ready);

    // `dt` is the frame's time, `elapsed` that of the clock since the last frame, seconds: the caret blinks
    // by the clock, so that it also keeps its pace while frames come seldom. True while another frame is
    // needed.
    bool update(float dt, float elapsed);

    void onMouseDown();
    void onMouseMove(bool leftButtonDown);
    void onMouseUp();
    void onDoubleClick();
    void onRightClick();
    void onKeyDown(int virtualKey);
    void onChar(wchar_t unit);

    bool hasFocus() const;
    void clearFocus();

    // What the second row takes of the height by now, pixels; 0 while it is closed.
    float contentRowHeight() const { return foldCurrent; }
    bool contentShows() const { return foldCurrent > kLeastShown; }
    bool isContentExpanded() const { return expanded; }
    // The expander's text, with the arrow that tells what a press does.
    std::wstring expanderText() const;
    const ViewRect& expanderRect() const { return expander; }

    TextField nameField;
    TextField contentField;
    // The panel needs more or less room than before.
    std::function<void()> onResized;

private:
    static constexpr float kLeastShown = 0.5F;

    bool overExpander() const;
    void toggleContent();
    bool advanceFold(float dt);

    const FrameInput& input;
    ViewRect expander;
    std::wstring expanderLabel;
    bool expanded = false;
    float foldTarget = 0;
    float foldCurrent = 0;
};

}  // namespace varnelo
