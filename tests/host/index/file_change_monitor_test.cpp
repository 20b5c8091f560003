#include "index/file_change_monitor.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

#include "host/index/monitor_world.h"
#include "support/gate.h"

namespace varnelo {
namespace {

using test::Bytes;
using test::Gate;
using test::ScriptedVolume;

class FileChangeMonitorTest : public ::testing::Test, protected MonitorWorld {
protected:
    std::uint64_t position(std::size_t i = 0) const { return monitor.volumeJournals()[i].nextUsn; }
};

TEST_F(FileChangeMonitorTest, ItBeginsAtThePresentEndOfEachJournal) {
    onVolume(L'D');
    onVolume(L'E');
    onVolume(L'F');
    volumes[L'D'].opens = false;
    volumes[L'E'].hasJournal = false;
    volumes[L'F'].nextUsn = 777;
    volumes[L'F'].journalId = 12;
    closes(40, L"long ago", usn::kFileCreate);
    ASSERT_TRUE(follow());
    const auto journals = monitor.volumeJournals();
    ASSERT_EQ(journals.size(), 2u) << "those that fail are left out";
    EXPECT_EQ(journals[0].volume, L"C:");
    EXPECT_EQ(journals[0].volumeIndex, 0);
    EXPECT_EQ(journals[0].nextUsn, c().nextUsn);
    EXPECT_EQ(journals[0].journalId, 700u);
    EXPECT_EQ(journals[1].volume, L"F:");
    EXPECT_EQ(journals[1].volumeIndex, 3);
    EXPECT_EQ(journals[1].nextUsn, 777u);
    EXPECT_EQ(journals[1].journalId, 12u);
    index.currentVolume = 1;
    EXPECT_TRUE(round().empty()) << "what was before is not told";
    EXPECT_TRUE(index.records().empty());
    EXPECT_EQ(index.currentVolume, 3) << "the volume that was read last";
}

TEST_F(FileChangeMonitorTest, WithoutAJournalItDoesNotStart) {
    c().hasJournal = false;
    EXPECT_FALSE(monitor.start([](const FileChange&) {}));
    EXPECT_FALSE(monitor.running());
    index.volumes.clear();
    c().hasJournal = true;
    EXPECT_FALSE(monitor.start([](const FileChange&) {}));
    EXPECT_EQ(c().opened, c().closed);
}

TEST_F(FileChangeMonitorTest, TheRequestIsTheOneThatTheJournalKnows) {
    c().nextUsn = 0x112233445566;
    c().journalId = 0xABCDEF;
    ASSERT_TRUE(follow());
    round();
    Bytes request(40, 0);
    test::put(request, 0, std::uint64_t{0x112233445566});
    test::put(request, 8, 0x8000A307u);
    test::put(request, 32, std::uint64_t{0xABCDEF});
    EXPECT_EQ(c().journalReads, std::vector<Bytes>{request});
}

TEST_F(FileChangeMonitorTest, ABurstIsReadToItsEndInOneRound) {
    ASSERT_TRUE(follow());
    for (std::uint64_t i = 0; i < 3000; ++i) closes(100 + i, L"file " + std::to_wstring(i), usn::kFileCreate);
    const auto told = round();
    ASSERT_EQ(told.size(), 3000u);
    for (std::uint32_t i = 0; i < told.size(); ++i) EXPECT_EQ(told[i].fileIndex, i);
    EXPECT_GT(c().journalReads.size(), 3u) << "64 KiB at a time";
    EXPECT_EQ(position(), c().nextUsn);
    EXPECT_TRUE(round().empty());
    EXPECT_EQ(c().opened, c().closed);
}

TEST_F(FileChangeMonitorTest, RecordsThatAreForNobodyMoveThePositionOn) {
    ASSERT_TRUE(follow());
    happens(40, L"open", usn::kDataExtend);
    c().happenRaw(test::usnRecordOfVersion(3, 96));
    c().happenRaw(test::usnRecordOfVersion(4, 64));
    EXPECT_TRUE(round().empty());
    EXPECT_EQ(position(), c().nextUsn);
    closes(41, L"closed", usn::kFileCreate);
    EXPECT_EQ(round().size(), 1u);
}

TEST_F(FileChangeMonitorTest, AJournalThatWrappedIsNotFollowedUntilTheNextStart) {
    ASSERT_TRUE(follow());
    closes(40, L"lost", usn::kFileCreate);
    c().wrap();
    const std::uint64_t before = position();
    closes(41, L"later", usn::kFileCreate);
    for (int i = 0; i < 3; ++i) EXPECT_TRUE(round().empty());
    EXPECT_EQ(position(), before);
    EXPECT_EQ(c().journalReads.size(), 3u) << "it is tried again each time";
    EXPECT_TRUE(c().enumerations.empty()) << "and never scanned";

    ASSERT_TRUE(follow());
    closes(42, L"now", usn::kFileCreate);
    EXPECT_EQ(round().size(), 1u);
}

TEST_F(FileChangeMonitorTest, AJournalMadeAnewIsReadFromItsBeginning) {
    ASSERT_TRUE(follow());
    c().recreateJournal(701);
    closes(40, L"since then", usn::kFileCreate);
    const auto told = round();
    ASSERT_EQ(told.size(), 1u);
    EXPECT_EQ(told[0].name, L"since then");
    EXPECT_EQ(monitor.volumeJournals()[0].journalId, 701u);
    EXPECT_EQ(position(), c().nextUsn);
}

TEST_F(FileChangeMonitorTest, AVolumeThatCannotBeOpenedIsPassedOverForARound) {
    onVolume(L'D');
    volumes[L'D'];
    ASSERT_TRUE(follow());
    c().opens = false;
    closes(40, L"on C", usn::kFileCreate);
    volumes[L'D'].happen({40, 5, L"on D", test::kArchive, usn::kFileCreate | usn::kClose});
    const std::uint64_t before = position();
    auto told = round();
    EXPECT_EQ(position(), before);
    ASSERT_EQ(told.size(), 1u);
    EXPECT_EQ(told[0].name, L"on D");
    EXPECT_EQ(told[0].volume, 1);
    EXPECT_EQ(record(told[0].fileIndex).volume, 1);
    c().opens = true;
    told = round();
    ASSERT_EQ(told.size(), 1u);
    EXPECT_EQ(told[0].name, L"on C");
    EXPECT_EQ(record(told[0].fileIndex).volume, 0);
}

TEST_F(FileChangeMonitorTest, AQuestionThatFailsDoesNotKeepTheJournalFromBeingRead) {
    ASSERT_TRUE(follow());
    closes(40, L"new", usn::kFileCreate);
    c().hasJournal = false;
    EXPECT_EQ(round().size(), 1u);
    EXPECT_EQ(monitor.volumeJournals()[0].journalId, 700u);
}

TEST_F(FileChangeMonitorTest, EightBytesAreTheEndAndDoNotMoveThePosition) {
    ASSERT_TRUE(follow());
    const std::uint64_t before = position();
    c().readJournal = [](auto, ScriptedVolume::Room room) -> Volume::Answer {
        const Bytes answer = test::usnAnswer(999999, {});
        std::copy(answer.begin(), answer.end(), room.begin());
        return answer.size();
    };
    EXPECT_TRUE(round().empty());
    EXPECT_EQ(position(), before);
}

TEST_F(FileChangeMonitorTest, ANinthByteIsMoreThanTheEndAndMovesThePosition) {
    ASSERT_TRUE(follow());
    std::vector<std::size_t> answers = {9, 8};
    c().readJournal = [&](auto, ScriptedVolume::Room room) -> Volume::Answer {
        const Bytes answer = test::usnAnswer(999999, {});
        std::copy(answer.begin(), answer.end(), room.begin());
        const std::size_t count = answers.front();
        answers.erase(answers.begin());
        return count;
    };
    EXPECT_TRUE(round().empty());
    EXPECT_TRUE(answers.empty());
    EXPECT_EQ(position(), 999999u);
}

TEST_F(FileChangeMonitorTest, AReadHasRoomFor64KiB) {
    ASSERT_TRUE(follow());
    std::size_t bytes = 0;
    c().readJournal = [&bytes](auto, ScriptedVolume::Room room) -> Volume::Answer {
        bytes = room.size();
        return std::nullopt;
    };
    round();
    EXPECT_EQ(bytes, 0x10000u);
}

TEST_F(FileChangeMonitorTest, AJournalThatDoesNotMoveEndsTheRound) {
    ASSERT_TRUE(follow());
    const std::uint64_t here = position();
    c().readJournal = [here](auto, ScriptedVolume::Room room) -> Volume::Answer {
        const Bytes answer = test::usnAnswer(here, {test::usnRecord({40, 5, L"again", 0, usn::kClose})});
        std::copy(answer.begin(), answer.end(), room.begin());
        return answer.size();
    };
    EXPECT_EQ(round().size(), 1u);
    EXPECT_EQ(c().journalReads.size(), 1u);
}

TEST_F(FileChangeMonitorTest, AJournalThatGoesBackEndsTheRound) {
    ASSERT_TRUE(follow());
    std::uint64_t here = position();
    c().readJournal = [&here](auto, ScriptedVolume::Room room) -> Volume::Answer {
        if ((here -= 8) < 4000) return std::nullopt;
        const Bytes answer = test::usnAnswer(here, {test::usnRecord({40, 5, L"again", 0, usn::kClose})});
        std::copy(answer.begin(), answer.end(), room.begin());
        return answer.size();
    };
    round();
    EXPECT_EQ(c().journalReads.size(), 1u);
    EXPECT_EQ(position(), here) << "the next round begins where the journal says";
}

TEST_F(FileChangeMonitorTest, AnAnswerLargerThanItsRoomIsReadAsFarAsTheRoomGoes) {
    ASSERT_TRUE(follow());
    c().readJournal = [](auto, ScriptedVolume::Room room) -> Volume::Answer { return room.size() * 2; };
    EXPECT_TRUE(round().empty());
}

TEST_F(FileChangeMonitorTest, ChangesAreToldInOrderAfterTheBatchAndWithoutTheMutex) {
    bool free = true;
    std::vector<std::size_t> recordsThen;
    ASSERT_TRUE(monitor.findJournals([&](const FileChange& change) {
        free = free && index.mutex.try_lock();
        if (free) {
            recordsThen.push_back(index.records().size());
            index.mutex.unlock();
        }
        changes.push_back(change);
    }));
    closes(40, L"a", usn::kFileCreate);
    closes(41, L"b", usn::kFileCreate);
    closes(40, L"c", usn::kRenameNewName);
    const auto told = round();
    EXPECT_TRUE(free);
    EXPECT_EQ(recordsThen, (std::vector<std::size_t>{2, 2, 2})) << "the whole batch is in the index";
    ASSERT_EQ(told.size(), 3u);
    EXPECT_EQ(told[0].name, L"a");
    EXPECT_EQ(told[1].name, L"b");
    EXPECT_EQ(told[2].path, L"C:\\a");
}

TEST_F(FileChangeMonitorTest, FileRecordsAreAskedForWithoutTheMutex) {
    ASSERT_TRUE(follow());
    int asked = 0;
    c().recordOf = [&](std::uint64_t) {
        const bool free = index.mutex.try_lock();
        if (free) index.mutex.unlock();
        EXPECT_TRUE(free);
        ++asked;
        return test::MftRecordBytes().ended();
    };
    closes(40, L"a", usn::kFileCreate);
    round();
    EXPECT_EQ(asked, 1);
}

TEST_F(FileChangeMonitorTest, ALongBatchGivesTheIndexUpBetweenTwoWholeChanges) {
    int pauses = 0;
    FileChangeMonitor giving(index, volumes, [&](std::chrono::milliseconds) {
        ASSERT_TRUE(index.mutex.try_lock());
        for (const std::uint32_t hit : index.searchNames(L"*")) {
            EXPECT_EQ(record(hit).size, 17u) << "no change is seen half-way";
        }
        EXPECT_EQ(index.searchNames(L"file").size(), index.records().size());
        index.mutex.unlock();
        ++pauses;
    });
    giving.setLongestHold(std::chrono::milliseconds(-1));
    ASSERT_TRUE(giving.findJournals({}));
    c().recordOf = [](std::uint64_t) { return test::MftRecordBytes().nonResidentData(17).ended(); };
    for (std::uint64_t i = 0; i < 100; ++i) closes(100 + i, L"file" + std::to_wstring(i), usn::kFileCreate);
    giving.runRound();
    EXPECT_EQ(pauses, 100);
    EXPECT_EQ(index.records().size(), 100u);
}

// The thread itself. Pauses take no time here, and each tells that it was begun.
class MonitorThreadTest : public ::testing::Test, protected MonitorWorld {
protected:
    void pauseFor(std::chrono::milliseconds time) {
        const std::lock_guard lock(mutex);
        ++pauses;
        paused += time;
        if (onPause) onPause();
        changed.notify_all();
    }
    void waitForPauses(int count) {
        std::unique_lock lock(mutex);
        changed.wait(lock, [&] { return pauses >= count; });
    }

    std::mutex mutex;
    std::condition_variable changed;
    int pauses = 0;
    std::chrono::milliseconds paused{0};
    std::function<void()> onPause;
    FileChangeMonitor threaded{index, volumes, [this](std::chrono::milliseconds time) { pauseFor(time); }};
};

TEST_F(MonitorThreadTest, ARoundComesEveryTenStepsOfFiftyMilliseconds) {
    std::vector<int> pausesAtRound;
    c().readJournal = [&](auto, auto) -> Volume::Answer {
        const std::lock_guard lock(mutex);
        pausesAtRound.push_back(pauses);
        return std::nullopt;
    };
    ASSERT_TRUE(threaded.start([](const FileChange&) {}));
    EXPECT_TRUE(threaded.running());
    waitForPauses(35);
    threaded.stop();
    EXPECT_FALSE(threaded.running());
    ASSERT_GE(pausesAtRound.size(), 4u);
    for (int i = 0; i < 4; ++i) EXPECT_EQ(pausesAtRound[static_cast<std::size_t>(i)], 10 * i);
    EXPECT_EQ(paused, pauses * std::chrono::milliseconds(50));
}

TEST_F(MonitorThreadTest, AStopEndsTheWaitAtItsNextStep) {
    Gate reached(1);
    Gate go(1);
    onPause = [&] {
        if (pauses != 3) return;
        reached.countDown();
        go.wait();
    };
    ASSERT_TRUE(threaded.start([](const FileChange&) {}));
    reached.wait();
    threaded.requestStop();
    go.countDown();
    threaded.stop();
    EXPECT_FALSE(threaded.running());
    EXPECT_EQ(pauses, 3);
    threaded.stop();
}

TEST_F(MonitorThreadTest, AChangeIsToldOnTheMonitorsThread) {
    Gate told(1);
    std::thread::id teller;
    ASSERT_TRUE(threaded.start([&](const FileChange&) {
        teller = std::this_thread::get_id();
        told.countDown();
    }));
    volumes.locked([this] { closes(40, L"new", usn::kFileCreate); });
    told.wait();
    threaded.stop();
    EXPECT_NE(teller, std::this_thread::get_id());
    EXPECT_EQ(index.searchNames(L"new").size(), 1u);
}

TEST_F(MonitorThreadTest, ItMayBeStartedAgainAndBeginsWithThePresentThen) {
    int told = 0;
    ASSERT_TRUE(threaded.start([&](const FileChange&) { ++told; }));
    ASSERT_TRUE(threaded.start([&](const FileChange&) { ++told; })) << "without a stop";
    threaded.stop();
    closes(40, L"meanwhile", usn::kFileCreate);
    Gate fresh(1);
    ASSERT_TRUE(threaded.start([&](const FileChange& change) {
        ++told;
        if (change.name == L"later") fresh.countDown();
    }));
    volumes.locked([this] { closes(41, L"later", usn::kFileCreate); });
    fresh.wait();
    threaded.stop();
    EXPECT_EQ(told, 1);
    EXPECT_EQ(index.searchNames(L"meanwhile").size(), 0u);
}

TEST_F(MonitorThreadTest, ACallbackMayAskForTheEndOfItsOwnThread) {
    Gate asked(1);
    bool startedAgain = true;
    int told = 0;
    ASSERT_TRUE(threaded.start([&](const FileChange&) {
        if (++told != 1) return;
        threaded.stop();
        startedAgain = threaded.start([](const FileChange&) {});
        asked.countDown();
    }));
    volumes.locked([this] {
        closes(40, L"new", usn::kFileCreate);
        closes(41, L"of the same batch", usn::kFileCreate);
    });
    asked.wait();
    threaded.stop();
    EXPECT_FALSE(startedAgain) << "it cannot end and begin itself";
    EXPECT_EQ(told, 2);
    EXPECT_FALSE(threaded.running());
    EXPECT_TRUE(threaded.start([](const FileChange&) {}));
}

TEST_F(MonitorThreadTest, AStopEndsABurstBehindTheBatchThatWasBegun) {
    Gate asked(1);
    std::size_t told = 0;
    ASSERT_TRUE(threaded.start([&](const FileChange&) {
        if (++told != 1) return;
        threaded.stop();
        asked.countDown();
    }));
    volumes.locked([this] {
        for (std::uint64_t i = 0; i < 3000; ++i) closes(100 + i, L"file", usn::kFileCreate);
    });
    asked.wait();
    threaded.stop();
    EXPECT_EQ(told, index.records().size()) << "what was applied is told";
    EXPECT_LT(told, 3000u);
}

TEST_F(MonitorThreadTest, ACallbackMayClearTheIndex) {
    index.stopMonitor = [this] { threaded.stop(); };
    Gate cleared(1);
    ASSERT_TRUE(threaded.start([&](const FileChange&) {
        index.clearIndex();
        cleared.countDown();
    }));
    volumes.locked([this] { closes(40, L"new", usn::kFileCreate); });
    cleared.wait();
    threaded.stop();
    EXPECT_TRUE(index.records().empty());
}

TEST_F(MonitorThreadTest, AStopLeavesTheOtherVolumesOfTheRound) {
    onVolume(L'D');
    Gate reading(1);
    Gate stopping(1);
    volumes[L'D'].readJournal = [](auto, auto) -> Volume::Answer {
        ADD_FAILURE() << "the round goes on";
        return std::nullopt;
    };
    c().readJournal = [&](auto, auto) -> Volume::Answer {
        reading.countDown();
        stopping.wait();
        return std::nullopt;
    };
    ASSERT_TRUE(threaded.start([](const FileChange&) {}));
    reading.wait();
    threaded.requestStop();
    stopping.countDown();
    threaded.stop();
}

TEST(MonitorPauseTest, TheRealWaitEndsWithTheStop) {
    MonitorWorld world;
    Gate read(1);
    world.c().readJournal = [&](auto, auto) -> Volume::Answer {
        read.countDown();
        return std::nullopt;
    };
    FileChangeMonitor real(world.index, world.volumes);
    ASSERT_TRUE(real.start([](const FileChange&) {}));
    read.wait();
    real.stop();
    EXPECT_FALSE(real.running());
}

}  // namespace
}  // namespace varnelo
