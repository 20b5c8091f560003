#include "index/in_stretches.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <exception>
#include <thread>

#include "app/crash_guard.h"

namespace varnelo {

namespace {

// A pass waits for memory more than for the processor: more threads than these gain nothing.
constexpr std::size_t kMostThreads = 4;

std::size_t cores() {
    static const std::size_t count =
        std::clamp<std::size_t>(std::thread::hardware_concurrency(), 1, kMostThreads);
    return count;
}

}  // namespace

void inStretches(std::size_t count, std::size_t length,
                 const std::function<void(std::size_t begin, std::size_t end)>& use) {
    const std::size_t stretches = (count + length - 1) / length;
    std::atomic<std::size_t> taken = 0;
    std::array<std::exception_ptr, kMostThreads> thrown;
    const auto work = [&](std::exception_ptr& exception) {
        try {
            for (std::size_t i = taken++; i < stretches; i = taken++) {
                use(i * length, std::min(count, (i + 1) * length));
            }
        } catch (...) {
            exception = std::current_exception();
        }
    };

    std::array<std::thread, kMostThreads> others;  // the first place is this thread's
    try {
        for (std::size_t i = 1; i < std::min(stretches, cores()); ++i) {
            others[i] = std::thread([&work, &exception = thrown[i]] {
                installThreadCrashGuard();
                work(exception);
            });
        }
    } catch (const std::exception&) {
        // No thread or no memory for one: those that there are do it all.
    }
    work(thrown[0]);
    for (std::thread& other : others) {
        if (other.joinable()) other.join();
    }
    for (const std::exception_ptr& exception : thrown) {
        if (exception) std::rethrow_exception(exception);
    }
}

}  // namespace varnelo
