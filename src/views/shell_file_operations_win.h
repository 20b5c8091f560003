#pragma once

#include <windows.h>

#include <vector>

#include "platform/item_id_list.h"
#include "views/shell_calls_win.h"

namespace varnelo {

// Copies or moves what is on the clipboard into the folder. Only the format of item id lists is read: files
// that are there without it stay where they are. The clipboard keeps what it holds.
void pasteInto(const ItemIdList& folder, HWND window, ShellCalls& calls);

// Moves the items to the recycle bin; the shell asks before it deletes what the bin cannot take.
void recycleItems(const std::vector<ItemIdList>& items, HWND window, ShellCalls& calls);

}  // namespace varnelo
