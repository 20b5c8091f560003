#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <string>

namespace varnelo {

// How far the queued tasks are. Workers write it, the progress bar reads it on a frame; both hold `mutex`.
// `onChange` is called with `mutex` held: it may post a message, it must not lock `mutex` or block. Set it
// before the first task is queued.
struct LoadProgress {
    std::mutex mutex;
    std::uint64_t total = 0;
    std::uint64_t done = 0;
    std::wstring label;   // of the task taken last
    bool active = false;  // something queued is not done yet
    std::function<void()> onChange;

    // Zeroes the counters, the label and `active`; keeps `onChange`.
    void reset();
};

}  // namespace varnelo
