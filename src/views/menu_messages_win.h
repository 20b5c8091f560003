#pragma once

#include <windows.h>

#include <shlobj.h>

#include "platform/com_ref.h"

namespace varnelo {

// While alive, hands the messages of an open menu, which go to its window, to the context menu that filled
// it: submenus that are built when they open, and items that draw themselves, depend on it. Lives on the
// window's thread; without a window, or for a menu that asks for no messages, it does nothing.
class MenuMessages {
public:
    MenuMessages(HWND window, IContextMenu& contextMenu);
    ~MenuMessages();
    MenuMessages(const MenuMessages&) = delete;
    MenuMessages& operator=(const MenuMessages&) = delete;

private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                      DWORD_PTR self) noexcept;
    bool handle(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);

    HWND window;
    ComRef<IContextMenu3> third;  // at most one of the two
    ComRef<IContextMenu2> second;
};

}  // namespace varnelo
