#pragma once

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "index/ntfs_index.h"
#include "platform/utf.h"

namespace varnelo::bench {

// VARNELO_BENCH_NAMES names another list.
inline const std::string kNamesFile = [] {
    const char* other = std::getenv("VARNELO_BENCH_NAMES");
    return std::string(other != nullptr ? other : VARNELO_SOURCE_DIR "/build/bench-names.txt");
}();

// A million names of real files, or those of a larger list; none when ./dev bench could not make the list.
inline const std::vector<std::wstring>& fileNames() {
    static const std::vector<std::wstring> names = [] {
        std::vector<std::wstring> read;
        std::ifstream file(kNamesFile);
        for (std::string line; std::getline(file, line);) read.push_back(wideFromUtf8(line));
        return read;
    }();
    return names;
}

// Bars in milliseconds are meant for a million names.
inline double perMillion(double milliseconds) {
    return milliseconds / std::max(1.0, static_cast<double>(fileNames().size()) / 1e6);
}

inline void addAll(NTFSIndex& index, const std::vector<std::wstring>& names) {
    index.currentVolume = index.volumeIndexOf(L'C').value();
    for (std::uint64_t i = 0; i < names.size(); ++i) {
        index.addRecord({24 + i, 24 + i / 100, 0, i, i, 0x20}, names[i]);
    }
}

template <class Work>
double millisecondsOf(Work work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
}

// The index of all names, built once.
inline NTFSIndex& fullIndex() {
    static NTFSIndex index;
    if (index.records().empty()) {
        addAll(index, fileNames());
        index.prepareSearches();
    }
    return index;
}

inline bool namesMissing(benchmark::State& state) {
    if (!fileNames().empty()) return false;
    state.SkipWithError("no list of file names");
    return true;
}

// Memory that was used before is used again, so that nobody is charged for the first touch of a page.
class TouchedMemory {
public:
    TouchedMemory() {
        mallopt(M_MMAP_MAX, 0);
        mallopt(M_TRIM_THRESHOLD, -1);
    }
    TouchedMemory(const TouchedMemory&) = delete;
    TouchedMemory& operator=(const TouchedMemory&) = delete;
    ~TouchedMemory() {
        mallopt(M_MMAP_MAX, 65536);
        mallopt(M_TRIM_THRESHOLD, 128 * 1024);
        malloc_trim(0);
    }
};

inline double medianOf(std::vector<double> values) {
    std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2),
                     values.end());
    return values[values.size() / 2];
}

// Of five runs behind one that touches the memory.
template <class Work>
double medianMilliseconds(Work work) {
    work();
    std::vector<double> runs;
    for (int i = 0; i < 5; ++i) runs.push_back(millisecondsOf(work));
    return medianOf(runs);
}

}  // namespace varnelo::bench
