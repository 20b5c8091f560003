#include "support/full_window_win.h"

#include <string>

namespace varnelo {

namespace {

constexpr int kItems = 1000;  // a pane; more than any of them shows
constexpr int kGroups = 5;
constexpr int kPictures = 20;
constexpr int kIconPixels = 48;
constexpr float kScrollSpeed = 900;  // pixels per second

}  // namespace

FullWindow::FullWindow(int width, int height, float iconScale) : stage(width, height) {
    if (!stage.window.ready) return;
    stage.settings.iconScale = iconScale;
    stage.start();
    stage.window.surface.backgroundSRV = stage.window.upload(reference::busyPicture(width, height, 1));
    for (int i = 0; i < kPictures; ++i) textures.push_back(std::make_shared<IconTexture>(icon(i)));
    fill(stage.view->tabPane(), TabKind::Overview, kGroups);
    fill(stage.view->softwarePane(), TabKind::Software, 0);
    ready = stage.settle();
}

FileEntry FullWindow::item(const std::wstring& name, const std::wstring& group) {
    items.push_back(std::make_unique<DesktopFileInfo>());
    FileEntry entry(*items.back());
    entry.displayName = name;
    if (!group.empty()) entry.group = GroupKey{GroupCategory::Files, group};
    return entry;
}

void FullWindow::fill(IconView& pane, TabKind kind, int groups) {
    std::vector<FileEntry> entries;
    for (int i = 0; i < kItems; ++i) {
        // In runs, so that a group is as full as another.
        const std::wstring group = groups > 0 ? L"Group " + std::to_wstring(i * groups / kItems) : L"";
        entries.push_back(item(L"Item " + std::to_wstring(i), group));
    }
    pane.setEntries({std::move(entries), {}}, kind);
    for (std::size_t i = 0; i < pane.cells.size(); ++i) pane.cells[i].texture = textures[i % kPictures];
    for (IconGroup& group : pane.groups) group.collapsed = false;
}

// Half of it glass.
IconTexture FullWindow::icon(int number) {
    reference::Picture picture = reference::busyPicture(kIconPixels, kIconPixels, 10 + number);
    for (int y = 0; y < kIconPixels; ++y) {
        for (int x = 0; x < kIconPixels; ++x) {
            reference::Color color = picture.at(x, y);
            color.a = (x + y) % 16 < 8 ? 1.0F : 0.0F;
            picture.set(x, y, color);
        }
    }
    return stage.window.uploadIcon(picture);
}

void FullWindow::keepScrolling() {
    IconView& tab = stage.view->tabPane();
    if (tab.scrollVelocity == 0) down = !down;
    for (IconView* pane : {&tab, &stage.view->softwarePane()})
        pane->scrollVelocity = down ? -kScrollSpeed : kScrollSpeed;
}

void FullWindow::renameVisible(int count) {
    for (IconCell& cell : stage.view->tabPane().cells) {
        if (!cell.visible) continue;
        if (count-- == 0) return;
        cell.entry.displayName = L"Fresh item " + std::to_wstring(++renamed);
    }
}

int FullWindow::visibleIcons() {
    int count = 0;
    for (IconView* pane : {&stage.view->tabPane(), &stage.view->softwarePane()})
        for (const IconCell& cell : pane->cells) count += cell.visible ? 1 : 0;
    return count;
}

}  // namespace varnelo
