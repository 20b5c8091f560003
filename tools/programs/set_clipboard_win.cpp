// set_clipboard TEXT: puts a text on the clipboard, as another program does. Exit code 3: it could not.
#include <windows.h>

#include <cstring>
#include <cwchar>

int wmain(int count, wchar_t** arguments) {
    if (count != 2) return 2;
    const std::size_t bytes = (std::wcslen(arguments[1]) + 1) * sizeof(wchar_t);
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes);
    if (!memory) return 3;
    std::memcpy(GlobalLock(memory), arguments[1], bytes);
    GlobalUnlock(memory);
    const HWND owner =
        CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    if (!OpenClipboard(owner)) return 3;
    EmptyClipboard();
    const bool set = SetClipboardData(CF_UNICODETEXT, memory) != nullptr;
    CloseClipboard();
    return set ? 0 : 3;
}
