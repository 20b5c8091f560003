#pragma once

#include <windows.h>

namespace varnelo {

// Messages posted to a window of the program.
constexpr UINT kMessageShellChange = 0x800A;  // from the shell: a watched change
constexpr UINT kMessageRedraw = 0x800B;       // from any thread: wake up and draw one frame
constexpr UINT kMessageKeyDown = 0x8014;      // wParam: a virtual key that was pressed
constexpr UINT kMessageKeyUp = 0x8015;

}  // namespace varnelo
