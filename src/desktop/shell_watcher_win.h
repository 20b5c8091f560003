// The shell's change notifications for the desktop folder, delivered as messages to the main window.
#pragma once

#include <windows.h>

namespace varnelo {

// Registers `window` for changes below the desktop; each arrives as kMessageShellChange. Returns the
// registration id, 0 when there is none. The registration ends with the process.
ULONG startShellWatcher(HWND window);

}  // namespace varnelo
