#pragma once

namespace varnelo {

// Puts the mouse cursor there, in screen pixels, and hands out the messages of this thread until the system
// has told that place for a while. A move that still waits in the queue would put the cursor back later.
// False after ten seconds.
bool restCursorAt(int x, int y);

}  // namespace varnelo
