// Clustering a full desktop, which happens on every change there, beside the plain loop over all pairs.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <stdexcept>

#include "model/file_clusterer.h"
#include "support/desktop_items.h"
#include "support/plain_clusterer.h"

namespace varnelo {
namespace {

struct Desktop : DesktopItems {
    explicit Desktop(benchmark::State& state) : DesktopItems(static_cast<std::size_t>(state.range(0))) {
        fillLikeADesktop(*this, static_cast<int>(state.range(0)), 42);
    }
};

void clusterDesktop(benchmark::State& state, double barMilliseconds) {
    const Desktop desktop(state);
    const FileClusterer clusterer;
    std::vector<FileCluster> clusters;
    for (auto _ : state) clusterer.build(clusters, desktop.list, DesktopItems::kDesktop);
    state.counters["bar"] = barMilliseconds;
    state.counters["families"] = static_cast<double>(clusters.size());
}
BENCHMARK_CAPTURE(clusterDesktop, items, 50)->Arg(500)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(clusterDesktop, items, 1000)->Arg(2000)->Unit(benchmark::kMillisecond);

// The peer: no bar of its own.
void clusterDesktopPlainly(benchmark::State& state) {
    const Desktop desktop(state);
    std::vector<FileCluster> clusters;
    for (auto _ : state) clusters = plain::Build().run(desktop.list, DesktopItems::kDesktop);
    state.counters["families"] = static_cast<double>(clusters.size());
}
BENCHMARK(clusterDesktopPlainly)->Arg(500)->Arg(2000)->Iterations(1)->Unit(benchmark::kMillisecond);

// The worst desktop: every name shares words with every other, and none is alike enough to join.
void clusterOneVocabulary(benchmark::State& state) {
    DesktopItems desktop(static_cast<std::size_t>(state.range(0)));
    for (int i = 0; i < state.range(0); ++i) {
        std::wstring name = L"w" + std::to_wstring(i) + L"x shared";
        for (int word = 0; word < 8; ++word) name += L" a" + std::to_wstring(i * 8 + word) + L"b";
        desktop.add(name + L".txt");
    }
    const FileClusterer clusterer;
    std::vector<FileCluster> clusters;
    for (auto _ : state) clusterer.build(clusters, desktop.list, DesktopItems::kDesktop);
    if (!clusters.empty()) throw std::logic_error("the names were not to form families");
    state.counters["bar"] = 1000;
}
BENCHMARK(clusterOneVocabulary)->Arg(2000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace varnelo
