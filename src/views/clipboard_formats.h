#pragma once

// The three formats in which files stand on the clipboard, as bytes (docs/formats/clipboard.md).

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/item_id_list.h"

namespace varnelo {

// What the reader of the clipboard is to do with the files.
enum class DropEffect : std::uint32_t { Copy = 1, Move = 2 };

// The items of one folder: the folder's own list and, relative to it, the items'.
struct ShellIdListArray {
    ItemIdList parent;
    std::vector<ItemIdList> items;
};

// "CF_HDROP": the paths behind a header.
std::vector<std::uint8_t> dropFilesBlock(const std::vector<std::wstring>& paths);

// "Preferred DropEffect".
std::vector<std::uint8_t> dropEffectBlock(DropEffect effect);
// Move if its bit is set, whatever else is; Copy otherwise, also for a block that is too short.
DropEffect parseDropEffect(std::span<const std::uint8_t> block);

// "Shell IDList Array". No list may be empty.
std::vector<std::uint8_t> shellIdListArrayBlock(const ShellIdListArray& array);
// Any bytes will do: another program wrote them. Nothing when any offset leaves the block or any list does
// not end within it, or when the lists together are longer than the block, as lists that overlap can be.
std::optional<ShellIdListArray> parseShellIdListArray(std::span<const std::uint8_t> block);

// The items as children of the first one's folder, whatever folders the others lie in. `items` holds at
// least one, and no empty list.
ShellIdListArray asChildrenOfFirst(const std::vector<ItemIdList>& items);

}  // namespace varnelo
