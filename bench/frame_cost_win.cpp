// What a frame costs: draws frames of a full window while both panes scroll, without showing them, and prints
// the rows in the form of Google Benchmark's results, medians of several runs. A row is the time on the clock
// until the device has finished the frame; `frame_thread` is the processor time of the frame function alone
// and `process` that of all threads, the software renderer's among them, in milliseconds a frame.
// Argument: frames a run, 20 without one.

#include <windows.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>

#include "platform/clock.h"
#include "support/full_window_win.h"

namespace varnelo {
namespace {

constexpr int kRuns = 5;
constexpr double kTwentyFramesASecond = 50;  // milliseconds a frame

struct Cost {
    double clock = 0, frameThread = 0, process = 0;  // milliseconds a frame
};

double milliseconds(const FILETIME& time) {
    return static_cast<double>((std::uint64_t{time.dwHighDateTime} << 32) | time.dwLowDateTime) / 10000;
}

double threadTime() {
    FILETIME ignored{}, kernel{}, user{};
    GetThreadTimes(GetCurrentThread(), &ignored, &ignored, &kernel, &user);
    return milliseconds(kernel) + milliseconds(user);
}

double processTime() {
    FILETIME ignored{}, kernel{}, user{};
    GetProcessTimes(GetCurrentProcess(), &ignored, &ignored, &kernel, &user);
    return milliseconds(kernel) + milliseconds(user);
}

template <class Value>
double median(std::array<Cost, kRuns>& runs, Value value) {
    std::nth_element(runs.begin(), runs.begin() + kRuns / 2, runs.end(),
                     [value](const Cost& a, const Cost& b) { return a.*value < b.*value; });
    return runs[kRuns / 2].*value;
}

class FrameCost {
public:
    FrameCost(int width, int height, float iconScale) : window(width, height, iconScale) {
        const D3D11_QUERY_DESC event{D3D11_QUERY_EVENT, 0};
        if (window.ready) window.stage.window.layer.device->CreateQuery(&event, frameDone.put());
    }

    bool ready() const { return static_cast<bool>(frameDone); }

    // Frames with what `before` does to the window before each.
    void measure(const char* name, double bar, int frames, const std::function<void()>& before) {
        std::array<Cost, kRuns> runs;
        run(std::max(frames / 5, 1), before);
        for (Cost& cost : runs) cost = run(frames, before);
        std::printf("%s{\"run_name\": \"Frame/%s\", \"aggregate_name\": \"median\", \"time_unit\": \"ms\", ",
                    first ? "" : ",\n", name);
        std::printf("\"real_time\": %.3f, \"frame_thread_peer\": %.3f, \"process_peer\": %.3f",
                    median(runs, &Cost::clock), median(runs, &Cost::frameThread),
                    median(runs, &Cost::process));
        if (bar > 0) std::printf(", \"bar\": %.0f", bar);
        std::printf(", \"icons_peer\": %d}", window.visibleIcons());
        first = false;
    }

    FullWindow window;

private:
    Cost run(int frames, const std::function<void()>& before) {
        Cost cost;
        const double process = processTime();
        const double clock = systemClock().steadySeconds();
        for (int i = 0; i < frames; ++i) {
            before();
            const double thread = threadTime();
            window.stage.frame();
            cost.frameThread += threadTime() - thread;
            waitForDevice();
        }
        cost.clock = (systemClock().steadySeconds() - clock) * 1000 / frames;
        cost.process = (processTime() - process) / frames;
        cost.frameThread /= frames;
        return cost;
    }

    void waitForDevice() {
        ID3D11DeviceContext* const context = window.stage.window.layer.context.get();
        context->End(frameDone.get());
        BOOL done = FALSE;
        while (context->GetData(frameDone.get(), &done, sizeof done, 0) == S_FALSE) Sleep(0);
    }

    ComRef<ID3D11Query> frameDone;
    static inline bool first = true;
};

struct Size {
    const char* name;
    const char* fresh;
    int width, height;
    float iconScale;
    double bar;
};

// About as many icons as each name says, in both panes.
constexpr Size kSizes[] = {
    {"scroll_100_icons", "scroll_100_icons_ten_new_labels", 1280, 800, 1, kTwentyFramesASecond},
    {"scroll_200_icons", "scroll_200_icons_ten_new_labels", 2000, 1200, 1, 0},
    {"scroll_600_icons", "scroll_600_icons_ten_new_labels", 2560, 1600, 0.5F, 0},
};

int run(int frames) {
    std::printf("{\"benchmarks\": [\n");
    for (const Size& size : kSizes) {
        FrameCost cost(size.width, size.height, size.iconScale);
        if (!cost.ready()) return 1;
        cost.measure(size.name, size.bar, frames, [&] { cost.window.keepScrolling(); });
        cost.measure(size.fresh, 0, frames, [&] {
            cost.window.renameVisible(10);
            cost.window.keepScrolling();
        });
    }
    std::printf("\n]}\n");
    return 0;
}

}  // namespace
}  // namespace varnelo

int main(int count, char** arguments) {
    const int frames = count > 1 ? std::atoi(arguments[1]) : 20;
    return varnelo::run(std::max(frames, 1));
}
