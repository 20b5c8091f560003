#include "index/in_stretches.h"

#include <gtest/gtest.h>

#include <atomic>
#include <mutex>
#include <set>
#include <stdexcept>
#include <thread>
#include <vector>

#include "support/gate.h"

namespace varnelo {
namespace {

TEST(InStretchesTest, EachPlaceIsPassedOnce) {
    for (const std::size_t count : {0, 1, 6, 7, 8, 13, 14, 15, 700, 1000}) {
        std::vector<int> passed(count, 0);
        std::atomic<std::size_t> calls = 0;
        inStretches(count, 7, [&](std::size_t begin, std::size_t end) {
            ASSERT_EQ(begin % 7, 0u);
            ASSERT_TRUE(end == begin + 7 || end == count) << begin << " to " << end;
            ASSERT_LT(begin, end);
            ++calls;
            for (std::size_t i = begin; i < end; ++i) ++passed[i];
        });
        EXPECT_EQ(passed, std::vector<int>(count, 1));
        EXPECT_EQ(calls, (count + 6) / 7);
    }
}

TEST(InStretchesTest, AStretchAloneIsPassedByTheCaller) {
    std::thread::id by;
    inStretches(7, 7, [&](std::size_t, std::size_t) { by = std::this_thread::get_id(); });
    EXPECT_EQ(by, std::this_thread::get_id());
}

TEST(InStretchesTest, SeveralThreadsWorkAtATimeWhereThereAreCores) {
    const int expected = std::thread::hardware_concurrency() > 1 ? 2 : 1;
    test::Gate allAreHere(expected);
    std::mutex mutex;
    std::set<std::thread::id> threads;
    inStretches(2, 1, [&](std::size_t, std::size_t) {
        {
            const std::lock_guard lock(mutex);
            threads.insert(std::this_thread::get_id());
        }
        allAreHere.arriveAndWait();
    });
    EXPECT_EQ(threads.size(), static_cast<std::size_t>(expected));
}

TEST(InStretchesTest, NoMoreThanFourThreadsWork) {
    std::atomic<int> atWork = 0;
    std::atomic<int> most = 0;
    inStretches(64, 1, [&](std::size_t, std::size_t) {
        const int now = ++atWork;
        for (int before = most; before < now && !most.compare_exchange_weak(before, now);) {
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        --atWork;
    });
    EXPECT_LE(most, 4);
}

TEST(InStretchesTest, WhatIsThrownArrivesAfterAllHaveReturned) {
    std::atomic<int> atWork = 0;
    const auto use = [&](std::size_t begin, std::size_t) {
        ++atWork;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        --atWork;
        if (begin == 5) throw std::length_error("the sixth");
    };
    EXPECT_THROW(inStretches(20, 1, use), std::length_error);
    EXPECT_EQ(atWork, 0);
    EXPECT_THROW(inStretches(6, 1, use), std::length_error) << "the last of them";
}

}  // namespace
}  // namespace varnelo
