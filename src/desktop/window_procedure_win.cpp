#include "desktop/window_procedure_win.h"

#include <shlobj.h>
#include <windowsx.h>

#include "desktop/window_state_win.h"
#include "platform/item_id_list_win.h"
#include "views/render_win.h"

namespace varnelo {

namespace {

WindowState* g_state = nullptr;

// The view of a window; null for a window that no input is routed to yet.
Render* viewOf(HWND window) {
    if (window != nullptr && window == g_state->routedMainWindow) return g_state->routedMainRender;
    return nullptr;
}

// A handled message costs one frame.
LRESULT redraw() {
    g_state->redrawRequested = true;
    return 0;
}

LRESULT onSize(HWND window, WPARAM kind, UINT width, UINT height) {
    if (kind == SIZE_MINIMIZED || window != g_state->mainWindow) return 0;
    if (width == g_state->width && height == g_state->height) return 0;
    g_state->resizePending = true;
    g_state->width = width;
    g_state->height = height;
    return redraw();
}

// Any process can send this with any values. So the rectangle is copied by a call that fails where an access
// would fault, and the resolution is asked of the system rather than taken from the message.
LRESULT onDpiChanged(HWND window, LPARAM suggestedArea) {
    RECT area{};
    if (ReadProcessMemory(GetCurrentProcess(), reinterpret_cast<const void*>(suggestedArea), &area,
                          sizeof area, nullptr)) {
        SetWindowPos(window, nullptr, area.left, area.top, area.right - area.left, area.bottom - area.top,
                     SWP_NOZORDER | SWP_NOACTIVATE);
    }
    if (Render* view = viewOf(window)) view->onDpiChanged(GetDpiForWindow(window));
    return redraw();
}

LRESULT onEndSession(bool ending) {
    if (ending && g_state->endSession) g_state->endSession();
    return 0;
}

// The right edge cannot be dragged: there the content reaches to the border, and the scroll bar with it.
LRESULT onHitTest(HWND window, WPARAM wParam, LPARAM lParam) {
    const LRESULT hit = DefWindowProcW(window, WM_NCHITTEST, wParam, lParam);
    return hit == HTRIGHT || hit == HTTOPRIGHT || hit == HTBOTTOMRIGHT ? HTCLIENT : hit;
}

// Takes the cursor from a mouse message, which knows it better than a look at the cursor now.
void takeCursor(Render& view, LPARAM position) {
    view.surface.refreshInput();
    view.surface.input.cursorX = static_cast<float>(GET_X_LPARAM(position));
    view.surface.input.cursorY = static_cast<float>(GET_Y_LPARAM(position));
}

LRESULT onMouse(HWND window, UINT message, WPARAM wParam, LPARAM position) {
    Render* view = viewOf(window);
    if (!view) return redraw();
    takeCursor(*view, position);
    switch (message) {
        case WM_MOUSEMOVE:
            view->mainView.onMouseMove((wParam & MK_LBUTTON) != 0);
            break;
        case WM_LBUTTONDOWN:
            SetCapture(window);
            view->mainView.onMouseDown();
            break;
        case WM_LBUTTONUP:
            ReleaseCapture();
            view->mainView.onMouseUp();
            break;
        case WM_LBUTTONDBLCLK:
            view->mainView.onDoubleClick();
            break;
        default:
            break;
    }
    return redraw();
}

LRESULT onMouseWheel(HWND window, short delta, LPARAM screenPosition) {
    if (Render* view = viewOf(window)) {
        POINT client{GET_X_LPARAM(screenPosition), GET_Y_LPARAM(screenPosition)};
        ScreenToClient(window, &client);
        takeCursor(*view, MAKELPARAM(client.x, client.y));
        view->mainView.onMouseWheel(static_cast<float>(delta));
    }
    return redraw();
}

LRESULT onContextMenu(HWND window) {
    if (Render* view = viewOf(window)) {
        view->surface.refreshInput();
        view->mainView.onRightClick();
    }
    return redraw();
}

LRESULT onKey(HWND window, UINT message, WPARAM wParam) {
    if (Render* view = viewOf(window)) {
        view->surface.refreshInput();
        if (message == WM_CHAR) {
            view->mainView.onChar(static_cast<wchar_t>(wParam));
        } else {
            view->mainView.onKeyDown(static_cast<int>(wParam));
        }
    }
    return redraw();
}

LRESULT onShellChange(WPARAM wParam, LPARAM lParam) {
    if (!g_state->routedMainRender) return redraw();
    PIDLIST_ABSOLUTE* lists = nullptr;
    LONG event = 0;
    const HANDLE lock = SHChangeNotification_Lock(reinterpret_cast<HANDLE>(wParam),
                                                  static_cast<DWORD>(lParam), &lists, &event);
    if (!lock) return 0;
    const ItemIdList first = itemIdListFrom(lists ? lists[0] : nullptr);
    const ItemIdList second = itemIdListFrom(lists ? lists[1] : nullptr);
    SHChangeNotification_Unlock(lock);
    g_state->routedMainRender->mainView.onShellChange(static_cast<std::uint32_t>(event), first, second);
    return redraw();
}

LRESULT dispatch(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case kMessageShellChange:
            return onShellChange(wParam, lParam);
        case kMessageRedraw:
            return redraw();
        case WM_DESTROY:
            if (window == g_state->mainWindow) PostQuitMessage(0);
            return 0;
        case WM_SIZE:
            return onSize(window, wParam, LOWORD(lParam), HIWORD(lParam));
        case WM_DPICHANGED:
            return onDpiChanged(window, lParam);
        case WM_PAINT:
            ValidateRect(window, nullptr);
            return redraw();
        case WM_QUERYENDSESSION:
            return 1;
        case WM_ERASEBKGND:
            return 1;
        case WM_ENDSESSION:
            return onEndSession(wParam != 0);
        case WM_SETTINGCHANGE:
            return 0;
        case WM_MOUSEACTIVATE:
            return 0;
        case WM_CONTEXTMENU:
            return onContextMenu(window);
        case WM_DISPLAYCHANGE:
            g_state->monitors.refresh();
            return 0;
        case WM_NCHITTEST:
            return onHitTest(window, wParam, lParam);
        case WM_SYSCOMMAND:
            return 0;  // the title bar's buttons and the system menu do nothing
        case WM_MOUSEMOVE:
        case WM_LBUTTONDOWN:
        case WM_LBUTTONUP:
        case WM_LBUTTONDBLCLK:
            return onMouse(window, message, wParam, lParam);
        case WM_CHAR:
        case kMessageKeyDown:
            return onKey(window, message, wParam);
        case kMessageKeyUp:
            return 0;
        case WM_MOUSEWHEEL:
            return onMouseWheel(window, static_cast<short>(HIWORD(wParam)), lParam);
        default:
            return DefWindowProcW(window, message, wParam, lParam);
    }
}

}  // namespace

void attachWindowProcedure(WindowState* state) { g_state = state; }

LRESULT CALLBACK WndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    if (!g_state) return DefWindowProcW(window, message, wParam, lParam);
    return dispatch(window, message, wParam, lParam);
}

}  // namespace varnelo
