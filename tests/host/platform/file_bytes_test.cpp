#include "platform/file_bytes.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <thread>

#include "support/temp_folder.h"

namespace varnelo {
namespace {

namespace fs = std::filesystem;
using Bytes = std::vector<std::uint8_t>;

class FileBytesTest : public testing::Test {
protected:
    std::size_t filesInFolder() const {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator()));
    }

    test::TempFolder folder;
    std::wstring path = folder.file(L"some.cache");
};

TEST_F(FileBytesTest, ReadsBackWhatWasWritten) {
    const Bytes content{0, 1, 2, 0xFF, 0x0A, 0x1A};
    ASSERT_TRUE(replaceFile(path, content));
    EXPECT_EQ(readWholeFile(path), content);
    EXPECT_EQ(filesInFolder(), 1u);
}

TEST_F(FileBytesTest, AnEmptyFileIsAFile) {
    ASSERT_TRUE(replaceFile(path, Bytes{}));
    EXPECT_EQ(readWholeFile(path), Bytes{});
}

TEST_F(FileBytesTest, ALongContentReplacesAShortOneAndTheOtherWayRound) {
    const Bytes large(3'000'000, 0x5A);
    ASSERT_TRUE(replaceFile(path, Bytes{1}));
    ASSERT_TRUE(replaceFile(path, large));
    EXPECT_EQ(readWholeFile(path), large);
    ASSERT_TRUE(replaceFile(path, Bytes{2}));
    EXPECT_EQ(readWholeFile(path), Bytes{2});
}

TEST_F(FileBytesTest, AMissingFileIsNothing) { EXPECT_EQ(readWholeFile(path), std::nullopt); }

TEST_F(FileBytesTest, AFolderIsNothing) { EXPECT_EQ(readWholeFile(folder.path()), std::nullopt); }

TEST_F(FileBytesTest, AFileBeyondTheLimitIsNothing) {
    ASSERT_TRUE(replaceFile(path, Bytes(100)));
    EXPECT_EQ(readWholeFile(path, 99), std::nullopt);
    EXPECT_EQ(readWholeFile(path, 100), Bytes(100));
}

TEST_F(FileBytesTest, AMissingFolderFailsTheReplacement) {
    EXPECT_FALSE(replaceFile(folder.file(L"absent") + L"/some.cache", Bytes{1}));
    EXPECT_EQ(filesInFolder(), 0u);
}

// A folder of the target's name cannot be moved over, however much the user may do.
TEST_F(FileBytesTest, AFailedReplacementLeavesTheOldOneAndNothingBesideIt) {
    fs::create_directory(path);
    ASSERT_TRUE(replaceFile((fs::path(path) / "inside").wstring(), Bytes{7}));
    EXPECT_FALSE(replaceFile(path, Bytes{1}));
    EXPECT_EQ(filesInFolder(), 1u);
    EXPECT_EQ(readWholeFile((fs::path(path) / "inside").wstring()), Bytes{7});
}

TEST_F(FileBytesTest, TwoWritersAtOnceLeaveOneWholeContent) {
    const Bytes ones(200'000, 1);
    const Bytes twos(200'000, 2);
    std::thread other([&] {
        for (int i = 0; i < 10; ++i) replaceFile(path, twos);
    });
    for (int i = 0; i < 10; ++i) replaceFile(path, ones);
    other.join();
    const auto content = readWholeFile(path);
    ASSERT_TRUE(content);
    EXPECT_TRUE(*content == ones || *content == twos);
    EXPECT_EQ(filesInFolder(), 1u);
}

TEST_F(FileBytesTest, NamesBeyondAsciiWork) {
    const std::wstring named = folder.path() + L"/\x65E5\x672C \xD83D\xDE00 \xFC.cache";
    ASSERT_TRUE(replaceFile(named, Bytes{9}));
    EXPECT_EQ(readWholeFile(named), Bytes{9});
    EXPECT_EQ(filesInFolder(), 1u);
}

}  // namespace
}  // namespace varnelo
