#include "views/clipboard_text_win.h"

#include "platform/global_memory_win.h"

namespace varnelo {

namespace {

constexpr int kOpenAttempts = 5;
constexpr DWORD kOpenPauseMilliseconds = 4;

class OpenedClipboard {
public:
    explicit OpenedClipboard(HWND owner) {
        for (int attempt = 0; attempt < kOpenAttempts && !opened; ++attempt) {
            if (attempt > 0) Sleep(kOpenPauseMilliseconds);
            opened = OpenClipboard(owner) != FALSE;
        }
    }
    OpenedClipboard(const OpenedClipboard&) = delete;
    OpenedClipboard& operator=(const OpenedClipboard&) = delete;
    ~OpenedClipboard() {
        if (opened) CloseClipboard();
    }
    explicit operator bool() const { return opened; }

private:
    bool opened = false;
};

// The text with a terminating zero in a movable block.
GlobalMemory blockOf(std::wstring_view text) {
    GlobalMemory memory(GlobalAlloc(GMEM_MOVEABLE, (text.size() + 1) * sizeof(wchar_t)));
    if (!memory) return memory;
    auto* const units = static_cast<wchar_t*>(GlobalLock(memory.get()));
    if (!units) return {};
    fillClipboardBlock(units, text);
    GlobalUnlock(memory.get());
    return memory;
}

}  // namespace

bool SystemClipboardText::hasText() const { return IsClipboardFormatAvailable(CF_UNICODETEXT) != FALSE; }

std::optional<std::wstring> SystemClipboardText::read() {
    const OpenedClipboard clipboard(owner);
    if (!clipboard) return std::nullopt;
    const HANDLE memory = GetClipboardData(CF_UNICODETEXT);  // stays the clipboard's
    if (!memory) return std::nullopt;
    const auto* const units = static_cast<const wchar_t*>(GlobalLock(memory));
    if (!units) return std::nullopt;
    std::wstring text(clipboardTextOf(units, GlobalSize(memory) / sizeof(wchar_t)));
    GlobalUnlock(memory);
    return text;
}

bool SystemClipboardText::write(std::wstring_view text) {
    GlobalMemory memory = blockOf(text);
    if (!memory) return false;
    const OpenedClipboard clipboard(owner);
    if (!clipboard || !EmptyClipboard() || !SetClipboardData(CF_UNICODETEXT, memory.get())) return false;
    (void)memory.release();  // the system's from now on
    return true;
}

}  // namespace varnelo
