#include "views/task_pool.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <string>
#include <vector>

namespace varnelo {
namespace {

TEST(TaskPoolTest, OneWorkerRunsTasksOldestFirst) {
    std::string order;
    {
        TaskPool pool(1);
        for (const char letter : std::string("abcdef"))
            pool.enqueue(L"", [&order, letter] { order += letter; });
    }
    EXPECT_EQ(order, "abcdef");
}

TEST(TaskPoolTest, TheDestructorFinishesWhatIsQueued) {
    std::atomic<int> done{0};
    {
        TaskPool pool(3);
        for (int i = 0; i < 1000; ++i) pool.enqueue(L"", [&done] { ++done; });
    }
    EXPECT_EQ(done, 1000);
}

TEST(TaskPoolTest, TwoWorkersRunTwoTasksAtOnce) {
    TaskPool pool(2);
    std::promise<void> first;
    std::promise<void> second;
    std::promise<void> bothDone;
    std::atomic<int> left{2};
    const auto meet = [&](std::promise<void>& mine, std::promise<void>& other) {
        mine.set_value();
        other.get_future().wait();
        if (--left == 0) bothDone.set_value();
    };
    pool.enqueue(L"", [&] { meet(first, second); });
    pool.enqueue(L"", [&] { meet(second, first); });
    bothDone.get_future().wait();
    pool.stop();
    EXPECT_EQ(left, 0);
}

TEST(TaskPoolTest, ATaskMayQueueAnother) {
    std::atomic<int> done{0};
    TaskPool pool(1);
    std::promise<void> finished;
    pool.enqueue(L"", [&] {
        pool.enqueue(L"", [&] {
            ++done;
            finished.set_value();
        });
    });
    finished.get_future().wait();
    EXPECT_EQ(done, 1);
}

TEST(TaskPoolTest, StoppingTwiceIsStoppingOnceAndLaterTasksAreDropped) {
    std::atomic<int> done{0};
    TaskPool pool(2);
    pool.enqueue(L"", [&done] { ++done; });
    pool.stop();
    pool.stop();
    pool.enqueue(L"", [&done] { ++done; });
    EXPECT_EQ(done, 1);
}

TEST(TaskPoolTest, ATaskThatIsDroppedIsNotCounted) {
    LoadProgress progress;
    TaskPool pool(1, &progress);
    pool.stop();
    pool.enqueue(L"late", [] {});
    EXPECT_EQ(progress.total, 0u);
    EXPECT_FALSE(progress.active);
}

TEST(TaskPoolTest, ProgressThatNobodyListensToIsCountedAllTheSame) {
    LoadProgress progress;
    {
        TaskPool pool(1, &progress);
        pool.enqueue(L"index", [] {});
    }
    EXPECT_EQ(progress.done, 1u);
    EXPECT_EQ(progress.label, L"index");
}

// Each report of the progress as a word.
struct RecordedProgress : LoadProgress {
    std::vector<std::wstring> reports;  // guarded by mutex, which onChange is called with

    RecordedProgress() {
        onChange = [this] {
            reports.push_back(label + L" " + std::to_wstring(done) + L"/" + std::to_wstring(total) +
                              (active ? L" active" : L""));
        };
    }
};

TEST(TaskPoolTest, ProgressIsToldWhenATaskIsQueuedBegunAndDone) {
    RecordedProgress progress;
    {
        TaskPool pool(1, &progress);
        pool.enqueue(L"index", [] {});
    }
    EXPECT_EQ(progress.reports,
              (std::vector<std::wstring>{L" 0/1 active", L"index 0/1 active", L"index 1/1"}));
}

TEST(TaskPoolTest, ProgressIsActiveUntilTheLastTaskIsDone) {
    RecordedProgress progress;
    std::promise<void> gate;
    {
        TaskPool pool(1, &progress);
        pool.enqueue(L"a", [&gate] { gate.get_future().wait(); });
        pool.enqueue(L"b", [] {});
        gate.set_value();
    }
    EXPECT_EQ(progress.reports.size(), 6u);
    EXPECT_EQ(progress.reports.back(), L"b 2/2");
    EXPECT_EQ(progress.reports[progress.reports.size() - 3], L"a 1/2 active");
}

TEST(TaskPoolTest, DoneNeverRunsAheadOfTotal) {
    LoadProgress progress;
    std::atomic<int> wrong{0};
    progress.onChange = [&] {
        if (progress.done > progress.total || progress.active != (progress.done < progress.total)) ++wrong;
    };
    {
        TaskPool pool(4, &progress);
        for (int i = 0; i < 2000; ++i) pool.enqueue(L"", [] {});
    }
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(progress.done, 2000u);
    EXPECT_FALSE(progress.active);
}

TEST(TaskPoolTest, AResetZeroesTheProgressButKeepsItsListener) {
    RecordedProgress progress;
    {
        TaskPool pool(1, &progress);
        pool.enqueue(L"a", [] {});
    }
    progress.active = true;
    progress.reset();
    EXPECT_EQ(progress.total, 0u);
    EXPECT_EQ(progress.done, 0u);
    EXPECT_EQ(progress.label, L"");
    EXPECT_FALSE(progress.active);
    EXPECT_TRUE(progress.onChange);
}

TEST(TaskPoolTest, WhatATaskHoldsIsGoneBeforeItCountsAsDone) {
    LoadProgress progress;
    const auto held = std::make_shared<int>(1);
    std::atomic<long> usesAtTheEnd{0};
    progress.onChange = [&] {
        if (progress.done == 1) usesAtTheEnd = held.use_count();
    };
    {
        TaskPool pool(1, &progress);
        pool.enqueue(L"", [copy = held] {});
    }
    EXPECT_EQ(usesAtTheEnd, 1);
}

TEST(TaskPoolDeathTest, ATaskThatThrowsEndsTheProcessAndNotSilently) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            TaskPool pool(1);
            pool.enqueue(L"", [] { throw std::runtime_error("lost"); });
            pool.stop();
        },
        "lost");
}

}  // namespace
}  // namespace varnelo
