#include "views/shell_file_actions_win.h"

#include <utility>

#include "views/item_menu_win.h"
#include "views/shell_clipboard_win.h"
#include "views/shell_file_operations_win.h"
#include "views/shell_launch_win.h"
#include "views/shell_menu_win.h"

namespace varnelo {

ShellFileActions::ShellFileActions(std::function<HWND()> theWindow, const LanguageTable& theLanguage,
                                   ShellCalls& theCalls)
    : window(std::move(theWindow)), language(theLanguage), calls(theCalls) {}

void ShellFileActions::launch(const FileEntry& entry) { launchItem(entry.pidl, calls); }

void ShellFileActions::showItemMenu(const FileEntry& entry) {
    varnelo::showItemMenu(entry, window(), language, calls);
}

void ShellFileActions::showShellMenu(const std::vector<ItemIdList>& items) {
    varnelo::showShellMenu(
        items, window(), [&](bool cut) { copyItems(items, cut); }, calls);
}

void ShellFileActions::copyItems(const std::vector<ItemIdList>& items, bool cut) {
    copyToClipboard(items, cut ? DropEffect::Move : DropEffect::Copy);
}

void ShellFileActions::pasteInto(const ItemIdList& folder) { varnelo::pasteInto(folder, window(), calls); }

void ShellFileActions::recycle(const std::vector<FileEntry>& entries) {
    std::vector<ItemIdList> items;
    for (const FileEntry& entry : entries) items.push_back(entry.pidl);
    recycleItems(items, window(), calls);
}

}  // namespace varnelo
