#include "views/shell_list_win.h"

namespace varnelo {

namespace {

HWND listIn(HWND top) {
    const HWND view = FindWindowExW(top, nullptr, L"SHELLDLL_DefView", nullptr);
    return view ? FindWindowExW(view, nullptr, L"SysListView32", nullptr) : nullptr;
}

}  // namespace

HWND findShellList() {
    if (const HWND manager = FindWindowW(L"Progman", nullptr)) {
        if (const HWND list = listIn(manager)) return list;
    }
    HWND worker = nullptr;
    while ((worker = FindWindowExW(nullptr, worker, L"WorkerW", nullptr)) != nullptr) {
        if (const HWND list = listIn(worker)) return list;
    }
    return nullptr;
}

}  // namespace varnelo
