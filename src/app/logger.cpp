#include "app/logger.h"

#include <chrono>
#include <cwchar>
#include <thread>

#include "app/crash_guard.h"
#include "app/crash_report.h"
#include "platform/clock.h"
#include "platform/debug_output.h"
#include "platform/known_folders.h"

namespace varnelo {

namespace {

// "2024-01-31 23:59:59.999 [ERROR] ", the longest, and room for years of five digits.
using LinePrefix = std::array<wchar_t, 48>;

const wchar_t* levelText(LogLevel level) {
    switch (level) {
        case LogLevel::Info:
            return L"INFO";
        case LogLevel::Warn:
            return L"WARN";
        case LogLevel::Error:
            return L"ERROR";
        case LogLevel::Fatal:
            return L"FATAL";
    }
    return L"UNKNOWN";
}

LinePrefix linePrefix(LogLevel level) {
    const LocalTime now = localTime();
    LinePrefix prefix{};
    std::swprintf(prefix.data(), prefix.size(), L"%04d-%02d-%02d %02d:%02d:%02d.%03d [%ls] ", now.year,
                  now.month, now.day, now.hour, now.minute, now.second, now.millisecond, levelText(level));
    return prefix;
}

// A crashed program waits this often for a report that another thread is writing in the same second. It is
// longer than a second in all, so that a file left open by the crashed thread itself is passed by.
constexpr int kReportAttempts = 16;
constexpr std::chrono::milliseconds kReportPause{100};

}  // namespace

std::atomic<Logger*> crashLogger{nullptr};

Logger& Logger::instance() {
    static Logger logger;
    return logger;
}

void Logger::initialise(std::wstring_view programName) {
    const std::lock_guard guard(lock);
    if (initialised) return;
    name = programName;
    // Found out now: a crashed program should not have to ask the shell.
    reportFolder = crashReportFolder(knownFolder(KnownFolder::RoamingAppData), name);
    entries.clear();
    initialised = true;
    crashLogger = this;
    installCrashGuard();
}

void Logger::shutdown() {
    const std::lock_guard guard(lock);
    if (!initialised) return;
    initialised = false;
    crashLogger = nullptr;
}

void Logger::write(LogLevel level, const std::wstring& message) {
    std::unique_lock guard(lock, std::defer_lock);
    // The pre-crash callback logs too, perhaps on the very thread that crashed with the lock taken.
    if (!onCrashedThread()) guard.lock();

    std::wstring line = linePrefix(level).data() + message;
    const std::wstring mirrored = line + L"\n";
    const LogLines::Node* last = entries.append(std::move(line));
    debugOutput(mirrored.c_str());
    if (level != LogLevel::Fatal) return;
    if (reportFolder.empty()) {
        reportFolder = crashReportFolder(knownFolder(KnownFolder::RoamingAppData), name);
    }
    writeCrashReport(reportFolder.c_str(), message, entries, last);
}

void Logger::reportCrash(std::uint32_t exceptionCode) {
    std::array<wchar_t, 48> reason{};
    std::swprintf(reason.data(), reason.size(), L"Unhandled Exception: Code 0x%08X", exceptionCode);
    std::swprintf(crashLine.storage.data(), crashLine.storage.size(), L"%ls%ls",
                  linePrefix(LogLevel::Fatal).data(), reason.data());
    crashLine.text = crashLine.storage.data();
    entries.appendBorrowed(crashLine);

    for (int attempt = 0; attempt < kReportAttempts; ++attempt) {
        const auto result = writeCrashReport(reportFolder.c_str(), reason.data(), entries, &crashLine);
        if (result != ReportResult::InUse) return;
        std::this_thread::sleep_for(kReportPause);
    }
}

}  // namespace varnelo
