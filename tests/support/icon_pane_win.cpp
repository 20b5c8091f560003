#include "support/icon_pane_win.h"

#include <filesystem>
#include <fstream>

#include "platform/clock.h"
#include "platform/item_id_list_win.h"

namespace varnelo {

namespace fs = std::filesystem;

namespace {

constexpr double kLongestWaitSeconds = 60;

}  // namespace

std::wstring FilesFolder::addFile(const std::wstring& name) {
    const fs::path path = fs::path(folder.file(name));
    std::ofstream(path) << "content";
    return path.wstring();
}

std::wstring FilesFolder::addFolder(const std::wstring& name) {
    const fs::path path = fs::path(folder.file(name));
    fs::create_directories(path);
    return path.wstring();
}

ItemIdList idListOf(const std::wstring& path) {
    ShellIdList list;
    if (FAILED(SHParseDisplayName(path.c_str(), nullptr, list.put(), 0, nullptr))) return {};
    return itemIdListFrom(list.get());
}

IconPane::IconPane(int width, int height, float iconScale)
    : window(width, height),
      view({window.surface.input, systemClock(), shell, settings, language, nullptr}, window.surface,
           window.base, TabKind::Desktop) {
    settings.iconScale = iconScale;
    ViewRect rect{0, 0, static_cast<float>(width), static_cast<float>(height)};
    view.init(rect, false, 0, true);
}

IconPane::~IconPane() {
    view.stopIconWorker();
    view.destroy();
}

FileEntry IconPane::named(const std::wstring& name, const std::wstring& group) {
    items.push_back(std::make_unique<DesktopFileInfo>());
    FileEntry entry(*items.back());
    entry.displayName = name;
    if (!group.empty()) entry.group = GroupKey{GroupCategory::Files, group};
    return entry;
}

FileEntry IconPane::file(const std::wstring& path, const std::wstring& group) {
    FileEntry entry = named(fs::path(path).filename().wstring(), group);
    entry.pidl = idListOf(path);
    return entry;
}

void IconPane::show(std::vector<FileEntry> entries) {
    view.setEntries({std::move(entries), {}}, TabKind::Desktop);
}

bool IconPane::frame(float seconds) {
    window.surface.input.deltaTime = seconds;
    const bool moving = view.update();
    window.layer.clear();
    window.surface.drawBackground();
    view.draw(false);
    return moving;
}

bool IconPane::settle() {
    const double end = systemClock().steadySeconds() + kLongestWaitSeconds;
    while (systemClock().steadySeconds() < end) {
        window.surface.input.deltaTime = 0.1F;
        const bool moving = view.update();
        bool complete = true;
        for (const IconCell& cell : view.cells) complete &= cell.texture || cell.entry.pidl.empty();
        if (complete && !moving) {
            frame();
            return true;
        }
        Sleep(1);  // leaves the processor to the workers
    }
    return false;
}

int IconPane::loaded() const {
    int count = 0;
    for (const IconCell& cell : view.cells) count += cell.texture ? 1 : 0;
    return count;
}

}  // namespace varnelo
