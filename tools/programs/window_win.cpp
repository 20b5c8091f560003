// What tests do to the first window of a class:
//   window CLASS client        prints "x y width height" of its client area in screen pixels
//   window CLASS close         posts WM_CLOSE to it, as the program's own EXIT entry does
//   window CLASS gone          waits until no window of the class is left
//   window CLASS sizes W H N   restores it and gives it N sizes in quick succession, the last one W by H
//   window CLASS maximise      maximises it
//
// Exit code 3: there is no such window; 4: it did not do that.
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
    if (!GetClientRect(window, &area) || !ClientToScreen(window, &origin)) return 4;
    std::printf("%ld %ld %ld %ld\n", origin.x, origin.y, area.right, area.bottom);
    return 0;
}

int setSizes(HWND window, int width, int height, int count) {
    ShowWindow(window, SW_RESTORE);
    for (int left = count - 1; left >= 0; --left) {
        const int smaller = left * 7 % 200;
        SetWindowPos(window, nullptr, 0, 0, width - smaller, height - smaller, SWP_NOZORDER | SWP_NOACTIVATE);
    }
    return 0;
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    const wchar_t* verb = count > 2 ? arguments[2] : L"";
    const bool sizes = std::wcscmp(verb, L"sizes") == 0;
    if (count != (sizes ? 6 : 3)) {
        std::fputs("usage: window CLASS client|close|gone|maximise|sizes W H N\n", stderr);
        return 2;
    }
    const HWND window = FindWindowW(arguments[1], nullptr);
    if (std::wcscmp(verb, L"gone") == 0) {
        while (FindWindowW(arguments[1], nullptr)) Sleep(20);
        return 0;
    }
    if (!window) return 3;
    if (std::wcscmp(verb, L"client") == 0) return printClientArea(window);
    if (std::wcscmp(verb, L"close") == 0) return PostMessageW(window, WM_CLOSE, 0, 0) ? 0 : 4;
    if (std::wcscmp(verb, L"maximise") == 0) return ShowWindow(window, SW_MAXIMIZE), 0;
    const auto number = [arguments](int index) {
        return static_cast<int>(std::wcstol(arguments[index], nullptr, 10));
    };
    if (sizes) return setSizes(window, number(3), number(4), number(5));
    return 2;
}
