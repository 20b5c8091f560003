#pragma once

#include <condition_variable>
#include <mutex>

namespace varnelo::test {

// Holds threads back until it was counted down `count` times; then it stays open. std::latch is not used: on
// targets without a futex libstdc++ 12 can lose the wake-up between a waiter's look at the counter and its
// sleep.
class Gate {
public:
    explicit Gate(int count) : left(count) {}
    Gate(const Gate&) = delete;
    Gate& operator=(const Gate&) = delete;

    void countDown() {
        const std::lock_guard lock(mutex);
        if (--left == 0) open.notify_all();
    }
    void wait() {
        std::unique_lock lock(mutex);
        open.wait(lock, [this] { return left <= 0; });
    }
    void arriveAndWait() {
        countDown();
        wait();
    }

private:
    std::mutex mutex;
    std::condition_variable open;
    int left;  // guarded by mutex
};

}  // namespace varnelo::test
