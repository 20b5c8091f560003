// Changes of the volumes that come while somebody searches.

#include <benchmark/benchmark.h>

#include <atomic>
#include <thread>

#include "file_names.h"
#include "index/file_change_monitor.h"
#include "index/usn_record.h"
#include "support/scripted_volumes.h"

namespace varnelo {
namespace {

using namespace bench;

constexpr std::uint64_t kChanges = 1000;
constexpr std::uint64_t kFirstFrn = 24;

// A quarter each of new files, files that go, files with another name and files that are written to, all over
// the volume.
void writeJournal(test::ScriptedVolume& volume, std::uint64_t round) {
    const std::vector<std::wstring>& names = fileNames();
    for (std::uint64_t i = 0; i < kChanges; ++i) {
        const std::uint64_t file = (round * kChanges + i) * 7919 % names.size();
        const std::uint64_t frn = kFirstFrn + file;
        switch (i % 4) {
            case 0:
                volume.happen({kFirstFrn + names.size() + round * kChanges + i, kFirstFrn, names[file],
                               test::kArchive, usn::kFileCreate | usn::kClose});
                break;
            case 1:
                volume.happen({frn, kFirstFrn, names[file], test::kArchive, usn::kFileDelete | usn::kClose});
                break;
            case 2:
                volume.happen({frn, kFirstFrn, L"other " + names[file], test::kArchive,
                               usn::kRenameNewName | usn::kClose});
                break;
            default:
                volume.happen({frn, kFirstFrn, names[file], test::kArchive, usn::kDataExtend | usn::kClose});
        }
    }
}

// Searches every ten milliseconds and keeps the longest time that it waited for the index.
class Searcher {
public:
    explicit Searcher(NTFSIndex& searched) : index(searched) {}
    ~Searcher() { finish(); }
    Searcher(const Searcher&) = delete;
    Searcher& operator=(const Searcher&) = delete;

    double finish() {
        done = true;
        if (thread.joinable()) thread.join();
        return longest;
    }
    int searches() const { return count; }

private:
    void run() {
        auto next = std::chrono::steady_clock::now();
        while (!done) {
            std::unique_lock lock(index.mutex, std::defer_lock);
            longest = std::max(longest, millisecondsOf([&lock] { lock.lock(); }));
            benchmark::DoNotOptimize(index.searchNames(L"readme"));
            lock.unlock();
            ++count;
            std::this_thread::sleep_until(next += std::chrono::milliseconds(10));
        }
    }

    NTFSIndex& index;
    std::atomic<bool> done{false};
    double longest = 0;
    std::atomic<int> count{0};
    std::thread thread{[this] { run(); }};
};

void monitorThousandChanges(benchmark::State& state) {
    if (namesMissing(state)) return;
    static NTFSIndex index;
    static std::uint64_t round = 0;
    if (index.records().empty()) addAll(index, fileNames());
    benchmark::DoNotOptimize(index.trigrams().size());  // nothing waits any more
    test::ScriptedVolumes volumes;
    volumes[L'C'].recordOf =
        [record =
             test::MftRecordBytes().standardInformation(1, 2, test::kArchive).nonResidentData(4096).ended()](
            std::uint64_t) { return record; };
    FileChangeMonitor monitor(index, volumes);
    std::size_t told = 0;
    monitor.findJournals([&told](const FileChange&) { ++told; });
    double longest = 0;
    for (auto _ : state) {
        writeJournal(volumes[L'C'], round++);
        Searcher searcher(index);
        while (searcher.searches() < 2) std::this_thread::yield();
        state.SetIterationTime(millisecondsOf([&monitor] { monitor.runRound(); }) / 1000);
        longest = std::max(longest, searcher.finish());
        if (told < kChanges * 9 / 10) state.SkipWithError("the changes did not arrive");
        told = 0;
    }
    state.counters["bar"] = 500;
    state.counters["searchWaitMilliseconds"] = longest;
    state.counters["searchWaitMilliseconds_bar"] = 50;
}
BENCHMARK(monitorThousandChanges)->Iterations(3)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace varnelo
