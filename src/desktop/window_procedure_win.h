// The procedure of every window of the program.
#pragma once

#include <windows.h>

namespace varnelo {

struct WindowState;

// Called once, before the window class is registered; null detaches. `state` outlives every window of the
// class.
void attachWindowProcedure(WindowState* state);

// Decodes a message and calls the view's operation. Nothing is drawn here; frames come from the loop. An
// exception must not cross the system's frames below: it ends the process here, with a crash report.
LRESULT CALLBACK WndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;

}  // namespace varnelo
