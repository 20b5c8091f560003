#include <windows.h>

#include <signal.h>
#include <stdlib.h>

#include <atomic>
#include <exception>

#include "app/crash_guard.h"
#include "app/logger.h"

namespace varnelo {

namespace {

// Set aside for the callback and the report after a stack overflow; they run on the crashed thread. The
// callback has to: only the thread that made a window can destroy it. The report could go to a thread that
// waits for it, but it needs neither memory nor much stack, and so nothing that a crash may have broken.
constexpr ULONG kStackReserveBytes = 128 * 1024;

std::atomic<DWORD> crashedThread{0};

// What is still to be done. Touched by the crashed thread alone.
enum class Step { Callback, Report, End };
Step nextStep = Step::Callback;
DWORD crashCode = 0;

void runCallback(Logger& logger) {
    void (*const callback)() = logger.onCrash.load();
    if (!callback) return;
    try {
        callback();
    } catch (...) {
        // The report matters more than what went wrong while tidying up.
    }
}

// The first thread to crash comes in here and never leaves. A fault in one of the steps brings it here again,
// and the next step is taken. Other threads that crash meanwhile wait for the end of the process.
LONG WINAPI onUnhandledException(EXCEPTION_POINTERS* pointers) {
    DWORD owner = 0;
    if (crashedThread.compare_exchange_strong(owner, GetCurrentThreadId())) {
        if (pointers && pointers->ExceptionRecord) crashCode = pointers->ExceptionRecord->ExceptionCode;
    } else if (owner != GetCurrentThreadId()) {
        Sleep(INFINITE);
    }

    Logger* logger = crashLogger.load();
    if (logger && nextStep == Step::Callback) {
        nextStep = Step::Report;
        runCallback(*logger);
    }
    if (logger && nextStep == Step::Report) {
        nextStep = Step::End;
        logger->reportCrash(crashCode);
    }
    TerminateProcess(GetCurrentProcess(), 1);
    return EXCEPTION_EXECUTE_HANDLER;
}

[[noreturn]] void raise(DWORD code) {
    RaiseException(code, EXCEPTION_NONCONTINUABLE, 0, nullptr);
    TerminateProcess(GetCurrentProcess(), 1);
    for (;;) Sleep(INFINITE);
}

[[noreturn]] void onTerminate() { raise(kTerminateCode); }

void onAbort(int) {
    // The C library has gone back to its own way of aborting for the next one, which would end the process
    // before the report of this one is written.
    signal(SIGABRT, onAbort);
    raise(kAbortCode);
}

// The guarantee moves no guard page that is there already. Where a stack is in use down to its end from the
// start, as Wine makes them, the only guard page is the last one, and the overflow would be noticed too late.
// A stack that grows page by page has nothing in use at this depth, and is left alone.
void moveGuardPage() {
    ULONG_PTR low = 0;
    ULONG_PTR high = 0;
    GetCurrentThreadStackLimits(&low, &high);
    void* const place = reinterpret_cast<void*>(low + kStackReserveBytes);
    MEMORY_BASIC_INFORMATION page{};
    if (!VirtualQuery(place, &page, sizeof page)) return;
    if (page.State != MEM_COMMIT || page.Protect != PAGE_READWRITE) return;
    DWORD before = 0;
    VirtualProtect(place, 1, PAGE_READWRITE | PAGE_GUARD, &before);
}

}  // namespace

void installCrashGuard() {
    SetUnhandledExceptionFilter(onUnhandledException);
    std::set_terminate(onTerminate);
    signal(SIGABRT, onAbort);
    // abort() would show a message box first.
    _set_error_mode(_OUT_TO_STDERR);
    installThreadCrashGuard();
}

void installThreadCrashGuard() {
    ULONG size = kStackReserveBytes;
    if (SetThreadStackGuarantee(&size)) moveGuardPage();
}

bool onCrashedThread() { return crashedThread.load() == GetCurrentThreadId(); }

}  // namespace varnelo
