#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "views/load_progress.h"

namespace varnelo {

// Threads that run labelled tasks, oldest first, each thread in a single-threaded COM apartment. Tasks catch
// their own exceptions: one that gets out ends the process through the terminate handler, which leaves a
// crash report, rather than vanish.
class TaskPool {
public:
    using Task = std::function<void()>;

    // `progress` may be null; otherwise it must outlive the pool.
    explicit TaskPool(std::size_t threadCount, LoadProgress* progress = nullptr);
    // As `stop`.
    ~TaskPool();
    TaskPool(const TaskPool&) = delete;
    TaskPool& operator=(const TaskPool&) = delete;

    // Any thread, also a task. After `stop` the task is dropped.
    void enqueue(std::wstring label, Task task);

    // Lets the workers finish all that is queued, then joins them. May be called again; never from a task.
    void stop();

private:
    struct Entry {
        std::wstring label;
        Task task;
    };

    void work();
    // Runs `change` and `onChange` under the lock of the progress, if there is one.
    template <class Change>
    void report(Change change);

    LoadProgress* const progress;

    std::mutex mutex;
    std::condition_variable ready;
    std::deque<Entry> queue;  // guarded by mutex
    bool running = true;      // guarded by mutex

    std::vector<std::thread> threads;  // last, so that all above lives while they run
};

}  // namespace varnelo
