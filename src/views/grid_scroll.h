#pragma once

#include <optional>

#include "views/grid_state.h"

// Scrolling: the wheel gives the content a speed that dies away; the scroll bar fades in and out.

namespace varnelo {

// The scroll bar. Pixels from the top of the pane; in List mode the track starts below the header.
struct ScrollThumb {
    float top;
    float height;
    float track;  // how far the thumb can go, at least 0
};

float maxScroll(const GridState& grid);
void clampScroll(GridState& grid);
// Moves the content by its speed for `seconds` and slows it down; an end of the content stops it.
void advanceScroll(GridState& grid, float seconds);
// Moves the scroll bar's alpha towards its target. True while scrolling or the scroll bar needs frames.
bool fadeScrollBar(GridScroll& scroll, double now, float seconds);

// Nothing while all content fits.
std::optional<ScrollThumb> scrollThumb(const GridState& grid);
// Whether there is a scroll bar and the point is on its strip at the right edge of the pane.
bool onScrollBar(const GridState& grid, float cursorX, float cursorY);

// `delta` is that of the window message: 120 a notch, positive towards the top.
void turnWheel(GridScroll& scroll, float delta, double now);
// A press on the scroll bar's strip: grabs the thumb, or pages towards the cursor.
void pressScrollBar(GridState& grid, float cursorY);
void dragThumb(GridState& grid, float cursorY);
// Makes the scroll bar appear for a while.
void showScrollBar(GridScroll& scroll, double now);

}  // namespace varnelo
