#include <gtest/gtest.h>

#include <random>

#include "host/index/cache_fixture.h"

#ifndef _WIN32
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <thread>
#endif

namespace varnelo {
namespace {

namespace fs = std::filesystem;

class NtfsCacheSaveTest : public ::testing::Test, protected IndexWorld {
protected:
    void fillWith(int files) {
        index.clearIndex();
        for (int i = 0; i < files; ++i) file(L"file " + std::to_wstring(i) + L".txt");
    }

    CacheFixture cache;
};

TEST_F(NtfsCacheSaveTest, LeavesNothingBesideTheFile) {
    EXPECT_TRUE(cache.save(index));
    EXPECT_TRUE(cache.exists(L"ntfs.cache"));
    EXPECT_FALSE(cache.exists(L"ntfs.cache.tmp"));
}

TEST_F(NtfsCacheSaveTest, WritesOverAFileAsideThatWasLeftBehind) {
    CacheFixture::write(cache.path() + L".tmp", Bytes(5000, 1));
    fillWith(3);
    ASSERT_TRUE(cache.save(index));
    EXPECT_FALSE(cache.exists(L"ntfs.cache.tmp"));
    EXPECT_TRUE(cache.load(index));
}

TEST_F(NtfsCacheSaveTest, MakesTheFolder) {
    const std::wstring folder = cache.folder.file(L"sub") + L"/sub";
    EXPECT_TRUE(index.saveCache(folder, L"x"));
    EXPECT_TRUE(index.loadCache(folder, L"x"));
    EXPECT_FALSE(index.loadCache(cache.folder.file(L"other"), L"x"));
    EXPECT_TRUE(cache.exists(L"other")) << "a load makes it too";
}

TEST_F(NtfsCacheSaveTest, AFolderThatCannotBeMadeIsAnException) {
    CacheFixture::write(cache.folder.file(L"file"), {1});
    for (const bool saving : {true, false}) {
        try {
            const std::wstring below = cache.folder.file(L"file") + L"/sub";
            saving ? index.saveCache(below, L"x") : index.loadCache(below, L"x");
            ADD_FAILURE() << "no exception";
        } catch (const fs::filesystem_error& error) {
            EXPECT_NE(std::string(error.what()).find("create_directories"), std::string::npos);
        }
    }
}

TEST_F(NtfsCacheSaveTest, AFileAsideThatCannotBeMadeIsASilentFailure) {
    fs::create_directory(cache.path() + L".tmp");
    const LogCapture log;
    EXPECT_FALSE(cache.save(index));
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(NtfsCacheSaveTest, ACopyThatFailsBehindAMoveThatFailedIsNotAsked) {
    fs::create_directory(cache.path());
    EXPECT_TRUE(cache.save(index)) << "the file aside could be deleted";
    EXPECT_FALSE(cache.exists(L"ntfs.cache.tmp"));
}

TEST_F(NtfsCacheSaveTest, WritesManySmallAndSomeLargePieces) {
    for (int i = 0; i < 30000; ++i) file(L"some file of the many " + std::to_wstring(i * 7919 % 30011));
    ASSERT_TRUE(cache.save(index));
    const Bytes first = cache.bytes();
    NTFSIndex loaded;
    ASSERT_TRUE(cache.load(loaded));
    ASSERT_TRUE(cache.save(loaded));
    EXPECT_TRUE(cache.bytes() == first);
    for (std::uint32_t i = 0; i < 30000; i += 100) {
        ASSERT_EQ(loaded.nameOf(i), index.nameOf(i));
        ASSERT_EQ(loaded.recordByKey(recordKey(record(i))), i);
    }
}

#ifndef _WIN32

TEST_F(NtfsCacheSaveTest, AFullDiskLeavesTheOldFileAndNothingBesideIt) {
    fillWith(3);
    ASSERT_TRUE(cache.save(index));
    const Bytes before = cache.bytes();
    fs::create_symlink("/dev/full", cache.path() + L".tmp");
    fillWith(5);
    EXPECT_FALSE(cache.save(index));
    EXPECT_EQ(cache.bytes(), before);
    EXPECT_FALSE(fs::is_symlink(cache.path() + L".tmp"));
}

TEST_F(NtfsCacheSaveTest, ASaverThatIsKilledLeavesAFileThatLoads) {
    NTFSIndex other;
    for (int i = 0; i < 120; ++i) other.addRecord({100u + static_cast<unsigned>(i), 5, 0, 0, 0, 0}, L"other");
    fillWith(40);
    ASSERT_TRUE(cache.save(index));
    std::mt19937 random(7);
    int others = 0;
    for (int inTheMidst = 0, kills = 0; inTheMidst < 200; ++kills) {
        ASSERT_LT(kills, 20'000) << "the saver was never killed in a save";
        const pid_t saver = ::fork();
        ASSERT_GE(saver, 0);
        if (saver == 0) {
            for (;;) {
                cache.save(other);
                cache.save(index);
            }
        }
        // No condition is waited for: the moment is meant to be any.
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 4000));
        ::kill(saver, SIGKILL);
        int status = 0;
        ASSERT_EQ(::waitpid(saver, &status, 0), saver);
        ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
        // What lies aside is of a save that was not over.
        if (fs::remove(cache.path() + L".tmp")) ++inTheMidst;

        NTFSIndex loaded;
        ASSERT_TRUE(cache.load(loaded));
        const std::size_t files = loaded.records().size();
        ASSERT_TRUE(files == 40 || files == 120) << files;
        if (files == 120) ++others;
        ASSERT_EQ(loaded.nameOf(7), files == 40 ? L"file 7.txt" : L"other");
    }
    EXPECT_GT(others, 0) << "the saver was killed before it did anything";
}

#endif

}  // namespace
}  // namespace varnelo
