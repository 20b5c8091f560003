#include "views/task_pool.h"

#include <utility>

#include "app/crash_guard.h"
#include "platform/com_apartment.h"

namespace varnelo {

TaskPool::TaskPool(std::size_t threadCount, LoadProgress* shared) : progress(shared) {
    threads.reserve(threadCount);
    for (std::size_t i = 0; i < threadCount; ++i) threads.emplace_back([this] { work(); });
}

TaskPool::~TaskPool() { stop(); }

template <class Change>
void TaskPool::report(Change change) {
    if (!progress) return;
    const std::lock_guard lock(progress->mutex);
    change(*progress);
    if (progress->onChange) progress->onChange();
}

void TaskPool::enqueue(std::wstring label, Task task) {
    {
        // Counted before a worker can take it: `done` never runs ahead of `total`.
        const std::lock_guard lock(mutex);
        if (!running) return;
        queue.push_back({std::move(label), std::move(task)});
        report([](LoadProgress& p) {
            ++p.total;
            p.active = true;
        });
    }
    ready.notify_one();
}

void TaskPool::stop() {
    {
        const std::lock_guard lock(mutex);
        running = false;
    }
    ready.notify_all();
    for (std::thread& thread : threads) thread.join();
    threads.clear();
}

void TaskPool::work() {
    installThreadCrashGuard();
    const ComApartment apartment(ComApartment::Kind::Single);
    for (;;) {
        Entry entry;
        {
            std::unique_lock lock(mutex);
            ready.wait(lock, [this] { return !queue.empty() || !running; });
            if (queue.empty()) return;
            entry = std::move(queue.front());
            queue.pop_front();
        }
        report([&entry](LoadProgress& p) { p.label = entry.label; });
        entry.task();
        entry.task = nullptr;  // what the task holds is gone before it counts as done
        report([](LoadProgress& p) {
            ++p.done;
            if (p.done >= p.total) p.active = false;
        });
    }
}

}  // namespace varnelo
