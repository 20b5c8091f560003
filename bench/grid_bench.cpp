// Frames and layouts of a pane with 10,000 cells in 40 groups.

#include <benchmark/benchmark.h>

#include <string>

#include "support/allocation_counter.h"
#include "support/grid_world.h"
#include "views/grid_layout.h"

namespace {

using namespace varnelo;

constexpr int kGroups = 40;
constexpr int kCellsPerGroup = 250;
constexpr float kFrame = 1.0f / 60;

struct LargePane : GridWorld {
    LargePane() {
        ViewRect rect{0, 0, 1920, 1080};
        grid.setViewRect(rect, false, 0);
        EntryList list;
        for (int group = 0; group < kGroups; ++group) {
            for (int i = 0; i < kCellsPerGroup; ++i) {
                list.entries.push_back(item(std::to_wstring(group) + L" item " + std::to_wstring(i),
                                            cluster(L"Group " + std::to_wstring(group)),
                                            clock.unixTime - group * 100000 - i));
            }
        }
        grid.setEntries(std::move(list), TabKind::Desktop);
        input.deltaTime = kFrame;
        while (grid.update()) clock.steady += kFrame;
    }
};

// Runs `frame` per iteration. `bar` is the time that it may take, in milliseconds.
template <class Frame>
void measure(benchmark::State& state, double bar, Frame frame) {
    frame();  // the first one may still touch memory for the first time
    const std::uint64_t before = allocationsOfThisThread();
    for (auto _ : state) frame();
    const auto allocations = static_cast<double>(allocationsOfThisThread() - before);
    state.counters["allocations"] = allocations / static_cast<double>(state.iterations());
    state.counters["bar"] = bar;
}

void gridUpdateAtRest(benchmark::State& state) {
    LargePane pane;
    measure(state, 0.5, [&] { benchmark::DoNotOptimize(pane.grid.update()); });
}
BENCHMARK(gridUpdateAtRest)->Unit(benchmark::kMillisecond);

void gridUpdateWhileScrolling(benchmark::State& state) {
    LargePane pane;
    bool down = false;
    measure(state, 0.5, [&] {
        if (pane.grid.scrollVelocity == 0) {
            pane.grid.scrollVelocity = down ? 3000.0f : -3000.0f;
            down = !down;
        }
        benchmark::DoNotOptimize(pane.grid.update());
    });
}
BENCHMARK(gridUpdateWhileScrolling)->Unit(benchmark::kMillisecond);

void gridUpdateWithAllCellsEasing(benchmark::State& state) {
    LargePane pane;
    measure(state, 0.5, [&] {
        for (IconCell& cell : pane.grid.cells) cell.x = 0;
        benchmark::DoNotOptimize(pane.grid.update());
    });
}
BENCHMARK(gridUpdateWithAllCellsEasing)->Unit(benchmark::kMillisecond);

// The last cell is dragged, so every cell before it has a rate of its own.
void gridUpdateWhileDragging(benchmark::State& state) {
    LargePane pane;
    pane.grid.cells.back().dragged = true;
    pane.grid.cellDragActive = true;
    measure(state, 1, [&] { benchmark::DoNotOptimize(pane.grid.update()); });
}
BENCHMARK(gridUpdateWhileDragging)->Unit(benchmark::kMillisecond);

void gridLayoutOfGroups(benchmark::State& state) {
    LargePane pane;
    measure(state, 1, [&] {
        layoutGroups(pane.grid);
        benchmark::ClobberMemory();
    });
}
BENCHMARK(gridLayoutOfGroups)->Unit(benchmark::kMillisecond);

void gridLayoutOfAFlatPane(benchmark::State& state) {
    LargePane pane;
    measure(state, 1, [&] {
        layoutFlat(pane.grid);
        benchmark::ClobberMemory();
    });
}
BENCHMARK(gridLayoutOfAFlatPane)->Unit(benchmark::kMillisecond);

}  // namespace
