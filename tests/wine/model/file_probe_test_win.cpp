#include "model/file_probe_win.h"

#include <gtest/gtest.h>
#include <windows.h>

#include "platform/handles_win.h"
#include "support/real_desktop_win.h"

namespace varnelo {
namespace {

constexpr std::uint64_t kSomeTime = 133600000000000000;  // in 2024

class WindowsFileProbeTest : public ::testing::Test {
protected:
    std::wstring pathOf(const std::wstring& name) const { return folder.path() + L"\\" + name; }

    TemporaryFolder folder{L"probe"};
    WindowsFileProbe probe;
};

TEST_F(WindowsFileProbeTest, AFileHasAttributesTimesAndSize) {
    writeFile(pathOf(L"a.txt"), "12345");
    setWriteTime(pathOf(L"a.txt"), kSomeTime);
    const auto attributes = probe.attributes(pathOf(L"a.txt"));
    ASSERT_TRUE(attributes);
    EXPECT_EQ(*attributes & FileProbe::kDirectoryAttribute, 0u);
    const auto facts = probe.facts(pathOf(L"a.txt"));
    ASSERT_TRUE(facts);
    EXPECT_EQ(facts->sizeBytes, 5u);
    EXPECT_EQ(facts->times.lastWrite, kSomeTime);
    EXPECT_GT(facts->times.creation, 0u);
    EXPECT_EQ(probe.fileTimes(pathOf(L"a.txt")), facts->times);
}

TEST_F(WindowsFileProbeTest, ADirectoryHasFactsButNoFileTimes) {
    const auto attributes = probe.attributes(folder.path());
    ASSERT_TRUE(attributes);
    EXPECT_NE(*attributes & FileProbe::kDirectoryAttribute, 0u);
    EXPECT_TRUE(probe.facts(folder.path()));
    EXPECT_FALSE(probe.fileTimes(folder.path()));
}

TEST_F(WindowsFileProbeTest, WhatIsMissingHasNothing) {
    EXPECT_FALSE(probe.exists(pathOf(L"gone.txt")));
    EXPECT_FALSE(probe.facts(pathOf(L"gone.txt")));
    EXPECT_FALSE(probe.fileTimes(pathOf(L"gone.txt")));
    EXPECT_FALSE(probe.hasZoneIdentifier(pathOf(L"gone.txt")));
    EXPECT_TRUE(probe.beginning(pathOf(L"gone.txt"), 10).empty());
    EXPECT_FALSE(probe.exists(L""));
}

TEST_F(WindowsFileProbeTest, AFileKeptByItsWriterExistsButCannotBeRead) {
    const FileHandle writer(CreateFileW(pathOf(L"locked.txt").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                        FILE_ATTRIBUTE_NORMAL, nullptr));
    ASSERT_TRUE(writer);
    EXPECT_TRUE(probe.exists(pathOf(L"locked.txt")));
    EXPECT_FALSE(probe.facts(pathOf(L"locked.txt")));
}

TEST_F(WindowsFileProbeTest, AFileOfFiveGigabytesHasItsWholeSize) {
    FileHandle file(CreateFileW(pathOf(L"big.iso").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                FILE_ATTRIBUTE_NORMAL, nullptr));
    ASSERT_TRUE(file);
    LARGE_INTEGER size;
    size.QuadPart = 5'000'000'001;
    ASSERT_TRUE(SetFilePointerEx(file.get(), size, nullptr, FILE_BEGIN));
    ASSERT_TRUE(SetEndOfFile(file.get()));
    file.reset();
    EXPECT_EQ(probe.facts(pathOf(L"big.iso")).value().sizeBytes, 5'000'000'001u);
    EXPECT_EQ(probe.beginning(pathOf(L"big.iso"), 100).size(), 100u);
}

TEST_F(WindowsFileProbeTest, ABeginningIsNoLongerThanAskedAndThanTheFile) {
    writeFile(pathOf(L"a.url"), "URL=x");
    EXPECT_EQ(probe.beginning(pathOf(L"a.url"), 100), (std::vector<std::uint8_t>{'U', 'R', 'L', '=', 'x'}));
    EXPECT_EQ(probe.beginning(pathOf(L"a.url"), 3), (std::vector<std::uint8_t>{'U', 'R', 'L'}));
    writeFile(pathOf(L"empty.url"), "");
    EXPECT_TRUE(probe.beginning(pathOf(L"empty.url"), 100).empty());
    EXPECT_TRUE(probe.beginning(folder.path(), 100).empty());
}

// On a volume without streams Wine keeps a stream as an ordinary file of that name.
TEST_F(WindowsFileProbeTest, ADownloadIsKnownByItsStream) {
    writeFile(pathOf(L"paper.pdf"));
    EXPECT_FALSE(probe.hasZoneIdentifier(pathOf(L"paper.pdf")));
    writeFile(pathOf(L"paper.pdf:Zone.Identifier"), "[ZoneTransfer]\r\nZoneId=3\r\n");
    EXPECT_TRUE(probe.hasZoneIdentifier(pathOf(L"paper.pdf")));
}

TEST_F(WindowsFileProbeTest, APathOf200CharactersAndAnyLanguageIsRead) {
    const std::wstring name = L"\u00FC\u65E5\U0001F600" + std::wstring(60, L'x') + L".txt";
    writeFile(pathOf(name), "123");
    EXPECT_EQ(probe.facts(pathOf(name)).value().sizeBytes, 3u);
}

}  // namespace
}  // namespace varnelo
