#pragma once

#include <windows.h>

#include <functional>
#include <vector>

#include "app/language_table.h"
#include "views/file_actions.h"
#include "views/shell_calls_win.h"

namespace varnelo {

// The actions of a window, carried out by the shell, which also shows what goes wrong. Menus and questions
// belong to the window.
class ShellFileActions final : public FileActions {
public:
    // `window` is asked for each time; `language` and `calls` outlive this object.
    ShellFileActions(std::function<HWND()> window, const LanguageTable& language, ShellCalls& calls);

    void launch(const FileEntry& entry) override;
    void showItemMenu(const FileEntry& entry) override;
    void showShellMenu(const std::vector<ItemIdList>& items) override;
    void copyItems(const std::vector<ItemIdList>& items, bool cut) override;
    void pasteInto(const ItemIdList& folder) override;
    void recycle(const std::vector<FileEntry>& entries) override;

private:
    const std::function<HWND()> window;
    const LanguageTable& language;
    ShellCalls& calls;
};

}  // namespace varnelo
