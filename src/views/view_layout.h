#pragma once

#include "views/view_rect.h"

namespace varnelo {

// What the rectangles of a window's view depend on. Pixels of the client area.
struct ViewLayoutInput {
    float surfaceWidth = 0;
    float surfaceHeight = 0;
    float dpiScale = 1;
    ViewRect firstRect;   // the tabbed area, left of the splitter's bar
    ViewRect secondRect;  // the software pane, right of it
    bool searchVisible = false;
    float contentRowHeight = 0;  // of the second search row as it unfolds; 0 while it is closed
};

// Where everything stands beside the splitter's bar: in the tabbed area the menu button, to its right the tab
// strip, below both the search panel while it shows, and the tab's pane in what is left; the software pane;
// over all of them, at the bottom, the progress bar.
struct ViewLayout {
    ViewRect menuButton;
    ViewRect tabStrip;
    ViewRect nameField;
    ViewRect expander;  // the line that unfolds the second search row
    ViewRect contentField;
    ViewRect tabPane;
    ViewRect softwarePane;
    ViewRect progressBar;
};

inline constexpr float kSearchFieldHeight = 30;

// A part that has no room gets a size of 0, never a negative one.
ViewLayout layOutView(const ViewLayoutInput& input);

// The height of the menu row, whole pixels.
float menuRowHeight(float dpiScale);

}  // namespace varnelo
