#include "index/elevated_run_win.h"

#include <windows.h>

#include <shellapi.h>

#include <algorithm>

#include "platform/handles_win.h"

namespace varnelo {
namespace {

constexpr DWORD kStepMilliseconds = 50;

struct SidTraits {
    using Raw = PSID;
    static Raw invalid() { return nullptr; }
    static void close(Raw sid) { FreeSid(sid); }
};
using Sid = UniqueHandle<SidTraits>;

std::wstring ownPath() {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD size = static_cast<DWORD>(path.size());
        const DWORD length = GetModuleFileNameW(nullptr, path.data(), size);
        if (length < size) {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2);
    }
}

// By the time that passed, so that a late wake-up does not lengthen the wait.
void waitForEnd(HANDLE process, std::uint32_t timeoutMs, const std::function<bool()>& stopRequested) {
    const ULONGLONG begin = GetTickCount64();
    for (;;) {
        const ULONGLONG passed = GetTickCount64() - begin;
        if (passed >= timeoutMs || (stopRequested && stopRequested())) return;
        const DWORD step = static_cast<DWORD>(std::min<ULONGLONG>(timeoutMs - passed, kStepMilliseconds));
        if (WaitForSingleObject(process, step) != WAIT_TIMEOUT) return;
    }
}

}  // namespace

bool WindowsElevatedRun::isUserAdmin() {
    SID_IDENTIFIER_AUTHORITY authority = {SECURITY_NT_AUTHORITY};
    Sid administrators;
    if (!AllocateAndInitializeSid(&authority, 2, SECURITY_BUILTIN_DOMAIN_RID, DOMAIN_ALIAS_RID_ADMINS, 0, 0,
                                  0, 0, 0, 0, administrators.put()))
        return false;
    BOOL member = FALSE;
    return CheckTokenMembership(nullptr, administrators.get(), &member) && member;
}

bool WindowsElevatedRun::runElevated(const std::wstring& arguments, std::uint32_t timeoutMs,
                                     const std::function<bool()>& stopRequested) {
    const std::wstring program = ownPath();
    SHELLEXECUTEINFOW info{};
    info.cbSize = sizeof info;
    info.fMask = SEE_MASK_NOCLOSEPROCESS | SEE_MASK_NOASYNC;
    info.lpVerb = L"runas";
    info.lpFile = program.c_str();
    info.lpParameters = arguments.c_str();
    info.nShow = SW_HIDE;
    if (!ShellExecuteExW(&info)) return false;
    const ProcessHandle process(info.hProcess);
    if (process) waitForEnd(process.get(), timeoutMs, stopRequested);
    return true;
}

}  // namespace varnelo
