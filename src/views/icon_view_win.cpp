#include "views/icon_view_win.h"

#include <new>

#include "app/settings.h"
#include "views/grid_layout.h"
#include "views/render_surface_win.h"
#include "views/shell_list_win.h"
#include "views/window_messages_win.h"

namespace varnelo {

namespace {

constexpr int kDefaultIconSize = 48;

}  // namespace

IconView::IconView(GridServices gridServices, RenderSurface& surface, BaseView& base, TabKind kind)
    : IconGridManager(gridServices, kind),
      render(surface),
      baseView(base),
      glass(surface, base),
      pictures(surface),
      quads(surface) {}

IconView::~IconView() { stopIconWorker(); }

void IconView::init(ViewRect& rect, bool snapToColumns, int anchor, bool isSelectable) {
    selectable = isSelectable;
    loader.init(render.device);
    const int listSize = loader.iconSize();
    baseIconSize = static_cast<float>(listSize > 0 ? listSize : kDefaultIconSize);
    iconSize = services.settings.iconScaleForLayout() * baseIconSize;
    setViewRect(rect, snapToColumns, anchor);
    jumpToTargets(cells);
    glass.init();
    pictures.init();
    quads.init();
    jumpToTargets(cells);
}

void IconView::loadIcon(int index) {
    if (index < 0 || index >= static_cast<int>(cells.size())) return;
    ItemIdList item = cells[static_cast<std::size_t>(index)].entry.pidl;
    if (item.empty()) return;
    const IconLoadQueue::Load load = beginIconLoad(index);
    iconWorker.enqueue(L"", [this, load, item = std::move(item), window = render.hWnd] {
        std::shared_ptr<IconTexture> texture;
        try {
            if (!stopping) texture = loader.load(item);
        } catch (const std::bad_alloc&) {
            // As any failure on the way: the cell has no icon.
        }
        finishIconLoad(load, std::move(texture));
        if (window) PostMessageW(window, kMessageRedraw, 0, 0);
    });
}

bool IconView::forwardShellMenu() {
    const HWND list = findShellList();
    if (!list) return false;
    POINT cursor{};
    GetCursorPos(&cursor);
    SetForegroundWindow(list);
    SendMessageW(list, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(list), MAKELPARAM(cursor.x, cursor.y));
    return true;
}

void IconView::releaseResources() {
    lassoOutlineBrush.reset();
    lassoFillBrush.reset();
}

void IconView::releaseDevice() {
    for (IconCell& cell : cells) cell.texture.reset();
    dropOpenLoads();
    glass.release();
    pictures.release();
    quads.release();
    releaseResources();
    loader.setDevice(nullptr);
}

void IconView::restoreDevice() {
    loader.setDevice(render.device);
    glass.init();
    pictures.init();
    quads.init();
    reloadAllIcons();
}

void IconView::destroy() {
    folderIdList = {};
    releaseDevice();
    loader.release();
}

void IconView::stopIconWorker() {
    stopping = true;
    IconGridManager::stopIconWorker();
}

}  // namespace varnelo
