// Crashes in the way and on the thread that its command line names:  crash_probe PROGRAM-NAME KIND THREAD
// The test beside it reads the report that is left.
#include <windows.h>

#include <cstdlib>
#include <cstring>
#include <map>
#include <stdexcept>
#include <string>
#include <thread>

#include "app/crash_guard.h"
#include "app/crash_report.h"
#include "app/logger.h"
#include "platform/known_folders.h"
#include "platform/utf.h"
#include "support/gate.h"

namespace varnelo {
namespace {

std::wstring reportPattern;

void accessViolation() {
    volatile int* const nowhere = nullptr;
    *nowhere = 1;
}

// Goes deeper than any stack; the compiler must not know.
volatile int endlessDepth = 1 << 30;

__attribute__((noinline)) int overflow(int depth, volatile char* caller) {
    volatile char block[4096];
    block[0] = caller[0];
    if (depth == endlessDepth) return 0;
    return overflow(depth + 1, block) + block[0];
}

void overflowTheStack() {
    volatile char start = 1;
    overflow(0, &start);
}

void throwError() { throw std::runtime_error("nobody catches this"); }

void throwInNoexcept() noexcept { throwError(); }

// Faults within Logger::write, while it holds its lock.
void crashInsideTheLogger() {
    std::wstring broken = L"x";
    const std::size_t length = 100;
    void* const nowhere = nullptr;
    std::memcpy(reinterpret_cast<char*>(&broken), &nowhere, sizeof nowhere);
    std::memcpy(reinterpret_cast<char*>(&broken) + sizeof nowhere, &length, sizeof length);
    logInfo(broken);
}

void twoThreadsAtOnce() {
    test::Gate both(2);
    std::thread other([&] {
        installThreadCrashGuard();
        both.arriveAndWait();
        std::abort();
    });
    both.arriveAndWait();
    accessViolation();
    other.join();
}

void fatalLineAndThenACrash() {
    logFatal(L"first report");
    accessViolation();
}

void crash(const std::string& kind) {
    using Crash = void (*)();
    const std::map<std::string, Crash> kinds = {
        {"access_violation", accessViolation},
        {"exception", throwError},
        {"noexcept", throwInNoexcept},
        {"abort", [] { std::abort(); }},
        {"stack_overflow", overflowTheStack},
        {"inside_logger", crashInsideTheLogger},
        {"callback_faults", accessViolation},
        {"callback_throws", accessViolation},
        {"two_threads", twoThreadsAtOnce},
        {"after_fatal", fatalLineAndThenACrash},
        {"before_initialisation", accessViolation},
        {"after_shutdown", accessViolation},
    };
    kinds.at(kind)();
}

// What the program's own callback does: it logs, and it comes before the report.
void recordingCallback() {
    WIN32_FIND_DATAW found;
    const HANDLE search = FindFirstFileW(reportPattern.c_str(), &found);
    logInfo(search == INVALID_HANDLE_VALUE ? L"callback: no report yet" : L"callback: there is a report");
    if (search != INVALID_HANDLE_VALUE) FindClose(search);
}

void run(const std::wstring& name, const std::string& kind, const std::string& threadKind) {
    reportPattern = crashReportFolder(knownFolder(KnownFolder::RoamingAppData), name) + L"\\crash_*.log";
    if (kind == "before_initialisation") {
        installCrashGuard();
    } else {
        Logger::instance().initialise(name);
    }
    Logger::instance().onCrash = recordingCallback;
    if (kind == "callback_faults") Logger::instance().onCrash = accessViolation;
    if (kind == "callback_throws") Logger::instance().onCrash = throwError;
    logInfo(L"first line");
    logWarn(L"second line \x65E5\x672C");
    if (kind == "after_shutdown") Logger::instance().shutdown();

    if (threadKind == "main") {
        crash(kind);
    } else {
        std::thread worker([&] {
            installThreadCrashGuard();
            crash(kind);
        });
        worker.join();
    }
}

}  // namespace
}  // namespace varnelo

int main(int count, char** arguments) {
    if (count != 4) return 2;
    varnelo::run(varnelo::wideFromUtf8(arguments[1]), arguments[2], arguments[3]);
    return 3;  // it should have crashed
}
