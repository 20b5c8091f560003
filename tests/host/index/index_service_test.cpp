#include "index/index_service.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <optional>
#include <thread>

#include "host/index/cache_fixture.h"
#include "platform/plain_file.h"
#include "support/gate.h"
#include "support/scripted_elevation.h"
#include "support/scripted_volumes.h"

namespace varnelo {
namespace {

using test::Gate;
using test::MftRecordBytes;
using Lines = std::vector<std::wstring>;

class IndexServiceTest : public ::testing::Test, protected CacheFixture {
protected:
    IndexServiceTest() { c().add({24, 5, L"scanned.txt"}, MftRecordBytes().residentData(7)); }

    test::ScriptedVolume& c() { return volumes[L'C']; }
    void withoutRights() {
        volumes.locked([this] { c().opens = false; });
    }
    // A cache of these names, as an earlier run left it.
    void givenCache(const std::vector<std::wstring>& names) {
        NTFSIndex earlier;
        earlier.currentVolume = earlier.volumeIndexOf(L'C').value();
        for (std::size_t i = 0; i < names.size(); ++i) earlier.addRecord({100 + i, 5, 0, 0, 0, 0}, names[i]);
        ASSERT_TRUE(save(earlier));
    }
    IndexHooks hooks() {
        return {[this](const FileChange& change) { changes.push_back(change); }, [this] { note("ready"); },
                [this] { note("rebuilt"); }};
    }
    // The lock that a hook may want is free, and so is the service's own.
    void note(const std::string& what) {
        calls.push_back(what);
        EXPECT_TRUE(index.mutex.try_lock());
        index.mutex.unlock();
        foundThen = found(L"");
    }
    // What the tasks say, without the lines of the loader.
    Lines linesOf(const std::function<void()>& run) const {
        const LogCapture log;
        run();
        Lines lines = log.lines();
        std::erase_if(lines, [](const std::wstring& line) { return line.find(L"loadCache") != line.npos; });
        return lines;
    }
    Lines start() {
        return linesOf([this] { service.start(); });
    }
    Lines rebuild() {
        return linesOf([this] { service.rebuild(); });
    }
    // All live names that hold the text, "" for all.
    Lines found(const std::wstring& text) {
        Lines names;
        const std::lock_guard lock(index.mutex);
        for (std::uint32_t i = 0; i < index.records().size(); ++i) {
            const std::wstring name = index.nameOf(i);
            if (!index.records()[i].deleted() && name.find(text) != name.npos) names.push_back(name);
        }
        return names;
    }
    // What the cache on disk holds; nothing without a whole one.
    std::optional<std::size_t> saved() const {
        NTFSIndex read;
        if (!load(read)) return std::nullopt;
        return read.records().size();
    }

    test::ScriptedVolumes volumes;
    test::ScriptedElevation elevation;
    NTFSIndex index;
    std::vector<FileChange> changes;
    std::vector<std::string> calls;
    Lines foundThen;
    IndexService service{index, volumes, elevation, hooks(), folder.path()};
};

TEST_F(IndexServiceTest, AStartWithACacheAndRightsLoadsAndFollows) {
    givenCache({L"a", L"b"});
    EXPECT_EQ(start(), Lines{L"[INFO] NTFS live monitoring started"});
    EXPECT_TRUE(service.monitoring());
    EXPECT_EQ(found(L""), (Lines{L"a", L"b"}));
    EXPECT_EQ(calls, std::vector<std::string>{"ready"});
    EXPECT_EQ(foundThen, (Lines{L"a", L"b"}));
    EXPECT_TRUE(elevation.runs.empty());
    EXPECT_TRUE(c().enumerations.empty()) << "no scan";
}

TEST_F(IndexServiceTest, AStartWithACacheButWithoutRightsDoesNotFollow) {
    givenCache({L"a"});
    withoutRights();
    EXPECT_EQ(start(),
              Lines{L"[INFO] NTFS data loaded from cache \u2013 live monitoring disabled (no admin rights)"});
    EXPECT_FALSE(service.monitoring());
    EXPECT_EQ(found(L""), Lines{L"a"});
}

TEST_F(IndexServiceTest, OnlyTheFirstVolumeIsAskedWhetherJournalsCanBeRead) {
    NTFSIndex earlier;
    earlier.volumeIndexOf(L'D');
    earlier.volumeIndexOf(L'C');
    earlier.addRecord({100, 5, 0, 0, 0, 0}, L"a");
    ASSERT_TRUE(save(earlier));
    volumes[L'D'].hasJournal = false;
    EXPECT_EQ(start().size(), 1u);
    EXPECT_FALSE(service.monitoring());
    EXPECT_EQ(volumes[L'D'].opened, 1);
    EXPECT_EQ(c().opened, 0);
}

TEST_F(IndexServiceTest, ACacheWithoutRecordsIsNotFollowedAndSaysNothing) {
    givenCache({});
    EXPECT_EQ(start(), Lines{});
    EXPECT_FALSE(service.monitoring());
    EXPECT_EQ(calls, std::vector<std::string>{"ready"});
    EXPECT_TRUE(c().enumerations.empty());
}

TEST_F(IndexServiceTest, ACacheWithoutVolumesIsNotFollowed) {
    NTFSIndex earlier;
    earlier.addRecord({100, 5, 0, 0, 0, 0}, L"nowhere");
    ASSERT_TRUE(save(earlier));
    EXPECT_EQ(start(),
              Lines{L"[INFO] NTFS data loaded from cache \u2013 live monitoring disabled (no admin rights)"});
    EXPECT_FALSE(service.monitoring());
}

TEST_F(IndexServiceTest, AFirstStartWithRightsScansSavesAndFollows) {
    EXPECT_EQ(start(), (Lines{L"[INFO] NTFS scan completed with admin rights",
                              L"[INFO] NTFS live monitoring started"}));
    EXPECT_TRUE(service.monitoring());
    EXPECT_EQ(found(L""), Lines{L"scanned.txt"});
    EXPECT_EQ(saved(), 1u);
}

TEST_F(IndexServiceTest, AScanThatWorkedIsFollowedWithoutAsking) {
    c().recordOf = [this](std::uint64_t) {
        c().hasJournal = false;
        return MftRecordBytes().ended();
    };
    EXPECT_EQ(start(), (Lines{L"[INFO] NTFS scan completed with admin rights",
                              L"[INFO] NTFS live monitoring started"}))
        << "the line tells of the attempt";
    EXPECT_FALSE(service.monitoring());
}

TEST_F(IndexServiceTest, AFirstStartOfAnAdministratorRaisesTheHelperAndLoadsWhatItLeft) {
    withoutRights();
    elevation.admin = true;
    elevation.helper = [this] { givenCache({L"of the helper"}); };
    EXPECT_EQ(
        start(),
        (Lines{L"[INFO] NTFS scan requires elevation, launching helper...",
               L"[INFO] NTFS cache loaded after elevated scan",
               L"[INFO] NTFS data loaded from cache \u2013 live monitoring disabled (no admin rights)"}));
    EXPECT_EQ(elevation.runs, Lines{L"--ntfs-scan 120000"});
    EXPECT_EQ(found(L""), Lines{L"of the helper"});
}

TEST_F(IndexServiceTest, AHelperThatLeavesNothingIsTold) {
    // One fixed drive is no NTFS volume: the helper saves nothing either.
    volumes[L'D'].volumeData = {};
    elevation.admin = true;
    elevation.helper = [this] { EXPECT_FALSE(scanAndSave(volumes, folder.path())); };
    EXPECT_EQ(start(), (Lines{L"[INFO] NTFS scan requires elevation, launching helper...",
                              L"[WARN] NTFS cache still missing after elevated scan",
                              L"[INFO] NTFS live monitoring started"}));
    EXPECT_FALSE(exists(kName));
    EXPECT_EQ(found(L""), Lines{L"scanned.txt"}) << "what the failed scan has gathered stays";
}

TEST_F(IndexServiceTest, ARefusedElevationIsTold) {
    withoutRights();
    elevation.admin = true;
    elevation.agrees = false;
    EXPECT_EQ(start(), (Lines{L"[INFO] NTFS scan requires elevation, launching helper...",
                              L"[WARN] User declined elevation for NTFS scan"}));
    EXPECT_EQ(found(L""), Lines{});
    EXPECT_EQ(calls, std::vector<std::string>{"ready"});
}

// Nothing tells an empty cache from that of a machine without files: only a rebuild asks again.
TEST_F(IndexServiceTest, AfterARefusalTheEmptyIndexIsSavedAndTheNextStartDoesNotAsk) {
    withoutRights();
    elevation.admin = true;
    elevation.agrees = false;
    start();
    service.stop();
    EXPECT_TRUE(service.save());
    EXPECT_EQ(bytes().size(), 64u);
    IndexService next(index, volumes, elevation, hooks(), folder.path());
    EXPECT_EQ(linesOf([&] { next.start(); }), Lines{});
    EXPECT_EQ(elevation.runs.size(), 1u);
}

TEST_F(IndexServiceTest, AnEmptyIndexLeavesTheCacheThatASlowHelperWroteSince) {
    withoutRights();
    elevation.admin = true;
    start();
    givenCache({L"found late.txt"});
    const Bytes late = bytes();
    service.stop();
    EXPECT_FALSE(service.save());
    EXPECT_EQ(bytes(), late);
}

TEST_F(IndexServiceTest, AUserWhoIsNoAdministratorGetsNoPrompt) {
    withoutRights();
    EXPECT_EQ(start(), Lines{L"[INFO] Non-admin user \u2013 NTFS scan skipped (no elevation possible)"});
    EXPECT_TRUE(elevation.runs.empty());
    EXPECT_FALSE(exists(kName));
}

TEST_F(IndexServiceTest, AScanAddsToWhatABrokenCacheHadInFront) {
    givenCache({L"in front"});
    const Bytes whole = bytes();
    const std::ptrdiff_t pool = 8 + 8 + 2 + 8 + 48 + 8 + 2 * 9;
    write(path(), Bytes(whole.begin(), whole.begin() + pool + 4));
    EXPECT_EQ(start().front(), L"[INFO] NTFS scan completed with admin rights");
    EXPECT_EQ(found(L""), (Lines{L"in front", L"scanned.txt"}));
    EXPECT_EQ(index.recordByKey(100), std::nullopt) << "nobody finds what was read before the fault";
    EXPECT_EQ(index.recordByKey(24), 1u);
}

TEST_F(IndexServiceTest, ACacheFolderThatCannotBeMadeCountsAsMissing) {
    write(folder.file(L"file"), {1});
    IndexService elsewhere(index, volumes, elevation, hooks(), folder.file(L"file") + L"/below");
    const Lines lines = linesOf([&] { elsewhere.start(); });
    EXPECT_EQ(lines.front(), L"[INFO] NTFS scan completed with admin rights");
    elsewhere.rebuild();
    elsewhere.stop();
    EXPECT_FALSE(elsewhere.save());
    EXPECT_FALSE(scanAndSave(volumes, folder.file(L"file") + L"/below"));
}

TEST_F(IndexServiceTest, ARebuildWithRightsScansSavesAndFollowsAgain) {
    givenCache({L"old", L"older"});
    start();
    calls.clear();
    EXPECT_EQ(rebuild(), (Lines{L"[INFO] NTFS index rebuild completed with admin rights",
                                L"[INFO] NTFS live monitoring restarted after rebuild"}));
    EXPECT_TRUE(service.monitoring());
    EXPECT_EQ(found(L""), Lines{L"scanned.txt"});
    EXPECT_EQ(saved(), 1u);
    EXPECT_EQ(calls, (std::vector<std::string>{"ready", "rebuilt"}));
}

TEST_F(IndexServiceTest, ARebuildStopsTheMonitorAndEmptiesIndexAndDiskBeforeItScans) {
    givenCache({L"old"});
    start();
    bool asked = false;
    c().enumerate = [&](auto, auto) -> Volume::Answer {
        asked = true;
        EXPECT_FALSE(service.monitoring());
        EXPECT_EQ(found(L""), Lines{});
        EXPECT_FALSE(exists(kName));
        return std::nullopt;
    };
    rebuild();
    EXPECT_TRUE(asked);
}

TEST_F(IndexServiceTest, ARebuildOfAnAdministratorRaisesTheHelper) {
    withoutRights();
    elevation.admin = true;
    elevation.helper = [this] { givenCache({L"of the helper"}); };
    EXPECT_EQ(rebuild(), (Lines{L"[INFO] NTFS rebuild requires elevation, launching helper...",
                                L"[INFO] NTFS cache loaded after elevated rebuild"}))
        << "and no line tells that nothing is followed";
    EXPECT_EQ(elevation.runs, Lines{L"--ntfs-scan 120000"});
    EXPECT_EQ(found(L""), Lines{L"of the helper"});
}

TEST_F(IndexServiceTest, ARebuildForgetsWhatAFailedScanHasLeft) {
    volumes[L'D'].volumeData = {};
    elevation.admin = true;
    EXPECT_EQ(rebuild(), (Lines{L"[INFO] NTFS rebuild requires elevation, launching helper...",
                                L"[WARN] NTFS cache still missing after elevated rebuild"}));
    EXPECT_EQ(found(L""), Lines{});
    EXPECT_FALSE(service.monitoring());
}

TEST_F(IndexServiceTest, ARefusedRebuildLeavesNothing) {
    givenCache({L"old"});
    start();
    withoutRights();
    elevation.admin = true;
    elevation.agrees = false;
    EXPECT_EQ(rebuild(), (Lines{L"[INFO] NTFS rebuild requires elevation, launching helper...",
                                L"[WARN] User declined elevation for NTFS rebuild"}));
    EXPECT_EQ(found(L""), Lines{});
    EXPECT_FALSE(exists(kName));
    EXPECT_FALSE(service.monitoring());
}

TEST_F(IndexServiceTest, ARebuildWithoutAnyWayToRightsIsTold) {
    withoutRights();
    EXPECT_EQ(rebuild(), Lines{L"[INFO] Non-admin user \u2013 NTFS rebuild skipped (no elevation possible)"});
    EXPECT_EQ(calls, (std::vector<std::string>{"ready", "rebuilt"}));
}

TEST_F(IndexServiceTest, ARebuildFollowsWhatAFailedScanOfSomeVolumesFound) {
    volumes[L'D'].volumeData = {};
    EXPECT_EQ(rebuild(), (Lines{L"[INFO] Non-admin user \u2013 NTFS rebuild skipped (no elevation possible)",
                                L"[INFO] NTFS live monitoring restarted after rebuild"}));
    EXPECT_EQ(found(L""), Lines{L"scanned.txt"});
}

TEST_F(IndexServiceTest, ChangesReachTheHookUntilTheStop) {
    Gate told(1);
    IndexService following(index, volumes, elevation,
                           {[&](const FileChange& change) {
                                EXPECT_EQ(change.name, L"new");
                                told.countDown();
                            },
                            {},
                            {}},
                           folder.path());
    following.start();
    volumes.locked([this] { c().happen({50, 5, L"new", test::kArchive, 0x80000100}); });
    told.wait();
    following.stop();
    EXPECT_FALSE(following.monitoring());
    EXPECT_EQ(found(L"new"), Lines{L"new"});
}

TEST_F(IndexServiceTest, ClearingTheIndexEndsTheMonitor) {
    start();
    ASSERT_TRUE(service.monitoring());
    index.clearIndex();
    EXPECT_FALSE(service.monitoring());
}

TEST_F(IndexServiceTest, AnIndexThatOutlivesItsServiceMayBeCleared) {
    NTFSIndex other;
    {
        IndexService served(other, volumes, elevation, {}, folder.path());
        EXPECT_TRUE(other.stopMonitor);
    }
    EXPECT_FALSE(other.stopMonitor);
    other.clearIndex();
}

TEST_F(IndexServiceTest, AStopInTheMidstOfAScanKeepsTheIndexAsItWas) {
    c().recordOf = [this](std::uint64_t) {
        service.requestStop();
        return MftRecordBytes().ended();
    };
    c().add({25, 5, L"another.txt"}, MftRecordBytes());
    EXPECT_EQ(start(), Lines{});
    EXPECT_EQ(c().recordsAsked.size(), 1u);
    EXPECT_EQ(found(L""), Lines{});
    EXPECT_EQ(calls, std::vector<std::string>{"ready"}) << "what waits for the index waits no longer";
    service.stop();
    EXPECT_FALSE(service.save()) << "half an index would be taken for a whole one";
    EXPECT_FALSE(exists(kName));
}

TEST_F(IndexServiceTest, ARebuildThatIsBrokenOffLeavesNoCache) {
    givenCache({L"old"});
    start();
    c().recordOf = [this](std::uint64_t) {
        service.requestStop();
        return MftRecordBytes().ended();
    };
    c().add({25, 5, L"another.txt"}, MftRecordBytes());
    rebuild();
    service.stop();
    EXPECT_FALSE(service.save()) << "the next start scans";
    EXPECT_FALSE(exists(kName));
}

TEST_F(IndexServiceTest, AStopEndsTheWaitForTheHelper) {
    withoutRights();
    elevation.admin = true;
    elevation.waiting = [this](const std::function<bool()>& stopRequested) {
        EXPECT_FALSE(stopRequested());
        service.requestStop();
        EXPECT_TRUE(stopRequested());
    };
    EXPECT_EQ(start(), Lines{L"[INFO] NTFS scan requires elevation, launching helper..."});
    EXPECT_FALSE(service.save());
}

TEST_F(IndexServiceTest, AfterAStopTasksOnlyCallTheirHooks) {
    givenCache({L"kept"});
    service.stop();
    EXPECT_EQ(start(), Lines{});
    EXPECT_EQ(rebuild(), Lines{});
    EXPECT_EQ(calls, (std::vector<std::string>{"ready", "ready", "rebuilt"}));
    EXPECT_FALSE(service.save());
    EXPECT_EQ(saved(), 1u) << "the cache is as it was";
}

TEST_F(IndexServiceTest, AStopAfterAWholeStartSavesTheIndexAsItIsThen) {
    start();
    service.stop();
    {
        const std::lock_guard lock(index.mutex);
        index.createRecord({50, 5, 0, 0, 0, 0}, L"later");
    }
    EXPECT_TRUE(service.save());
    EXPECT_EQ(saved(), 2u);
}

TEST_F(IndexServiceTest, AStopWaitsForTheTaskAndNothingFollowsAfterwards) {
    Gate scanning(1);
    Gate go(1);
    c().enumerate = [&](auto, auto) -> Volume::Answer {
        scanning.countDown();
        go.wait();
        return std::nullopt;
    };
    std::thread worker([this] { service.start(); });
    scanning.wait();
    service.requestStop();
    go.countDown();
    service.stop();
    EXPECT_FALSE(service.monitoring());
    worker.join();
    EXPECT_FALSE(service.monitoring());
    EXPECT_EQ(calls, std::vector<std::string>{"ready"});
}

TEST_F(IndexServiceTest, SearchesGoOnWhileATaskRuns) {
    givenCache({L"old"});
    start();
    int searches = 0;
    c().recordOf = [&](std::uint64_t) {
        EXPECT_EQ(found(L""), Lines{});
        ++searches;
        return MftRecordBytes().ended();
    };
    rebuild();
    EXPECT_EQ(searches, 1);
    EXPECT_EQ(found(L""), Lines{L"scanned.txt"});
}

// What a task does when the cache is shown.
class ShowingServiceTest : public IndexServiceTest {
protected:
    std::function<void()> whenShown;
    IndexHooks showingHooks() {
        IndexHooks with = hooks();
        with.onCacheShown = [this] {
            note("shown");
            if (whenShown) whenShown();
        };
        return with;
    }
    std::vector<std::uint32_t> hits(const wchar_t* query) {
        const std::lock_guard lock(index.mutex);
        return index.searchNames(query);
    }
    IndexService showing{index, volumes, elevation, showingHooks(), folder.path()};
};

TEST_F(ShowingServiceTest, ACacheIsSearchedBeforeItIsLoaded) {
    givenCache({L"some report", L"plan"});
    std::size_t linesThen = 0;
    whenShown = [&, log = LogCapture()] {
        linesThen = log.lines().size();
        EXPECT_EQ(hits(L"report"), std::vector<std::uint32_t>{0});
        EXPECT_FALSE(showing.monitoring());
    };
    showing.start();
    EXPECT_EQ(calls, (std::vector<std::string>{"shown", "ready"}));
    EXPECT_EQ(linesThen, 0u);
    EXPECT_EQ(found(L""), (Lines{L"some report", L"plan"}));
    EXPECT_EQ(hits(L"report"), std::vector<std::uint32_t>{0});
    EXPECT_TRUE(showing.monitoring());
}

TEST_F(ShowingServiceTest, WithoutACacheThatLoadsNothingIsShown) {
    givenCache({L"some report", L"plan"});
    const Bytes whole = bytes();
    write(path(), Bytes(whole.begin(), whole.begin() + 200));
    showing.start();
    showing.rebuild();
    EXPECT_EQ(calls, (std::vector<std::string>{"ready", "ready", "rebuilt"}));
}

TEST_F(ShowingServiceTest, BehindTheLoadTheFileIsFree) {
    givenCache({L"old"});
    showing.start();
    {
        const std::lock_guard lock(index.mutex);
        index.createRecord({50, 5, 0, 0, 0, 0}, L"later");
    }
    showing.stop();
    EXPECT_TRUE(showing.save());
    EXPECT_EQ(saved(), 2u);
}

TEST_F(ShowingServiceTest, ARebuildBehindALoadTakesWhatTheHelperPutInThePlaceOfTheFile) {
    givenCache({L"old"});
    showing.start();
    withoutRights();
    elevation.admin = true;
    elevation.helper = [this] {
        EXPECT_FALSE(exists(kName)) << "it could be deleted";
        givenCache({L"of the helper"});
    };
    showing.rebuild();
    EXPECT_EQ(found(L""), Lines{L"of the helper"});
}

#ifdef _WIN32

TEST_F(ShowingServiceTest, WhileItIsShownNobodyReplacesTheFile) {
    givenCache({L"old"});
    const std::wstring other = folder.file(L"other");
    write(other, bytes());
    whenShown = [&] { EXPECT_FALSE(moveFileOver(other.c_str(), path().c_str())); };
    showing.start();
    EXPECT_EQ(calls.front(), "shown");
    EXPECT_TRUE(moveFileOver(other.c_str(), path().c_str())) << "but as soon as it is loaded";
}

#else

TEST_F(ShowingServiceTest, ACacheThatIsGoneBeforeItIsLoadedIsShownNoLonger) {
    givenCache({L"old"});
    whenShown = [this] { std::filesystem::remove(path()); };
    c().enumerate = [&](auto, auto) -> Volume::Answer {
        EXPECT_EQ(found(L""), Lines{});
        EXPECT_EQ(hits(L"old"), std::vector<std::uint32_t>{});
        return std::nullopt;
    };
    showing.start();
    EXPECT_EQ(calls, (std::vector<std::string>{"shown", "ready"}));
    EXPECT_EQ(c().enumerations.size(), 1u);
    EXPECT_EQ(found(L""), Lines{});
    EXPECT_EQ(saved(), 0u) << "the scan has found nothing and saved that";
}

#endif

TEST_F(ShowingServiceTest, SearchesMeanwhileFindNothingOrAll) {
    std::vector<std::wstring> names;
    for (int i = 0; i < 20000; ++i) names.push_back(L"report " + std::to_wstring(i));
    givenCache(names);
    Gate searched(1);
    std::atomic<bool> ended{false};
    std::thread searcher([&] {
        for (bool last = false; !last;) {
            last = ended;
            const std::size_t found = hits(L"report").size();
            EXPECT_TRUE(found == 0 || found == names.size()) << found;
            if (found != 0) searched.countDown();
            std::this_thread::sleep_for(std::chrono::microseconds(50));  // lets the others at the lock
        }
    });
    IndexHooks quiet;
    quiet.onCacheShown = [&] { searched.wait(); };
    IndexService searchedOne(index, volumes, elevation, quiet, folder.path());
    searchedOne.start();
    ended = true;
    searcher.join();
    EXPECT_EQ(hits(L"report").size(), names.size());
}

TEST_F(IndexServiceTest, WhatIsServedIsPreparedForSearches) {
    const auto prepared = [this] {
        const std::lock_guard lock(index.mutex);
        const auto& words = index.columns().absentWords();
        return !words.empty() && std::count(words.begin(), words.end(), kAnyWord) == 0;
    };
    givenCache({L"a", L"b"});
    start();
    EXPECT_TRUE(prepared()) << "what was loaded";
    rebuild();
    EXPECT_EQ(found(L""), Lines{L"scanned.txt"});
    EXPECT_TRUE(prepared()) << "what was scanned";
}

TEST_F(IndexServiceTest, TheHelperRunSavesWhatItScanned) {
    EXPECT_TRUE(scanAndSave(volumes, folder.path()));
    EXPECT_EQ(saved(), 1u);
}

TEST_F(IndexServiceTest, TheHelperRunSavesNothingWhenAVolumeFailed) {
    volumes[L'D'].opens = false;
    EXPECT_FALSE(scanAndSave(volumes, folder.path()));
    EXPECT_FALSE(exists(kName));
}

}  // namespace
}  // namespace varnelo
