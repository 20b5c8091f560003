#include "views/menu_messages_win.h"

#include <commctrl.h>

namespace varnelo {
namespace {

// Items that draw themselves belong to menus when no control sent the message.
bool isOfMenu(UINT message, WPARAM wParam) {
    switch (message) {
        case WM_INITMENUPOPUP:
        case WM_MENUCHAR:
            return true;
        case WM_DRAWITEM:
        case WM_MEASUREITEM:
            return wParam == 0;
        default:
            return false;
    }
}

}  // namespace

MenuMessages::MenuMessages(HWND menuWindow, IContextMenu& contextMenu) : window(menuWindow) {
    if (FAILED(contextMenu.QueryInterface(IID_IContextMenu3, third.putVoid())) &&
        FAILED(contextMenu.QueryInterface(IID_IContextMenu2, second.putVoid()))) {
        window = nullptr;
    }
    if (window)
        SetWindowSubclass(window, procedure, reinterpret_cast<UINT_PTR>(this),
                          reinterpret_cast<DWORD_PTR>(this));
}

MenuMessages::~MenuMessages() {
    if (window) RemoveWindowSubclass(window, procedure, reinterpret_cast<UINT_PTR>(this));
}

bool MenuMessages::handle(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
    if (!isOfMenu(message, wParam)) return false;
    if (third) return SUCCEEDED(third->HandleMenuMsg2(message, wParam, lParam, &result));
    // The older interface has no answer to give, and WM_MENUCHAR needs one.
    if (message == WM_MENUCHAR || FAILED(second->HandleMenuMsg(message, wParam, lParam))) return false;
    result = message == WM_INITMENUPOPUP ? 0 : TRUE;
    return true;
}

LRESULT CALLBACK MenuMessages::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                         DWORD_PTR self) noexcept {
    LRESULT result = 0;
    if (reinterpret_cast<MenuMessages*>(self)->handle(message, wParam, lParam, result)) return result;
    return DefSubclassProc(window, message, wParam, lParam);
}

}  // namespace varnelo
