#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "app/crash_report.h"
#include "platform/binary_stream.h"
#include "platform/file_bytes.h"
#include "platform/handles_win.h"
#include "platform/known_folders.h"
#include "platform/utf.h"

namespace varnelo {
namespace {

namespace fs = std::filesystem;

constexpr DWORD kPatienceMs = 60'000;

fs::path folderOfThisProgram() {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return fs::path(path).parent_path();
}

// Runs crash_probe.exe and looks at what it leaves.
class CrashReport : public testing::Test {
protected:
    CrashReport() { fs::remove_all(folder); }
    ~CrashReport() override { fs::remove_all(folder); }

    void whenItCrashes(const std::string& kind, const std::string& thread) {
        const fs::path program = folderOfThisProgram() / L"crash_probe.exe";
        std::wstring commandLine = L"\"" + program.wstring() + L"\" \"" + name + L"\" " + wideFromUtf8(kind) +
                                   L" " + wideFromUtf8(thread);
        STARTUPINFOW startup{};
        startup.cb = sizeof startup;
        PROCESS_INFORMATION started{};
        ASSERT_TRUE(CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr,
                                   nullptr, &startup, &started))
            << "error " << GetLastError();
        const ProcessHandle process(started.hProcess);
        const ThreadHandle mainThread(started.hThread);
        if (WaitForSingleObject(process.get(), kPatienceMs) != WAIT_OBJECT_0) {
            TerminateProcess(process.get(), 99);
            FAIL() << "it does not end";
        }
        GetExitCodeProcess(process.get(), &exitCode);
    }

    std::vector<fs::path> reports() const {
        std::vector<fs::path> files;
        std::error_code missing;
        for (const auto& entry : fs::directory_iterator(folder, missing)) files.push_back(entry.path());
        return files;
    }

    // The only report: its lines behind the header, each without the time; or a reason why not.
    std::vector<std::string> reportLines(const std::string& reason) const {
        const auto files = reports();
        if (files.size() != 1) return {std::to_string(files.size()) + " reports"};
        const auto bytes = readWholeFile(files[0].wstring());
        if (!bytes || bytes->size() < 2 || (*bytes)[0] != 0xFF || (*bytes)[1] != 0xFE) return {"no mark"};
        BinaryReader in(*bytes);
        in.u16();
        std::string text = utf8FromWide(in.units(in.remaining() / 2));
        const std::string header = "=== CRASH LOG ===\r\nReason: " + reason + "\r\n=================\r\n\r\n";
        if (!text.starts_with(header)) return {"another header: " + text};

        std::vector<std::string> lines;
        text.erase(0, header.size());
        while (!text.empty()) {
            const std::size_t end = text.find("\r\n");
            if (end == std::string::npos) return {"no line end at the end"};
            constexpr std::size_t kTimeLength = sizeof "2024-01-31 23:59:59.999 " - 1;
            lines.push_back(text.substr(kTimeLength, end - kTimeLength));
            text.erase(0, end + 2);
        }
        return lines;
    }

    std::wstring name = L"Varnelo Crash Test";
    std::wstring folder = crashReportFolder(knownFolder(KnownFolder::RoamingAppData), name);
    DWORD exitCode = 0;
};

std::string reasonOf(const char* code) { return std::string("Unhandled Exception: Code ") + code; }

struct Case {
    const char* kind;
    const char* thread;
    const char* code;
};

class EachCrash : public CrashReport, public testing::WithParamInterface<Case> {};

TEST_P(EachCrash, LeavesTheReportAndExitCodeOne) {
    whenItCrashes(GetParam().kind, GetParam().thread);
    EXPECT_EQ(exitCode, 1u);
    const std::string reason = reasonOf(GetParam().code);
    EXPECT_THAT(reportLines(reason),
                testing::ElementsAre("[INFO] first line", "[WARN] second line \xE6\x97\xA5\xE6\x9C\xAC",
                                     "[INFO] callback: no report yet", "[FATAL] " + reason));
}

INSTANTIATE_TEST_SUITE_P(
    All, EachCrash,
    testing::Values(Case{"access_violation", "main", "0xC0000005"},
                    Case{"access_violation", "worker", "0xC0000005"}, Case{"exception", "main", "0xE0544552"},
                    Case{"exception", "worker", "0xE0544552"}, Case{"noexcept", "main", "0xE0544552"},
                    Case{"noexcept", "worker", "0xE0544552"}, Case{"abort", "main", "0xE0414254"},
                    Case{"abort", "worker", "0xE0414254"}, Case{"stack_overflow", "main", "0xC00000FD"},
                    Case{"stack_overflow", "worker", "0xC00000FD"},
                    // The logger's own lock is taken by the thread that crashes.
                    Case{"inside_logger", "main", "0xC0000005"},
                    Case{"inside_logger", "worker", "0xC0000005"}),
    [](const auto& given) { return std::string(given.param.kind) + "_" + given.param.thread; });

TEST_F(CrashReport, IsWrittenWhenTheCallbackCrashesToo) {
    whenItCrashes("callback_faults", "main");
    EXPECT_EQ(exitCode, 1u);
    EXPECT_THAT(reportLines(reasonOf("0xC0000005")),
                testing::Contains("[FATAL] " + reasonOf("0xC0000005")).Times(1));
}

TEST_F(CrashReport, IsWrittenWhenTheCallbackThrows) {
    whenItCrashes("callback_throws", "worker");
    EXPECT_EQ(exitCode, 1u);
    EXPECT_THAT(reportLines(reasonOf("0xC0000005")),
                testing::Contains("[FATAL] " + reasonOf("0xC0000005")).Times(1));
}

TEST_F(CrashReport, TellsOfTheFirstOfTwoCrashesAtOnce) {
    for (int round = 0; round < 5; ++round) {
        whenItCrashes("two_threads", "main");
        EXPECT_EQ(exitCode, 1u);
        const auto expected = [](const std::string& reason) {
            return testing::ElementsAre("[INFO] first line", testing::StartsWith("[WARN] second line"),
                                        "[INFO] callback: no report yet", "[FATAL] " + reason);
        };
        EXPECT_TRUE(testing::Matches(expected(reasonOf("0xC0000005")))(reportLines(reasonOf("0xC0000005"))) ||
                    testing::Matches(expected(reasonOf("0xE0414254")))(reportLines(reasonOf("0xE0414254"))));
        fs::remove_all(folder);
    }
}

// Both belong to one second as a rule, and then the later one takes the place of the earlier.
TEST_F(CrashReport, FollowsThatOfAFatalLine) {
    whenItCrashes("after_fatal", "main");
    EXPECT_EQ(exitCode, 1u);
    auto files = reports();
    ASSERT_FALSE(files.empty());
    if (files.size() == 2) fs::remove(std::min(files[0], files[1]));
    EXPECT_THAT(reportLines(reasonOf("0xC0000005")),
                testing::ElementsAre("[INFO] first line", testing::StartsWith("[WARN] second line"),
                                     "[FATAL] first report", "[INFO] callback: there is a report",
                                     "[FATAL] " + reasonOf("0xC0000005")));
}

TEST_F(CrashReport, IsNotWrittenWithoutALogger) {
    for (const char* kind : {"before_initialisation", "after_shutdown"}) {
        whenItCrashes(kind, "main");
        EXPECT_EQ(exitCode, 1u) << kind;
        EXPECT_THAT(reports(), testing::IsEmpty()) << kind;
    }
}

}  // namespace
}  // namespace varnelo
