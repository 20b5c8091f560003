// What the tab pane shows, and how it follows the models.

#include "app/settings.h"
#include "views/main_view_win.h"
#include "views/render_surface_win.h"

namespace varnelo {

// A saved index of no tab leaves the pane empty until a click.
void MainView::activateTab(std::int32_t index) {
    if (index < 0 || index >= kTabs) return;
    widgets.tabStrip.activeIndex = index;
    widgets.tabStrip.tabs[static_cast<std::size_t>(index)].run();
}

void MainView::showTab(std::int32_t tab) {
    if (tab != SearchTab) leaveSearch();
    switch (tab) {
        case DesktopTab:
            leftPane.setEntries(organizers.desktop.list(), TabKind::Desktop);
            break;
        case OverviewTab:
            leftPane.setEntries({}, TabKind::Overview);
            break;
        case SystemTab:
            leftPane.setEntries({}, TabKind::System);
            break;
        default:
            enterSearch();
            break;
    }
    saveTab(tab);
}

void MainView::leaveSearch() {
    searchVisible = false;
    widgets.searchPanel.clearFocus();
    leftPane.listMode.active = false;
    leftPane.listMode.listEnabled = false;
    layOut();
}

void MainView::enterSearch() {
    searchVisible = true;
    leftPane.listMode.active = true;
    leftPane.listMode.listEnabled = true;
    layOut();
    leftPane.setVirtualSource(0, [](std::uint64_t&, std::uint64_t&) { return std::vector<FileEntry>(); });
}

// The view of the primary monitor also decides what a monitor without a choice of its own begins with.
void MainView::saveTab(std::int32_t tab) {
    services.settings.setTabIndexFor(role.monitor, tab);
    if (!role.primary || services.settings.tabIndex == tab) return;
    services.settings.tabIndex = tab;
    services.settings.save();
}

void MainView::onDesktopChange(const FileEntry& entry, DesktopOrganizer::Action action) {
    const std::lock_guard lock(paneLock);
    if (leftPane.tabKind != TabKind::Desktop) return;
    switch (action) {
        case DesktopOrganizer::Action::Added:
            leftPane.addEntry(entry);
            break;
        case DesktopOrganizer::Action::Removed:
            leftPane.removeEntry(entry);
            break;
        case DesktopOrganizer::Action::Renamed:
            leftPane.renameEntry(entry);
            break;
        case DesktopOrganizer::Action::Updated:
            leftPane.updateEntry(entry);
            break;
    }
}

// At most once a frame. A pane whose kind has no cache only forgets the mark.
void MainView::saveChangedOrder() {
    if (!splitter.softwareHidden()) rightPane.dirty = false;
    if (!leftPane.dirty) return;
    leftPane.dirty = false;
    if (leftPane.tabKind == TabKind::Desktop) organizers.desktop.saveCache();
}

}  // namespace varnelo
