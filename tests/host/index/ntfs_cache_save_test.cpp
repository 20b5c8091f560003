#include <gtest/gtest.h>

#include <random>

#include "host/index/cache_fixture.h"

#ifndef _WIN32
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <functional>
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

// A process that does something again and again until it is killed.
class EndlessProcess {
public:
    // Comes back when the process has done it once: on a busy machine it may take long to get there.
    explicit EndlessProcess(const std::function<void()>& work) {
        int ends[2];
        if (::pipe(ends) != 0) return;
        pid_ = ::fork();
        if (pid_ == 0) {
            work();
            const bool told = ::write(ends[1], "!", 1) == 1;
            while (told) work();
            ::_exit(1);
        }
        ::close(ends[1]);
        pollfd done{ends[0], POLLIN, 0};
        char sign = 0;
        runs_ = pid_ > 0 && ::poll(&done, 1, 60'000) == 1 && ::read(ends[0], &sign, 1) == 1;
        ::close(ends[0]);
    }
    EndlessProcess(const EndlessProcess&) = delete;
    EndlessProcess& operator=(const EndlessProcess&) = delete;
    ~EndlessProcess() { kill(); }

    bool runs() const { return runs_; }
    // Whether it was this that ended it.
    bool kill() {
        if (pid_ <= 0) return false;
        int status = 0;
        ::kill(pid_, SIGKILL);
        const bool ended = ::waitpid(pid_, &status, 0) == pid_;
        pid_ = -1;
        return ended && WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
    }

private:
    pid_t pid_ = -1;
    bool runs_ = false;
};

TEST_F(NtfsCacheSaveTest, ASaverThatIsKilledLeavesAFileThatLoads) {
    NTFSIndex other;
    for (int i = 0; i < 120; ++i) other.addRecord({100u + static_cast<unsigned>(i), 5, 0, 0, 0, 0}, L"other");
    fillWith(40);
    const auto saveBoth = [&] {
        cache.save(other);
        cache.save(index);
    };
    using Clock = std::chrono::steady_clock;
    Clock::duration round = Clock::duration::max();
    for (int i = 0; i < 3; ++i) {
        const auto start = Clock::now();
        saveBoth();
        round = std::min(round, Clock::now() - start);
    }

    std::mt19937 random(7);
    int others = 0;
    for (int inTheMidst = 0, kills = 0; inTheMidst < 200; ++kills) {
        ASSERT_LT(kills, 5'000) << "the saver was hardly ever killed in a save";
        EndlessProcess saver(saveBoth);
        ASSERT_TRUE(saver.runs());
        // No condition is waited for: the moment is meant to be any.
        std::this_thread::sleep_for(round * (random() % 1000) / 500);
        ASSERT_TRUE(saver.kill());
        // What lies aside is of a save that was not over.
        if (fs::remove(cache.path() + L".tmp")) ++inTheMidst;

        NTFSIndex loaded;
        ASSERT_TRUE(cache.load(loaded));
        const std::size_t files = loaded.records().size();
        ASSERT_TRUE(files == 40 || files == 120) << files;
        if (files == 120) ++others;
        ASSERT_EQ(loaded.nameOf(7), files == 40 ? L"file 7.txt" : L"other");
    }
    EXPECT_GT(others, 0) << "the saver was killed in one of its two saves only";
}

#endif

}  // namespace
}  // namespace varnelo
