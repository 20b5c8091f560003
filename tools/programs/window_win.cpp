// window CLASS client   prints "x y width height" of the client area of the first window of the class, in
// screen pixels window CLASS close    posts WM_CLOSE to it, as the program's own EXIT entry does window CLASS
// gone     waits until no window of the class is left
//
// The system menu and the close button of the program's window do nothing, so a close needs the message
// itself.
#include <windows.h>

#include <cstdio>
#include <cwchar>

namespace {

int printClientArea(HWND window) {
    RECT area{};
    POINT origin{};
    if (!GetClientRect(window, &area) || !ClientToScreen(window, &origin)) return 1;
    std::printf("%ld %ld %ld %ld\n", origin.x, origin.y, area.right, area.bottom);
    return 0;
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    if (count != 3) {
        std::fputs("usage: window CLASS client|close|gone\n", stderr);
        return 2;
    }
    const wchar_t* verb = arguments[2];
    const HWND window = FindWindowW(arguments[1], nullptr);
    if (std::wcscmp(verb, L"gone") == 0) {
        while (FindWindowW(arguments[1], nullptr)) Sleep(20);
        return 0;
    }
    if (!window) return 1;
    if (std::wcscmp(verb, L"client") == 0) return printClientArea(window);
    if (std::wcscmp(verb, L"close") == 0) return PostMessageW(window, WM_CLOSE, 0, 0) ? 0 : 1;
    return 2;
}
