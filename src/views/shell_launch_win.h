#pragma once

#include <windows.h>

#include "platform/item_id_list.h"
#include "views/shell_calls_win.h"

namespace varnelo {

// Opens the item as a double click does. An item with a file path goes through the command processor, hidden:
// what it starts is no child of this process, holds nothing of it up and outlives it. Everything else, and
// what that form cannot carry unchanged, goes by its id list.
void launchItem(const ItemIdList& item, ShellCalls& calls);

// Opens the item by its id list with this verb, null for the shell's default.
bool executeItem(const ItemIdList& item, const wchar_t* verb, HWND window, ShellCalls& calls);

}  // namespace varnelo
