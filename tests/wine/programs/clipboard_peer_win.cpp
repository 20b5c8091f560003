// The other program that uses the clipboard:
//   clipboard_peer put TEXT              puts the text there in a block without a terminating zero
//   clipboard_peer hold OPENED RELEASE   opens the clipboard, sets the event OPENED, waits for the event
//   RELEASE
// Exit code 0 when that was done.

#include <windows.h>

#include <shellapi.h>

#include <cstring>
#include <string>

namespace {

bool put(const std::wstring& text) {
    const std::size_t bytes = text.size() * sizeof(wchar_t);
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes);
    std::memcpy(GlobalLock(memory), text.data(), bytes);
    GlobalUnlock(memory);
    if (!OpenClipboard(nullptr)) return false;
    const bool good = EmptyClipboard() && SetClipboardData(CF_UNICODETEXT, memory);
    CloseClipboard();
    return good;
}

bool hold(const wchar_t* openedName, const wchar_t* releaseName) {
    const HANDLE opened = OpenEventW(EVENT_MODIFY_STATE, FALSE, openedName);
    const HANDLE release = OpenEventW(SYNCHRONIZE, FALSE, releaseName);
    // With a window of its own: an open without one may be shared.
    const HWND window =
        CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    const bool good = opened && release && OpenClipboard(window);
    if (opened) SetEvent(opened);
    if (good) {
        WaitForSingleObject(release, 60000);
        CloseClipboard();
    }
    return good;
}

}  // namespace

int main() {
    int argc = 0;
    wchar_t** const argv = CommandLineToArgvW(GetCommandLineW(), &argc);
    const std::wstring verb = argc > 2 ? argv[1] : L"";
    if (verb == L"put") return put(argv[2]) ? 0 : 1;
    if (verb == L"hold" && argc == 4) return hold(argv[2], argv[3]) ? 0 : 1;
    return 2;
}
