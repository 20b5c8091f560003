#pragma once

#include <windows.h>

#include <shlobj.h>

#include <functional>
#include <vector>

#include "platform/item_id_list.h"
#include "views/shell_calls_win.h"

namespace varnelo {

// Puts items on the clipboard.
using CopyItems = std::function<void(bool cut)>;

// The shell's context menu of these items at the cursor. All are taken as children of the first one's folder.
// Returns when the menu has closed and the choice was carried out; "cut" and "copy" go to `copy`.
void showShellMenu(const std::vector<ItemIdList>& items, HWND window, const CopyItems& copy,
                   ShellCalls& calls);

// The same for a context menu that is there already.
void showContextMenu(IContextMenu& contextMenu, HWND window, const CopyItems& copy, ShellCalls& calls);

}  // namespace varnelo
