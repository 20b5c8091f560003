#pragma once

#include <memory>
#include <vector>

#include "model/file_metadata.h"
#include "support/main_view_stage_win.h"

namespace varnelo {

// A whole view with both panes full of items that have a name and a picture but no file, over a busy
// wallpaper. The tab pane shows groups, all of them open.
class FullWindow {
public:
    FullWindow(int width, int height, float iconScale);
    FullWindow(const FullWindow&) = delete;
    FullWindow& operator=(const FullWindow&) = delete;

    // Scrolls both panes on, down and up again, so that no frame stands still. To be called once a frame.
    void keepScrolling();
    // The next `count` labels of the tab pane that are in view get names that were never shown.
    void renameVisible(int count);
    int visibleIcons();

    MainViewStage stage;
    bool ready = false;

private:
    FileEntry item(const std::wstring& name, const std::wstring& group);
    void fill(IconView& pane, TabKind kind, int groups);
    IconTexture icon(int number);

    std::vector<std::unique_ptr<DesktopFileInfo>> items;
    std::vector<std::shared_ptr<IconTexture>> textures;
    bool down = false;
    int renamed = 0;
};

}  // namespace varnelo
