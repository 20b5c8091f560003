#pragma once

#include <memory>

#include "model/file_entry.h"

namespace varnelo {

// A picture on the graphics device. The logic of the grid only carries the pointer; the type is complete
// where icons are made and drawn.
class IconTexture;

// One item of a pane, held by value and moved when the order changes. Positions are content coordinates:
// pixels of the client area as they would be with the pane scrolled to its top.
struct IconCell {
    IconCell() = default;
    explicit IconCell(FileEntry item) : entry(std::move(item)) {}

    bool dragged = false;  // follows the cursor
    bool visible = false;  // recomputed each frame; only visible cells are hit-tested and drawn
    bool selected = false;
    bool dimmed = false;   // drawn at half alpha; travels with the cell
    bool hovered = false;  // state of the hover behaviour, not of the cursor
    float x = 0;           // animated position
    float y = 0;
    float targetX = 0;  // where the layout wants the cell
    float targetY = 0;
    float grabX = 0;  // cursor minus position at the start of a drag
    float grabY = 0;
    float shakeX = 0;  // offset of the hover shake
    float shakeY = 0;
    float shakeTime = 99;  // seconds since the hover began; far beyond the shake's length at the start
    float scale = 1;       // eased draw scale
    std::shared_ptr<IconTexture> texture;  // null until the icon is loaded
    FileEntry entry;
};

}  // namespace varnelo
