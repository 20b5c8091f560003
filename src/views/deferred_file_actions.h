#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "views/file_actions.h"

namespace varnelo {

// Keeps what a grid wants done to files until the lock around the grid is given up: menus and file operations
// serve messages while they run, and a message may need that lock. User-interface thread only.
class DeferredFileActions final : public FileActions {
public:
    // `fileActions` outlives this object.
    explicit DeferredFileActions(FileActions& fileActions) : real(fileActions) {}

    // Does what has gathered, in order. What comes up meanwhile is done too.
    void run() {
        while (!waiting.empty()) {
            const std::vector<std::function<void()>> now = std::exchange(waiting, {});
            for (const std::function<void()>& action : now) action();
        }
    }

    void launch(const FileEntry& entry) override {
        waiting.emplace_back([this, entry] { real.launch(entry); });
    }
    void showItemMenu(const FileEntry& entry) override {
        waiting.emplace_back([this, entry] { real.showItemMenu(entry); });
    }
    void showShellMenu(const std::vector<ItemIdList>& items) override {
        waiting.emplace_back([this, items] { real.showShellMenu(items); });
    }
    void copyItems(const std::vector<ItemIdList>& items, bool cut) override {
        waiting.emplace_back([this, items, cut] { real.copyItems(items, cut); });
    }
    void pasteInto(const ItemIdList& folder) override {
        waiting.emplace_back([this, folder] { real.pasteInto(folder); });
    }
    void recycle(const std::vector<FileEntry>& entries) override {
        waiting.emplace_back([this, entries] { real.recycle(entries); });
    }

private:
    FileActions& real;
    std::vector<std::function<void()>> waiting;
};

}  // namespace varnelo
