// The table of a million real file names: filling it, saving, loading, changing, and what it takes of memory.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>
#include <unordered_map>

#include "file_names.h"
#include "index/grams.h"
#include "platform/text.h"
#include "support/temp_folder.h"

namespace varnelo {
namespace {

using namespace bench;

// The peer: lists as maps of vectors hold them.
struct MapsOfVectors {
    std::unordered_map<std::uint16_t, std::vector<std::uint32_t>> ones;
    std::unordered_map<std::uint32_t, std::vector<std::uint32_t>> twos;
    std::unordered_map<std::uint64_t, std::vector<std::uint32_t>> threes;

    void finish() {}
    void add(std::uint32_t index, NameUnits name) {
        std::uint16_t units[260];
        const std::size_t count = std::min<std::size_t>(name.size(), 260);
        for (std::size_t i = 0; i < count; ++i) units[i] = lowerNameUnit(name[i]);
        for (std::size_t i = 0; i < count; ++i) {
            ones[units[i]].push_back(index);
            if (i + 1 < count)
                twos[static_cast<std::uint32_t>(bigramKey(units[i], units[i + 1]))].push_back(index);
            if (i + 2 < count) threes[trigramKey(units[i], units[i + 1], units[i + 2])].push_back(index);
        }
    }
};

struct GramMaps {
    PostingMap ones{2};
    PostingMap twos{4};
    PostingMap threes{8};
    void add(std::uint32_t index, NameUnits name) { appendGrams(name, index, ones, twos, threes); }
    // Nothing waits any more.
    void finish() { benchmark::DoNotOptimize(ones.size() + twos.size() + threes.size()); }
};

template <class Maps>
double buildMilliseconds() {
    const NTFSIndex& index = fullIndex();
    Maps maps;
    return millisecondsOf([&] {
        for (std::uint32_t i = 0; i < index.records().size(); ++i) maps.add(i, index.nameUnits(i));
        maps.finish();
    });
}

void indexBuildPostings(benchmark::State& state) {
    if (namesMissing(state)) return;
    fullIndex();
    const TouchedMemory touched;
    buildMilliseconds<MapsOfVectors>();
    double own = 0;
    double plain = 0;
    for (auto _ : state) {
        plain += buildMilliseconds<MapsOfVectors>();
        const double once = buildMilliseconds<GramMaps>();
        state.SetIterationTime(once / 1000);
        own += once;
    }
    state.counters["toMapsOfVectors"] = own / plain;
    state.counters["toMapsOfVectors_bar"] = 0.5;
}
BENCHMARK(indexBuildPostings)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

// A saved index.
struct SavedIndex {
    SavedIndex() {
        if (!fullIndex().saveCache(folder.path(), L"ntfs.cache")) throw std::runtime_error("the save failed");
        bytes = std::filesystem::file_size(std::filesystem::path(folder.file(L"ntfs.cache")));
    }
    void load(NTFSIndex& index) const {
        if (!index.loadCache(folder.path(), L"ntfs.cache")) throw std::runtime_error("the load failed");
    }
    void show(NTFSIndex& index) const {
        if (!index.showCache(folder.path(), L"ntfs.cache")) throw std::runtime_error("the file is not shown");
    }
    double readMilliseconds() const {
        const int file = ::open(utf8FromWide(folder.file(L"ntfs.cache")).c_str(), O_RDONLY);
        double milliseconds = 0;
        {
            std::unique_ptr<std::uint8_t[]> memory;
            milliseconds = millisecondsOf([&] {
                memory = std::make_unique_for_overwrite<std::uint8_t[]>(bytes);
                for (std::size_t done = 0; done < bytes;) {
                    const ssize_t got = ::read(file, memory.get() + done, bytes - done);
                    if (got <= 0) throw std::runtime_error("the read failed");
                    done += static_cast<std::size_t>(got);
                }
            });
            benchmark::DoNotOptimize(memory.get());
        }
        ::close(file);
        return milliseconds;
    }

    test::TempFolder folder;
    std::size_t bytes = 0;
};

const SavedIndex& savedIndex() {
    static const SavedIndex saved;
    return saved;
}

void indexLoad(benchmark::State& state) {
    if (namesMissing(state)) return;
    const SavedIndex& saved = savedIndex();
    saved.readMilliseconds();
    double own = 0;
    double plain = 0;
    double first = 0;
    for (auto _ : state) {
        plain += saved.readMilliseconds();
        NTFSIndex index;
        NTFSIndex shown;
        const double shows = millisecondsOf([&] { saved.show(shown); });
        first +=
            shows + millisecondsOf([&] { benchmark::DoNotOptimize(shown.searchNames(L"readme").size()); });
        const double once = shows + millisecondsOf([&] {
                                saved.load(index);
                                shown.clearIndex();
                            });
        state.SetIterationTime(once / 1000);
        own += once;
    }
    state.counters["toPlainRead"] = own / plain;
    state.counters["toPlainRead_bar"] = 2.0;
    state.counters["plainRead"] = plain;
    // From a file that is not open yet to the first answer, which comes while the file is loaded.
    state.counters["firstAnswerPerMillion"] = perMillion(first);
    state.counters["firstAnswerPerMillion_bar"] = 20;
}
BENCHMARK(indexLoad)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

// What follows a load before the index is served. Not part of the load: the file itself is searched
// meanwhile.
void indexPrepareSearches(benchmark::State& state) {
    if (namesMissing(state)) return;
    const SavedIndex& saved = savedIndex();
    for (auto _ : state) {
        NTFSIndex index;
        saved.load(index);
        state.SetIterationTime(perMillion(millisecondsOf([&] { index.prepareSearches(); })) / 1000);
    }
}
BENCHMARK(indexPrepareSearches)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

std::size_t statusBytes(const char* key) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(key)) return std::stoull(line.substr(std::string(key).size())) * 1024;
    }
    throw std::runtime_error("no such line of status");
}

// In a process of its own, so that nothing was allocated before.
struct LoadMemory {
    double after;
    double peak;
};

LoadMemory measureLoad(const SavedIndex& saved) {
    int ends[2];
    if (::pipe(ends) != 0) throw std::runtime_error("no pipe");
    const pid_t child = ::fork();
    if (child == 0) {
        malloc_trim(0);
        std::ofstream("/proc/self/clear_refs") << 5;  // the peak begins anew
        const std::size_t before = statusBytes("VmRSS:");
        NTFSIndex shown;
        saved.show(shown);
        shown.trimShownCache();
        NTFSIndex index;
        saved.load(index);
        shown.clearIndex();
        index.prepareSearches();
        const auto growth = [&](const char* key) {
            return static_cast<double>(statusBytes(key) - before) / static_cast<double>(saved.bytes);
        };
        const LoadMemory result{growth("VmRSS:"), growth("VmHWM:")};
        const ssize_t written = ::write(ends[1], &result, sizeof result);
        ::_exit(written == sizeof result ? 0 : 1);
    }
    LoadMemory result{};
    ::close(ends[1]);
    const ssize_t got = ::read(ends[0], &result, sizeof result);
    ::close(ends[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    if (got != sizeof result || status != 0) throw std::runtime_error("the child failed");
    return result;
}

void indexLoadMemory(benchmark::State& state) {
    if (namesMissing(state)) return;
    const SavedIndex& saved = savedIndex();
    LoadMemory memory{};
    for (auto _ : state) memory = measureLoad(saved);
    state.counters["afterToFile"] = memory.after;
    state.counters["afterToFile_bar"] = 1.15;
    state.counters["peakToFile"] = memory.peak;
    state.counters["peakToFile_bar"] = 1.3;
    state.counters["fileMegabytes"] = static_cast<double>(saved.bytes) / 1e6;
}
BENCHMARK(indexLoadMemory)->Iterations(1)->Unit(benchmark::kMillisecond);

// Files whose names hold the letters that most names hold.
void removePostings(benchmark::State& state, NTFSIndex& index) {
    std::uint32_t victim = 500000;
    std::vector<double> runs;
    for (auto _ : state) {
        const std::uint32_t id =
            index.createRecord({2000000u + victim++, 5, 0, 0, 0, 0}, L"interesting-relations.html");
        const double once = millisecondsOf([&] { index.removePostings(id, L"interesting-relations.html"); });
        index.removeRecord(id);
        const std::uint32_t old = victim * 7 % 1000000;
        const std::wstring name = index.nameOf(old);
        const double another = millisecondsOf([&] { index.removePostings(old, name); });
        index.addPostings(old, name);
        state.SetIterationTime(std::max(once, another) / 1000);
    }
    state.counters["bar"] = 1;
}
void indexRemovePostings(benchmark::State& state) {
    if (namesMissing(state)) return;
    static NTFSIndex index;
    if (index.records().empty()) addAll(index, fileNames());
    benchmark::DoNotOptimize(index.trigrams().size());  // nothing waits any more
    removePostings(state, index);
}
BENCHMARK(indexRemovePostings)->Iterations(50)->UseManualTime()->Unit(benchmark::kMillisecond);

// The first removal after a load, list by list as they lie in the file.
void indexRemovePostingsAfterLoad(benchmark::State& state) {
    if (namesMissing(state)) return;
    NTFSIndex index;
    savedIndex().load(index);
    removePostings(state, index);
}
BENCHMARK(indexRemovePostingsAfterLoad)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace varnelo
