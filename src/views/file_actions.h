#pragma once

#include <vector>

#include "model/file_entry.h"
#include "platform/item_id_list.h"

namespace varnelo {

// What a grid does to real files, called on the user-interface thread. Menus and file operations run modally
// and pump messages: the grid may have other content when a call returns, so arguments are never references
// into it. Lists hold no empty id lists. Failures are silent.
class FileActions {
public:
    virtual ~FileActions() = default;

    // Opens the item, as a double click does.
    virtual void launch(const FileEntry& entry) = 0;
    // The own menu of the software pane.
    virtual void showItemMenu(const FileEntry& entry) = 0;
    // The shell's context menu of these items, all taken as children of the first one's folder.
    virtual void showShellMenu(const std::vector<ItemIdList>& items) = 0;
    virtual void copyItems(const std::vector<ItemIdList>& items, bool cut) = 0;
    virtual void pasteInto(const ItemIdList& folder) = 0;
    virtual void recycle(const std::vector<FileEntry>& entries) = 0;
};

}  // namespace varnelo
