#include "app/logger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <thread>

#include "app/crash_report.h"
#include "platform/binary_stream.h"
#include "platform/file_bytes.h"
#include "platform/known_folders.h"
#include "platform/utf.h"
#include "support/scoped_variable.h"
#include "support/temp_folder.h"

namespace varnelo {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

// The texts of lines, behind their time and level.
std::vector<std::string> messagesOf(const Logger& logger) {
    std::vector<std::string> messages;
    for (const auto& line : logger.lines())
        messages.push_back(utf8FromWide(line.substr(line.find(L"] ") + 2)));
    return messages;
}

// The files of a crash report folder, and how such a file's text reads.
std::vector<fs::path> filesIn(const std::wstring& folder) {
    std::vector<fs::path> files;
    std::error_code missing;
    for (const auto& entry : fs::directory_iterator(folder, missing)) files.push_back(entry.path());
    return files;
}

std::wstring utf16File(const fs::path& path) {
    const auto bytes = readWholeFile(path.wstring());
    if (!bytes) return L"(unreadable)";
    BinaryReader in(*bytes);
    if (in.u16() != 0xFEFF) return L"(no byte-order mark)";
    return in.units(in.remaining() / 2);
}

class LoggerTest : public testing::Test {
protected:
    LoggerTest() { fs::remove_all(reportFolder); }
    ~LoggerTest() override { fs::remove_all(reportFolder); }

    static constexpr const wchar_t* kName = L"Varnelo Logger Test";

#ifndef _WIN32
    test::TempFolder roaming;
    test::ScopedVariable variable{"XDG_CONFIG_HOME", utf8FromWide(roaming.path())};
#endif
    std::wstring reportFolder = crashReportFolder(knownFolder(KnownFolder::RoamingAppData), kName);
    Logger logger;
};

TEST_F(LoggerTest, ALineIsTimeLevelAndMessage) {
    logger.write(LogLevel::Info, L"hello");
    ASSERT_EQ(logger.lines().size(), 1u);
    const std::wregex form(LR"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} \[INFO\] hello)");
    EXPECT_TRUE(std::regex_match(logger.lines()[0], form)) << utf8FromWide(logger.lines()[0]);
}

TEST_F(LoggerTest, LevelsHaveTheirTexts) {
    for (const std::uint32_t level : {0u, 1u, 2u, 4u, 7u}) logger.write(static_cast<LogLevel>(level), L"x");
    std::vector<std::wstring> texts;
    for (const auto& line : logger.lines()) texts.push_back(line.substr(23));
    EXPECT_THAT(texts,
                ElementsAre(L" [INFO] x", L" [WARN] x", L" [ERROR] x", L" [UNKNOWN] x", L" [UNKNOWN] x"));
}

TEST_F(LoggerTest, MessagesAreTakenAsTheyAre) {
    const std::wstring odd = L"%s %n \xD83D " + std::wstring(5000, L'x') + L"\n";
    logger.write(LogLevel::Info, odd);
    EXPECT_TRUE(logger.lines()[0].ends_with(L"] " + odd));
}

TEST_F(LoggerTest, InitialisationForgetsEarlierLinesOnce) {
    logger.write(LogLevel::Info, L"before");
    logger.initialise(kName);
    logger.write(LogLevel::Info, L"after");
    logger.initialise(L"Other");
    EXPECT_THAT(messagesOf(logger), ElementsAre("after"));
}

TEST_F(LoggerTest, IsTheCrashLoggerFromInitialisationToShutdown) {
    EXPECT_EQ(crashLogger.load(), nullptr);
    logger.initialise(kName);
    EXPECT_EQ(crashLogger.load(), &logger);
    logger.write(LogLevel::Info, L"kept");
    logger.shutdown();
    EXPECT_EQ(crashLogger.load(), nullptr);
    logger.shutdown();
    EXPECT_THAT(messagesOf(logger), ElementsAre("kept"));
    logger.write(LogLevel::Info, L"late");
    EXPECT_THAT(messagesOf(logger), ElementsAre("kept", "late"));
}

TEST_F(LoggerTest, ANormalSessionWritesNoFile) {
    logger.initialise(kName);
    for (const LogLevel level : {LogLevel::Info, LogLevel::Warn, LogLevel::Error}) logger.write(level, L"x");
    logger.shutdown();
    EXPECT_FALSE(fs::exists(reportFolder));
}

TEST_F(LoggerTest, AFatalLineWritesAReportAndTheProgramGoesOn) {
    logger.initialise(kName);
    logger.write(LogLevel::Info, L"one \x65E5\x672C");
    logger.write(LogLevel::Fatal, L"the end");
    logger.write(LogLevel::Info, L"and on");

    const auto files = filesIn(reportFolder);
    ASSERT_EQ(files.size(), 1u);
    const std::regex form(R"(crash_\d{8}_\d{6}\.log)");
    EXPECT_TRUE(std::regex_match(files[0].filename().string(), form)) << files[0];
    const auto lines = logger.lines();
    EXPECT_EQ(utf16File(files[0]), L"=== CRASH LOG ===\r\nReason: the end\r\n=================\r\n\r\n" +
                                       lines[0] + L"\r\n" + lines[1] + L"\r\n");
    EXPECT_TRUE(lines[1].ends_with(L" [FATAL] the end"));
}

TEST_F(LoggerTest, AReportBeginsWithTheseBytes) {
    logger.initialise(kName);
    logger.write(LogLevel::Fatal, L"x");
    const auto files = filesIn(reportFolder);
    ASSERT_EQ(files.size(), 1u);
    const auto bytes = readWholeFile(files[0].wstring());
    ASSERT_TRUE(bytes);
    const std::vector<std::uint8_t> expected{0xFF, 0xFE, '=', 0, '=', 0, '=', 0, ' ', 0, 'C', 0};
    EXPECT_EQ(std::vector<std::uint8_t>(bytes->begin(), bytes->begin() + 12), expected);
}

TEST_F(LoggerTest, AReportHoldsMoreLinesThanAnyBuffer) {
    logger.initialise(kName);
    for (int i = 0; i < 3000; ++i) logger.write(LogLevel::Info, L"line " + std::to_wstring(i));
    logger.write(LogLevel::Fatal, std::wstring(10000, L'y'));
    const auto files = filesIn(reportFolder);
    ASSERT_EQ(files.size(), 1u);
    std::wstring expected =
        L"=== CRASH LOG ===\r\nReason: " + std::wstring(10000, L'y') + L"\r\n=================\r\n\r\n";
    for (const auto& line : logger.lines()) expected += line + L"\r\n";
    EXPECT_TRUE(utf16File(files[0]) == expected);
}

TEST_F(LoggerTest, WithoutAWritableFolderAFatalLineLeavesNoReport) {
    // A file where the folder should be.
    replaceFile(reportFolder, {});
    logger.initialise(kName);
    logger.write(LogLevel::Fatal, L"the end");
    logger.write(LogLevel::Info, L"and on");
    EXPECT_THAT(messagesOf(logger), ElementsAre("the end", "and on"));
    EXPECT_TRUE(fs::is_regular_file(reportFolder));
    EXPECT_TRUE(fs::is_empty(reportFolder));
}

TEST_F(LoggerTest, TheReportOfACrashEndsInItsLine) {
    logger.initialise(kName);
    logger.write(LogLevel::Info, L"one");
    logger.reportCrash(0xC0000005);
    const auto files = filesIn(reportFolder);
    ASSERT_EQ(files.size(), 1u);
    const auto lines = logger.lines();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_TRUE(lines[1].ends_with(L" [FATAL] Unhandled Exception: Code 0xC0000005"));
    EXPECT_EQ(
        utf16File(files[0]),
        L"=== CRASH LOG ===\r\nReason: Unhandled Exception: Code 0xC0000005\r\n=================\r\n\r\n" +
            lines[0] + L"\r\n" + lines[1] + L"\r\n");
}

TEST_F(LoggerTest, ACrashIsReportedWhileOthersGoOnLogging) {
    logger.initialise(kName);
    std::atomic<bool> stop{false};
    std::vector<std::thread> writers;
    for (int i = 0; i < 2; ++i) {
        writers.emplace_back([&] {
            while (!stop) logger.write(LogLevel::Info, L"busy");
        });
    }
    while (logger.lines().size() < 100) std::this_thread::yield();
    logger.reportCrash(1);
    stop = true;
    for (auto& writer : writers) writer.join();
    const auto files = filesIn(reportFolder);
    ASSERT_EQ(files.size(), 1u);
    EXPECT_TRUE(utf16File(files[0]).ends_with(L" [FATAL] Unhandled Exception: Code 0x00000001\r\n"));
}

TEST_F(LoggerTest, LinesOfManyThreadsAreAllKept) {
    std::vector<std::thread> writers;
    for (int i = 0; i < 4; ++i) {
        writers.emplace_back([&] {
            for (int k = 0; k < 200; ++k) logger.write(LogLevel::Info, L"x");
        });
    }
    for (auto& writer : writers) writer.join();
    const auto lines = logger.lines();
    EXPECT_EQ(lines.size(), 800u);
    EXPECT_TRUE(std::is_sorted(lines.begin(), lines.end())) << "times do not go backwards";
}

TEST(CrashReportFolder, IsInTheRoamingFolder) {
    const std::wstring folder = crashReportFolder(L"roaming", L"Varnelo");
    EXPECT_EQ(fs::path(folder), fs::path(L"roaming") / L"Varnelo");
}

TEST(CrashReportFolder, WithoutTheRoamingFolderIsAnOddNameThatNobodyMakes) {
    EXPECT_EQ(crashReportFolder(L"", L"Varnelo"), L" chromosome .");
    const test::TempFolder folder;
    const fs::path before = fs::current_path();
    fs::current_path(folder.path());
    LogLines lines;
    const auto* last = lines.append(L"x");
    EXPECT_EQ(writeCrashReport(L" chromosome .", L"x", lines, last), ReportResult::Failed);
    EXPECT_THAT(filesIn(folder.path()), IsEmpty());
    fs::current_path(before);
}

TEST(CrashReport, EndsInTheGivenLineThoughOthersHaveFollowed) {
    const test::TempFolder folder;
    LogLines lines;
    lines.append(L"one");
    const auto* last = lines.append(L"two");
    lines.append(L"three");
    EXPECT_EQ(writeCrashReport(folder.path().c_str(), L"two", lines, last), ReportResult::Written);
    const auto files = filesIn(folder.path());
    ASSERT_EQ(files.size(), 1u);
    EXPECT_EQ(utf16File(files[0]),
              L"=== CRASH LOG ===\r\nReason: two\r\n=================\r\n\r\none\r\ntwo\r\n");
}

TEST(CrashReport, APathTooLongForTheSystemLeavesNoReport) {
    LogLines lines;
    const std::wstring folder(5000, L'x');
    EXPECT_EQ(writeCrashReport(folder.c_str(), L"x", lines, nullptr), ReportResult::Failed);
}

}  // namespace
}  // namespace varnelo
