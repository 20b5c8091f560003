#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "app/log_lines.h"

namespace varnelo {

enum class LogLevel : std::uint32_t { Info = 0, Warn = 1, Error = 2, Fatal = 3 };

// Collects every log line of the session in memory and mirrors it to the debug output. A file is written only
// as a crash report: at a line of level Fatal, after which the program goes on, and by the crash guard.
// Any thread may write.
class Logger {
public:
    // The logger of the process.
    static Logger& instance();

    Logger() = default;
    Logger(const Logger&) = delete;
    Logger& operator=(const Logger&) = delete;
    ~Logger() { shutdown(); }

    // Forgets the lines so far, makes this the logger of crash reports and installs the crash guard
    // (crash_guard.h), the calling thread included. `programName` names the folder of the reports. Only the
    // first call does anything; after shutdown() it works again.
    void initialise(std::wstring_view programName);
    // Crashes leave no report from now on. Lines stay. Harmless when repeated.
    void shutdown();

    // A level beyond the enumeration is written as "UNKNOWN".
    void write(LogLevel level, const std::wstring& message);

    // Called on the crashing thread before the report is written: gives the user's desktop back. It may log,
    // and a fault in it does not keep the report from being written.
    std::atomic<void (*)()> onCrash{nullptr};

    // All but the first `skipped` lines.
    std::vector<std::wstring> lines(std::size_t skipped = 0) const { return entries.copy(skipped); }
    std::size_t lineCount() const { return entries.count(); }

    // For the crash guard: adds the line of an unhandled exception and writes the report. Takes no lock and,
    // in the Windows build, no memory. Once in the life of a logger that is initialised.
    void reportCrash(std::uint32_t exceptionCode);

private:
    struct CrashLine : LogLines::Node {
        std::array<wchar_t, 96> storage{};
    };

    std::mutex lock;
    std::wstring name;          // guarded by lock
    bool initialised = false;   // guarded by lock
    std::wstring reportFolder;  // guarded by lock; constant while crashLogger names this logger
    CrashLine crashLine;        // outlives `entries`, which borrow it
    LogLines entries;           // appended under lock, except by a crashed thread; read freely
};

// The logger that the crash guard reports to; null before initialisation and after shutdown.
extern std::atomic<Logger*> crashLogger;

inline void logInfo(const std::wstring& message) { Logger::instance().write(LogLevel::Info, message); }
inline void logWarn(const std::wstring& message) { Logger::instance().write(LogLevel::Warn, message); }
inline void logError(const std::wstring& message) { Logger::instance().write(LogLevel::Error, message); }
inline void logFatal(const std::wstring& message) { Logger::instance().write(LogLevel::Fatal, message); }

}  // namespace varnelo
