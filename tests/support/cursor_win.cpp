#include "support/cursor_win.h"

#include <windows.h>

namespace varnelo {
namespace {

// Longer than Wine believes its own last place before it asks the display.
constexpr ULONGLONG kRest = 250;
constexpr ULONGLONG kPatience = 10'000;

void handOutMessages() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
}

}  // namespace

bool restCursorAt(int x, int y) {
    const ULONGLONG start = GetTickCount64();
    ULONGLONG restsSince = 0;
    while (GetTickCount64() - start < kPatience) {
        handOutMessages();
        POINT place{};
        if (!GetCursorPos(&place) || place.x != x || place.y != y) {
            SetCursorPos(x, y);
            restsSince = 0;
        } else if (restsSince == 0) {
            restsSince = GetTickCount64();
        } else if (GetTickCount64() - restsSince > kRest) {
            return true;
        }
        Sleep(10);
    }
    return false;
}

}  // namespace varnelo
