#pragma once

#include <windows.h>

#include <shellapi.h>

namespace varnelo {

// The calls by which files are opened, changed and asked about: each acts for good, or waits for the user.
// Tests write down what they are given.
class ShellCalls {
public:
    virtual ~ShellCalls() = default;

    // ShellExecuteW. True when it worked. Texts may be null but for `file`.
    virtual bool open(HWND window, const wchar_t* file, const wchar_t* parameters, const wchar_t* folder,
                      int show) = 0;
    // ShellExecuteExW.
    virtual bool execute(SHELLEXECUTEINFOW& info) = 0;
    // SHFileOperationW. Zero when nothing went wrong; `fAnyOperationsAborted` may be set then too.
    virtual int fileOperation(SHFILEOPSTRUCTW& operation) = 0;
    // TrackPopupMenu with TPM_RETURNCMD: the id of the chosen item, 0 for none.
    virtual int trackMenu(HMENU menu, UINT flags, POINT place, HWND window) = 0;
};

// The shell itself.
class WindowsShellCalls final : public ShellCalls {
public:
    bool open(HWND window, const wchar_t* file, const wchar_t* parameters, const wchar_t* folder,
              int show) override;
    bool execute(SHELLEXECUTEINFOW& info) override;
    int fileOperation(SHFILEOPSTRUCTW& operation) override;
    int trackMenu(HMENU menu, UINT flags, POINT place, HWND window) override;
};

}  // namespace varnelo
