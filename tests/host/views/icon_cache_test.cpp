#include "views/icon_cache.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>
#include <vector>

#include "support/gate.h"

namespace varnelo {
namespace {

struct FakeTexture {
    explicit FakeTexture(int number) : index(number) { ++alive; }
    FakeTexture(const FakeTexture&) = delete;
    FakeTexture& operator=(const FakeTexture&) = delete;
    ~FakeTexture() { --alive; }
    int index;
    static std::atomic<int> alive;
};
std::atomic<int> FakeTexture::alive{0};

using Cache = PictureCache<FakeTexture>;

std::shared_ptr<FakeTexture> load(Cache& cache, int index) {
    return cache.obtain(index, [&] { return std::make_shared<FakeTexture>(index); });
}

void fill(Cache& cache, int count) {
    for (int i = 0; i < count; ++i) load(cache, i);
}

TEST(IconCache, AHitGivesThePictureThatTheFirstMissMade) {
    Cache cache;
    const auto first = load(cache, 7);
    int calls = 0;
    const auto second = cache.obtain(7, [&] {
        ++calls;
        return std::make_shared<FakeTexture>(7);
    });
    EXPECT_EQ(first, second);
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(cache.size(), 1U);
}

TEST(IconCache, TheFiveHundredThirteenthIconDropsTheOldest) {
    Cache cache;
    fill(cache, 512);
    EXPECT_TRUE(cache.find(0));
    load(cache, 512);
    EXPECT_EQ(cache.size(), 512U);
    EXPECT_FALSE(cache.find(0));
    EXPECT_TRUE(cache.find(1));
    EXPECT_TRUE(cache.find(512));
}

TEST(IconCache, WhoShowsAPictureKeepsItWhenTheCacheDropsIt) {
    const int before = FakeTexture::alive;
    Cache cache;
    const auto shown = load(cache, 0);
    std::weak_ptr<FakeTexture> unshown = load(cache, 1);
    for (int i = 2; i < 514; ++i) load(cache, i);
    EXPECT_FALSE(cache.find(0));
    EXPECT_EQ(shown->index, 0);
    EXPECT_TRUE(unshown.expired());
    EXPECT_EQ(FakeTexture::alive - before, 513);
}

TEST(IconCache, AHitDoesNotSaveAnEntryFromItsTurn) {
    Cache cache;
    fill(cache, 512);
    for (int i = 0; i < 10; ++i) load(cache, 0);
    load(cache, 512);
    EXPECT_FALSE(cache.find(0));
}

TEST(IconCache, ADroppedIconComesBackAsTheNewest) {
    Cache cache;
    fill(cache, 513);
    load(cache, 0);
    EXPECT_FALSE(cache.find(1));
    fill(cache, 0);
    for (int i = 600; i < 600 + 511; ++i) load(cache, i);
    EXPECT_TRUE(cache.find(0));
}

TEST(IconCache, AFailureIsNotCachedAndTheNextOneTriesAgain) {
    Cache cache;
    EXPECT_FALSE(cache.obtain(3, [] { return std::shared_ptr<FakeTexture>(); }));
    EXPECT_EQ(cache.size(), 0U);
    EXPECT_TRUE(load(cache, 3));
}

TEST(IconCache, AnExceptionWhileMakingDoesNotBlockTheIndex) {
    Cache cache;
    const auto fail = []() -> std::shared_ptr<FakeTexture> { throw std::runtime_error("no memory"); };
    EXPECT_THROW(cache.obtain(3, fail), std::runtime_error);
    EXPECT_TRUE(load(cache, 3));
}

TEST(IconCache, WorkersThatMissOneIndexTogetherMakeItOnce) {
    constexpr int kWorkers = 7;
    constexpr int kIcons = 20;
    Cache cache;
    std::atomic<int> made{0};
    test::Gate start(kWorkers);
    std::vector<std::vector<std::shared_ptr<FakeTexture>>> seen(kWorkers);
    std::vector<std::thread> workers;
    for (int worker = 0; worker < kWorkers; ++worker) {
        workers.emplace_back([&, worker] {
            start.arriveAndWait();
            for (int index = 0; index < kIcons; ++index) {
                seen[static_cast<std::size_t>(worker)].push_back(cache.obtain(index, [&] {
                    ++made;
                    std::this_thread::yield();
                    return std::make_shared<FakeTexture>(index);
                }));
            }
        });
    }
    for (std::thread& worker : workers) worker.join();
    EXPECT_EQ(made, kIcons);
    EXPECT_EQ(cache.size(), static_cast<std::size_t>(kIcons));
    for (const auto& pictures : seen) EXPECT_EQ(pictures, seen.front());
}

TEST(IconCache, AnIndexInMakingDoesNotHoldUpAnother) {
    Cache cache;
    test::Gate making(1);
    test::Gate otherDone(1);
    std::thread slow([&] {
        cache.obtain(1, [&] {
            making.countDown();
            otherDone.wait();
            return std::make_shared<FakeTexture>(1);
        });
    });
    making.wait();
    EXPECT_TRUE(load(cache, 2));
    otherDone.countDown();
    slow.join();
    EXPECT_TRUE(cache.find(1));
}

TEST(IconCache, ClearingReleasesEverything) {
    const int before = FakeTexture::alive;
    Cache cache;
    fill(cache, 30);
    cache.clear();
    EXPECT_EQ(FakeTexture::alive, before);
    EXPECT_EQ(cache.size(), 0U);
    EXPECT_TRUE(load(cache, 1));
}

}  // namespace
}  // namespace varnelo
