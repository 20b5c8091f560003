// Everybody at once: what ThreadSanitizer has to say about it.

#include <gtest/gtest.h>

#include <condition_variable>
#include <mutex>
#include <thread>

#include "host/index/monitor_world.h"
#include "index/index_service.h"
#include "support/scripted_elevation.h"
#include "support/temp_folder.h"

namespace varnelo {
namespace {

// Lets threads work once more each time that something happened, so that nobody holds a lock all the time.
class Beat {
public:
    void happen() {
        const std::lock_guard lock(mutex);
        ++count;
        changed.notify_all();
    }
    void end() {
        const std::lock_guard lock(mutex);
        ended = true;
        changed.notify_all();
    }
    // False at the end.
    bool waitFor(std::uint64_t more) {
        std::unique_lock lock(mutex);
        changed.wait(lock, [&] { return ended || count >= more; });
        return !ended;
    }
    std::uint64_t now() {
        const std::lock_guard lock(mutex);
        return count;
    }

private:
    std::mutex mutex;
    std::condition_variable changed;
    std::uint64_t count = 0;
    bool ended = false;
};

TEST(MonitorThreadsTest, MonitorSearchesSortingAndSavingGetAlong) {
    constexpr std::uint64_t kFiles = 400;
    constexpr std::uint64_t kRound = 40;  // each of the others works once at least while so many files come
    MonitorWorld world;
    const test::TempFolder folder;
    Beat told;
    FileChangeMonitor monitor(world.index, world.volumes,
                              [](std::chrono::milliseconds) { std::this_thread::yield(); });
    monitor.setLongestHold(std::chrono::milliseconds(0));
    ASSERT_TRUE(monitor.start([&](const FileChange&) { told.happen(); }));

    Beat worked;
    const auto repeat = [&](auto work) {
        return std::thread([&, work] {
            std::uint64_t next = 0;
            do {
                next = told.now() + 20;
                {
                    const std::lock_guard lock(world.index.mutex);
                    work();
                }
                worked.happen();
            } while (told.waitFor(next));
        });
    };
    std::vector<std::thread> others;
    others.push_back(repeat([&] { world.index.searchNames(L"file"); }));
    others.push_back(repeat([&] { world.index.searchNames(L"*1*;*.t?t"); }));
    others.push_back(repeat([&] {
        auto ids = world.index.searchNames(L"e");
        world.index.sortResults(ids, NTFSIndex::kSortByPath, true);
        world.index.entriesForRange(ids, 0, 50);
    }));
    others.push_back(repeat([&] { EXPECT_TRUE(world.index.saveCache(folder.path(), L"ntfs.cache")); }));

    for (std::uint64_t i = 0; i < kFiles; ++i) {
        world.volumes.locked([&] {
            const std::wstring name = L"file " + std::to_wstring(i) + L".txt";
            world.closes(100 + i, name, usn::kFileCreate);
            world.closes(100 + i, L"new " + name, usn::kRenameNewName);
            if (i % 2 == 0) world.closes(100 + i, L"new " + name, usn::kFileDelete);
        });
        told.waitFor(i);  // some lie in one batch, others do not
        if ((i + 1) % kRound != 0) continue;
        told.waitFor((i + 1) * 5 / 2);
        worked.waitFor((i + 1) / kRound * others.size());
    }
    told.end();
    for (std::thread& thread : others) thread.join();
    monitor.stop();
    EXPECT_EQ(told.now(), kFiles * 5 / 2);
    EXPECT_GE(worked.now(), kFiles / kRound * others.size());

    NTFSIndex read;
    ASSERT_TRUE(world.index.saveCache(folder.path(), L"ntfs.cache"));
    ASSERT_TRUE(read.loadCache(folder.path(), L"ntfs.cache"));
    EXPECT_EQ(read.searchNames(L"file").size(), kFiles / 2);
    EXPECT_EQ(read.searchNames(L"file"), world.index.searchNames(L"file"));
}

TEST(MonitorThreadsTest, RebuildsSearchesAndAStopGetAlong) {
    MonitorWorld world;
    const test::TempFolder folder;
    for (std::uint64_t i = 0; i < 200; ++i) {
        world.c().add({100 + i, kRootFrn, L"file " + std::to_wstring(i)}, test::MftRecordBytes());
    }
    Beat scanned;
    world.c().recordOf = [&](std::uint64_t) {
        scanned.happen();
        return test::MftRecordBytes().ended();
    };
    Beat rebuilt;
    test::ScriptedElevation elevation;
    IndexService service(world.index, world.volumes, elevation, {{}, {}, [&] { rebuilt.happen(); }},
                         folder.path());
    std::thread first([&] { service.start(); });
    std::thread second([&] {
        for (int i = 0; i < 20; ++i) service.rebuild();
    });
    std::thread searcher([&] {
        do {
            const std::lock_guard lock(world.index.mutex);
            const std::size_t found = world.index.searchNames(L"file").size();
            EXPECT_TRUE(found == 0 || found == 200) << found;
        } while (scanned.waitFor(scanned.now() + 10));
    });
    rebuilt.waitFor(5);
    service.stop();
    EXPECT_FALSE(service.monitoring());
    first.join();
    second.join();
    scanned.end();
    searcher.join();
    EXPECT_FALSE(service.monitoring());
}

}  // namespace
}  // namespace varnelo
