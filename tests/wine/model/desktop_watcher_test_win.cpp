#include "model/desktop_watcher_win.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <mutex>
#include <set>

#include "support/real_desktop_win.h"

namespace varnelo {
namespace {

using Kind = FolderChange::Kind;

// Keeps what it is told. While `busy` is set it does not come back from its first change.
class RecordingSink final : public FolderChangeSink {
public:
    void onFolderChanges(std::span<const FolderChange> changes) override {
        {
            const std::lock_guard lock(mutex);
            all.insert(all.end(), changes.begin(), changes.end());
            ++calls;
        }
        while (busy) Sleep(1);
    }
    void onFolderOverflow() override { ++overflows; }

    bool has(Kind kind, const std::wstring& name) const {
        const std::lock_guard lock(mutex);
        return std::find(all.begin(), all.end(), FolderChange{kind, name}) != all.end();
    }
    std::vector<FolderChange> changes() const {
        const std::lock_guard lock(mutex);
        return all;
    }

    std::atomic<bool> busy{false};
    std::atomic<int> calls{0};
    std::atomic<int> overflows{0};

private:
    mutable std::mutex mutex;
    std::vector<FolderChange> all;
};

double secondsOf(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double processorSeconds() {
    FILETIME creation, exit, kernel, user;
    GetProcessTimes(GetCurrentProcess(), &creation, &exit, &kernel, &user);
    const auto ticks = [](const FILETIME& t) {
        return static_cast<double>(std::uint64_t{t.dwHighDateTime} << 32 | t.dwLowDateTime);
    };
    return (ticks(kernel) + ticks(user)) / 1e7;
}

class DesktopWatcherTest : public ::testing::Test {
protected:
    std::wstring pathOf(const std::wstring& name) const { return folder.path() + L"\\" + name; }
    std::wstring quoted(const std::wstring& name) const { return L" \"" + pathOf(name) + L"\""; }

    // Of five watchers that have been at work for a moment: a busy machine holds up one stop, a watcher that
    // does not listen holds up each.
    double leastSecondsToStop(const std::wstring& place) {
        double least = 1e9;
        for (int i = 0; i < 5; ++i) {
            DesktopWatcher watcher(sink, place);
            EXPECT_TRUE(watcher.start());
            Sleep(50);
            least = std::min(least, secondsOf([&watcher] { watcher.stop(); }));
        }
        return least;
    }

    TemporaryFolder folder{L"watched"};
    RecordingSink sink;
};

TEST_F(DesktopWatcherTest, ChangesOfAnotherProcessAreSeen) {
    DesktopWatcher watcher(sink, folder.path());
    ASSERT_TRUE(watcher.start());
    anotherProcess(L"create" + quoted(L"a \u65E5\u672C.txt"));
    EXPECT_TRUE(becomesTrue([this] { return sink.has(Kind::Added, L"a \u65E5\u672C.txt"); }));
    anotherProcess(L"write" + quoted(L"a \u65E5\u672C.txt"));
    EXPECT_TRUE(becomesTrue([this] { return sink.has(Kind::Modified, L"a \u65E5\u672C.txt"); }));
    anotherProcess(L"rename" + quoted(L"a \u65E5\u672C.txt") + quoted(L"b.txt"));
    EXPECT_TRUE(becomesTrue([this] {
        return sink.has(Kind::RenamedOldName, L"a \u65E5\u672C.txt") &&
               sink.has(Kind::RenamedNewName, L"b.txt");
    }));
    anotherProcess(L"delete" + quoted(L"b.txt"));
    EXPECT_TRUE(becomesTrue([this] { return sink.has(Kind::Removed, L"b.txt"); }));
    anotherProcess(L"folder" + quoted(L"new"));
    EXPECT_TRUE(becomesTrue([this] { return sink.has(Kind::Added, L"new"); }));
}

TEST_F(DesktopWatcherTest, AnAddedFileIsToldNoEarlierThanATenthOfASecond) {
    DesktopWatcher watcher(sink, folder.path());
    ASSERT_TRUE(watcher.start());
    const double seconds = secondsOf([this] {
        writeFile(pathOf(L"a.txt"));
        EXPECT_TRUE(becomesTrue([this] { return sink.has(Kind::Added, L"a.txt"); }));
    });
    EXPECT_GE(seconds, 0.095);
}

TEST_F(DesktopWatcherTest, ChangesInASubfolderAreNotTold) {
    ASSERT_TRUE(CreateDirectoryW(pathOf(L"sub").c_str(), nullptr));
    DesktopWatcher watcher(sink, folder.path());
    ASSERT_TRUE(watcher.start());
    writeFile(pathOf(L"sub\\inside.txt"));
    writeFile(pathOf(L"last.txt"));
    ASSERT_TRUE(becomesTrue([this] { return sink.has(Kind::Added, L"last.txt"); }));
    for (const FolderChange& change : sink.changes())
        EXPECT_EQ(change.name.find(L"inside"), std::wstring::npos);
}

TEST_F(DesktopWatcherTest, EveryFileOfABurstIsToldOrTheLossIs) {
    DesktopWatcher watcher(sink, folder.path());
    ASSERT_TRUE(watcher.start());
    anotherProcess(L"many \"" + folder.path() + L"\" burst 500");
    EXPECT_TRUE(becomesTrue([this] {
        std::set<std::wstring> told;
        for (const FolderChange& change : sink.changes()) told.insert(change.name);
        return told.size() == 500 || sink.overflows > 0;
    }));
}

TEST_F(DesktopWatcherTest, MoreChangesThanFitAreToldAsLost) {
    DesktopWatcher watcher(sink, folder.path());
    sink.busy = true;
    ASSERT_TRUE(watcher.start());
    writeFile(pathOf(L"first.txt"));
    ASSERT_TRUE(becomesTrue([this] { return sink.calls == 1; }));
    anotherProcess(L"many \"" + folder.path() + L"\" burst 500");
    sink.busy = false;
    EXPECT_TRUE(becomesTrue([this] { return sink.overflows > 0; }));
    writeFile(pathOf(L"after.txt"));
    EXPECT_TRUE(becomesTrue([this] { return sink.has(Kind::Added, L"after.txt"); }));
}

TEST_F(DesktopWatcherTest, AnIdleWatcherStopsAtOnce) {
    EXPECT_LT(leastSecondsToStop(folder.path()), 1.0);
    DesktopWatcher watcher(sink, folder.path());
    ASSERT_TRUE(watcher.start());
    watcher.stop();
    watcher.stop();
}

TEST_F(DesktopWatcherTest, AStopAtAnyMomentIsNeverLost) {
    for (int round = 0; round < 40; ++round) {
        DesktopWatcher watcher(sink, folder.path());
        ASSERT_TRUE(watcher.start());
        for (int i = 0; i < round % 4; ++i) writeFile(pathOf(L"f" + std::to_wstring(i)));
        EXPECT_LT(secondsOf([&watcher] { watcher.stop(); }), 10.0) << round;
    }
}

TEST_F(DesktopWatcherTest, AMissingFolderIsNotWatched) {
    DesktopWatcher watcher(sink, pathOf(L"no such folder"));
    EXPECT_FALSE(watcher.start());
    watcher.stop();
    DesktopWatcher nameless(sink, L"");
    EXPECT_FALSE(nameless.start());
}

// A plain file can be opened as if it were a folder, and every read of it fails at once: what a folder that
// is gone does.
TEST_F(DesktopWatcherTest, AReadThatAlwaysFailsTakesNoProcessorTimeAndEndsWithTheFolderBack) {
    writeFile(pathOf(L"place"));
    DesktopWatcher watcher(sink, pathOf(L"place"));
    ASSERT_TRUE(watcher.start());
    const double before = processorSeconds();
    Sleep(500);
    EXPECT_LT(processorSeconds() - before, 0.2);
    ASSERT_TRUE(DeleteFileW(pathOf(L"place").c_str()));
    ASSERT_TRUE(CreateDirectoryW(pathOf(L"place").c_str(), nullptr));
    EXPECT_TRUE(becomesTrue([this] { return sink.overflows > 0; })) << "what was missed is unknown";
    writeFile(pathOf(L"place\\new.txt"));
    EXPECT_TRUE(becomesTrue([this] { return sink.has(Kind::Added, L"new.txt"); }));
}

TEST_F(DesktopWatcherTest, AStopEndsTheSearchForALostFolder) {
    writeFile(pathOf(L"place"));
    EXPECT_LT(leastSecondsToStop(pathOf(L"place")), 0.5);
}

}  // namespace
}  // namespace varnelo
