#include "views/shell_calls_win.h"

namespace varnelo {
namespace {

constexpr INT_PTR kLastErrorOfShellExecute = 32;

}  // namespace

bool WindowsShellCalls::open(HWND window, const wchar_t* file, const wchar_t* parameters,
                             const wchar_t* folder, int show) {
    const HINSTANCE result = ShellExecuteW(window, L"open", file, parameters, folder, show);
    return reinterpret_cast<INT_PTR>(result) > kLastErrorOfShellExecute;
}

bool WindowsShellCalls::execute(SHELLEXECUTEINFOW& info) { return ShellExecuteExW(&info) != FALSE; }

int WindowsShellCalls::fileOperation(SHFILEOPSTRUCTW& operation) { return SHFileOperationW(&operation); }

int WindowsShellCalls::trackMenu(HMENU menu, UINT flags, POINT place, HWND window) {
    return TrackPopupMenu(menu, flags, place.x, place.y, 0, window, nullptr);
}

}  // namespace varnelo
