#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

#include "platform/item_id_list.h"
#include "views/clipboard_formats.h"

namespace varnelo {

// The path of an item in the file system; nothing for a virtual one and for paths of MAX_PATH units and more.
std::optional<std::wstring> itemPath(const ItemIdList& item);

// Puts the items on the clipboard in all three formats. No items leave it untouched.
void copyToClipboard(const std::vector<ItemIdList>& items, DropEffect effect);

// What "paste" finds.
struct ClipboardItems {
    DropEffect effect = DropEffect::Copy;
    ShellIdListArray array;
};
// Nothing when the clipboard cannot be opened or holds no well-formed list of items.
std::optional<ClipboardItems> itemsOnClipboard(HWND window);

}  // namespace varnelo
