// Mouse and keys: what lies on top takes the press, and whoever took the press gets the release.

#include <optional>
#include <utility>

#include "app/settings.h"
#include "views/grid_scroll.h"
#include "views/main_view_win.h"
#include "views/render_surface_win.h"

namespace varnelo {

// Software pane first, then the tab pane; while the software pane is hidden the tab pane alone.
template <class Call>
void MainView::callPanes(Call call) {
    if (!splitter.softwareHidden()) call(rightPane);
    call(leftPane);
}

void MainView::onMouseDown() {
    const std::lock_guard lock(paneLock);
    pressedTab = -1;
    if (widgets.menuBar.open) {
        press = Press::OpenMenu;
    } else if (widgets.menuBar.rect.contains(cursorX(), cursorY())) {
        press = Press::MenuButton;
    } else {
        press = Press::View;
        pressView();
    }
}

void MainView::pressView() {
    if (searchVisible) widgets.searchPanel.onMouseDown();
    if (overBar()) {
        splitter.beginDrag();
        setSizeCursor();
    } else {
        callPanes([](IconView& pane) { pane.onMouseDown(); });
        if (searchVisible && widgets.searchPanel.hasFocus() &&
            (IconGridManager::activeGrid == &leftPane || IconGridManager::activeGrid == &rightPane)) {
            IconGridManager::activeGrid = nullptr;
        }
        pressedTab = widgets.tabStrip.hitTab(cursorX(), cursorY());
    }
}

// While the software pane is away the bar reaches over the tab pane's scroll bar; its thumb stays the thumb.
bool MainView::overBar() const {
    if (!splitter.hitBar(cursorX(), cursorY())) return false;
    if (!splitter.softwareHidden() || !onScrollBar(leftPane, cursorX(), cursorY())) return true;
    const std::optional<ScrollThumb> thumb = scrollThumb(leftPane);
    const float y = cursorY() - leftPane.viewRect.y;
    return !thumb || y < thumb->top || y > thumb->top + thumb->height;
}

void MainView::onMouseUp() {
    const Press taken = std::exchange(press, Press::None);
    {
        const std::lock_guard lock(paneLock);
        if (taken == Press::View) releaseView();
    }
    if (taken == Press::MenuButton || taken == Press::OpenMenu) clickMenu(taken);
    fileActions.run();
}

void MainView::releaseView() {
    if (searchVisible) widgets.searchPanel.onMouseUp();
    if (splitter.isDragging()) {
        endSplitterDrag();
        return;
    }
    callPanes([](IconView& pane) { pane.onMouseUp(); });
    const std::int32_t tab = widgets.tabStrip.hitTab(cursorX(), cursorY());
    if (tab >= 0 && tab == pressedTab) activateTab(tab);
}

void MainView::endSplitterDrag() {
    splitter.endDrag();
    snapToColumns();
    layOut();
    chosenRatio = splitter.ratio();
    services.settings.setSplitterRatioFor(role.monitor, chosenRatio);
}

// A row may close the window or open a dialog, so no lock is held while it runs.
void MainView::clickMenu(Press taken) {
    const bool onButton = widgets.menuBar.rect.contains(cursorX(), cursorY());
    std::int32_t row = -1;
    const bool onRow = widgets.menuBar.hitRow(cursorX(), cursorY(), row);
    if (taken == Press::MenuButton) {
        widgets.menuBar.open = onButton;
        return;
    }
    widgets.menuBar.open = false;
    widgets.menuBar.hotRow = -1;
    if (onRow) widgets.menuBar.items[static_cast<std::size_t>(row)].run();
}

void MainView::onMouseMove(bool leftButtonDown) {
    const std::lock_guard lock(paneLock);
    if (leftButtonDown && splitter.isDragging()) {
        splitter.dragTo(cursorX(), cursorY());
        layOut();
        setSizeCursor();
        return;
    }
    if (!leftButtonDown && splitter.isDragging()) endSplitterDrag();  // the release went to somebody else
    splitter.hovered = overBar();
    if (!leftButtonDown && splitter.hovered) setSizeCursor();
    const bool overRow = widgets.menuBar.onMouseMove(cursorX(), cursorY());
    if (overRow) return;
    widgets.tabStrip.hoverIndex = widgets.tabStrip.hitTab(cursorX(), cursorY());
    if (press == Press::MenuButton || press == Press::OpenMenu) return;
    if (searchVisible) widgets.searchPanel.onMouseMove(leftButtonDown);
    leftPane.onMouseMove(leftButtonDown);
    if (!splitter.softwareHidden()) rightPane.onMouseMove(leftButtonDown);
}

void MainView::onMouseWheel(float delta) {
    const std::lock_guard lock(paneLock);
    if (overPanel()) return;
    callPanes([delta](IconView& pane) { pane.onMouseWheel(delta); });
}

void MainView::onDoubleClick() {
    {
        const std::lock_guard lock(paneLock);
        // The second press of the pair: its release is a click like any other.
        if (widgets.menuBar.open) {
            press = Press::OpenMenu;
            return;
        }
        if (widgets.menuBar.rect.contains(cursorX(), cursorY())) {
            press = Press::MenuButton;
            return;
        }
        if (searchVisible) widgets.searchPanel.onDoubleClick();
        callPanes([](IconView& pane) { pane.onDoubleClick(); });
    }
    fileActions.run();
}

void MainView::onRightClick() {
    if (widgets.menuBar.open) return;
    if (searchVisible && widgets.searchPanel.hasFocus()) {
        widgets.searchPanel.onRightClick();
        return;
    }
    {
        const std::lock_guard lock(paneLock);
        callPanes([](IconView& pane) { pane.onRightClick(); });
    }
    fileActions.run();
}

void MainView::onKeyDown(int virtualKey) {
    {
        const std::lock_guard lock(paneLock);
        if (searchVisible) widgets.searchPanel.onKeyDown(virtualKey);
        callPanes([virtualKey](IconView& pane) { pane.onKeyDown(virtualKey); });
    }
    fileActions.run();
}

void MainView::onChar(wchar_t unit) {
    const std::lock_guard lock(paneLock);
    if (searchVisible) widgets.searchPanel.onChar(unit);
}

bool MainView::overPanel() const {
    std::int32_t row = -1;
    return widgets.menuBar.hitRow(cursorX(), cursorY(), row);
}

void MainView::setSizeCursor() const {
    const bool column = splitter.direction() == Splitter::Bar::Column;
    SetCursor(LoadCursorW(nullptr, column ? IDC_SIZEWE : IDC_SIZENS));
}

float MainView::cursorX() const { return render.input.cursorX; }

float MainView::cursorY() const { return render.input.cursorY; }

}  // namespace varnelo
