#pragma once

namespace varnelo {

// What a view knows of the user's hands and of time: filled by the owning surface before each frame and
// before each mouse or key event. Views hold a reference to it and never ask the system themselves.
struct FrameInput {
    float cursorX = 0;  // pixels of the client area
    float cursorY = 0;
    float deltaTime = 0;  // seconds since the last frame
    bool ctrlDown = false;
    bool shiftDown = false;
    bool altDown = false;  // with Ctrl it is AltGr, which makes characters and no commands
};

}  // namespace varnelo
