#include "platform/mapped_file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <numeric>
#include <utility>

#include "platform/file_bytes.h"
#include "platform/plain_file.h"
#include "support/temp_folder.h"

namespace varnelo {
namespace {

using Bytes = std::vector<std::uint8_t>;

class MappedFileTest : public ::testing::Test {
protected:
    MappedFileTest() {
        std::iota(content.begin(), content.end(), std::uint8_t{1});
        EXPECT_TRUE(replaceFile(path, content));
    }
    static Bytes shownBy(const MappedFile& file) { return {file.bytes().begin(), file.bytes().end()}; }

    test::TempFolder folder;
    const std::wstring path = folder.file(L"some file");
    Bytes content = Bytes(10000);
};

TEST_F(MappedFileTest, ShowsAllBytesOfTheFile) {
    MappedFile file;
    EXPECT_FALSE(file.isOpen());
    ASSERT_TRUE(file.open(path.c_str()));
    EXPECT_TRUE(file.isOpen());
    EXPECT_EQ(shownBy(file), content);
}

TEST_F(MappedFileTest, WhatIsNoFileOrHasNoBytesIsNotOpened) {
    ASSERT_TRUE(replaceFile(folder.file(L"empty"), {}));
    for (const std::wstring& other : {folder.file(L"missing"), folder.file(L"empty"), folder.path()}) {
        MappedFile file;
        EXPECT_FALSE(file.open(other.c_str()));
        EXPECT_FALSE(file.isOpen());
        EXPECT_TRUE(file.bytes().empty());
        file.trim();
        file.close();
    }
}

TEST_F(MappedFileTest, WritingChangesTheMemoryAndNotTheFile) {
    MappedFile file;
    ASSERT_TRUE(file.open(path.c_str()));
    file.bytes()[5000] = 0xAA;
    EXPECT_EQ(file.bytes()[5000], 0xAA);
    EXPECT_EQ(readWholeFile(path), content);
    file.close();
    EXPECT_EQ(readWholeFile(path), content);
}

TEST_F(MappedFileTest, TrimmedBytesAreThereAgain) {
    MappedFile file;
    ASSERT_TRUE(file.open(path.c_str()));
    EXPECT_EQ(shownBy(file), content);
    file.trim();
    EXPECT_EQ(shownBy(file), content);
}

TEST_F(MappedFileTest, TheViewGoesWithItsOwner) {
    MappedFile file;
    ASSERT_TRUE(file.open(path.c_str()));
    const std::uint8_t* const where = file.bytes().data();
    MappedFile next(std::move(file));
    EXPECT_EQ(next.bytes().data(), where);
    MappedFile last;
    last = std::move(next);
    EXPECT_FALSE(next.isOpen());  // NOLINT(bugprone-use-after-move): it is empty then
    EXPECT_EQ(shownBy(last), content);
    last = {};
    EXPECT_FALSE(last.isOpen());
}

TEST_F(MappedFileTest, AFileCanBeReplacedAndDeletedAgainOnceItIsClosed) {
    MappedFile file;
    ASSERT_TRUE(file.open(path.c_str()));
    EXPECT_EQ(shownBy(file), content);
    file.close();
    EXPECT_FALSE(file.isOpen());
    ASSERT_TRUE(replaceFile(folder.file(L"new"), Bytes{1, 2, 3}));
    EXPECT_TRUE(moveFileOver(folder.file(L"new").c_str(), path.c_str()));
    EXPECT_EQ(readWholeFile(path), (Bytes{1, 2, 3}));
    EXPECT_TRUE(removeFile(path.c_str()));
}

TEST_F(MappedFileTest, OthersMayReadTheFileMeanwhile) {
    MappedFile file;
    ASSERT_TRUE(file.open(path.c_str()));
    MappedFile another;
    EXPECT_TRUE(another.open(path.c_str()));
    EXPECT_EQ(readWholeFile(path), content);
    EXPECT_EQ(shownBy(another), content);
}

#ifdef _WIN32

TEST_F(MappedFileTest, NobodyReplacesDeletesOrWritesTheFileMeanwhile) {
    MappedFile file;
    ASSERT_TRUE(file.open(path.c_str()));
    const std::wstring other = folder.file(L"new");
    ASSERT_TRUE(replaceFile(other, Bytes{1, 2, 3}));
    EXPECT_FALSE(moveFileOver(other.c_str(), path.c_str()));
    EXPECT_FALSE(copyFileOver(other.c_str(), path.c_str()));
    EXPECT_EQ(PlainFile().create(path.c_str()), PlainFile::Opened::InUse);
    EXPECT_EQ(shownBy(file), content);
    EXPECT_EQ(readWholeFile(path), content);
}

TEST_F(MappedFileTest, AFileThatSomebodyWritesIsNotOpened) {
    PlainFile writer;
    ASSERT_EQ(writer.create(path.c_str()), PlainFile::Opened::Yes);
    ASSERT_TRUE(writer.write(content));
    MappedFile file;
    EXPECT_FALSE(file.open(path.c_str()));
    writer.close();
    EXPECT_TRUE(file.open(path.c_str()));
}

#else

TEST_F(MappedFileTest, AFileThatIsReplacedStaysAsItWasMapped) {
    MappedFile file;
    ASSERT_TRUE(file.open(path.c_str()));
    ASSERT_TRUE(replaceFile(path, Bytes{1, 2, 3}));
    EXPECT_EQ(shownBy(file), content);
}

#endif

}  // namespace
}  // namespace varnelo
