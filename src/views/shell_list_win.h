#pragma once

#include <windows.h>

namespace varnelo {

// The shell's own list of desktop icons, inside the program manager's window or one of its worker windows;
// null when no shell has one.
HWND findShellList();

}  // namespace varnelo
