#pragma once

#include <windows.h>

#include "app/language_table.h"
#include "model/file_entry.h"
#include "views/shell_calls_win.h"

namespace varnelo {

// The menu of an item of the software pane at the cursor: run, run as administrator, uninstall. Returns when
// it has closed and the choice was carried out. The entry's metadata is not touched once the menu is open.
void showItemMenu(const FileEntry& entry, HWND window, const LanguageTable& language, ShellCalls& calls);

}  // namespace varnelo
