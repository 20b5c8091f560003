// What a frame of a full window asks of the device and of the memory.

#include <gtest/gtest.h>

#include "support/allocation_counter.h"
#include "support/device_calls_win.h"
#include "support/draw_calls_win.h"
#include "support/full_window_win.h"
#include "support/real_desktop_win.h"

namespace varnelo {
namespace {

// Wallpaper, headers and labels by the page, the bar, tabs, button and progress bar.
constexpr int kMostOtherDraws = 20;

class FrameWorkTest : public RealDesktopTest {
protected:
    void SetUp() override { ASSERT_TRUE(window.ready); }

    struct Work {
        int draws = 0, objects = 0, layouts = 0, pictures = 0;
        std::uint64_t allocations = 0;
    };
    Work workOfAFrame() {
        const DrawCalls draws(window.stage.window.layer.context.get());
        const DeviceCalls objects(window.stage.window.layer.device.get());
        const Work before = textsSoFar();
        const std::uint64_t allocations = allocationsOfThisThread();
        window.stage.frame();
        Work work = textsSoFar();
        work.layouts -= before.layouts;
        work.pictures -= before.pictures;
        work.allocations = allocationsOfThisThread() - allocations;
        work.draws = draws.count();
        work.objects = objects.created();
        return work;
    }
    Work textsSoFar() {
        Work work;
        for (const IconView* pane : {&window.stage.view->tabPane(), &window.stage.view->softwarePane()}) {
            work.layouts += static_cast<int>(pane->drawStatistics().layouts);
            work.pictures += static_cast<int>(pane->drawStatistics().pictures);
        }
        return work;
    }

    FullWindow window{1280, 800, 1};
};

TEST_F(FrameWorkTest, AFrameAtRestDrawsEachIconOnceAndMakesNothing) {
    workOfAFrame();
    const int icons = window.visibleIcons();
    ASSERT_GT(icons, 60);
    const Work work = workOfAFrame();
    EXPECT_GE(work.draws, icons);
    EXPECT_LE(work.draws, icons + kMostOtherDraws);
    EXPECT_EQ(work.objects, 0);
    EXPECT_EQ(work.allocations, 0U);
    EXPECT_EQ(work.layouts, 0);
}

TEST_F(FrameWorkTest, AScrolledFrameMakesNothingWhenItsLabelsWereShownBefore) {
    for (int i = 0; i < 20; ++i) window.keepScrolling(), workOfAFrame();
    int knownFrames = 0;
    for (int i = 0; i < 200 && knownFrames < 10; ++i) {
        window.keepScrolling();
        const Work work = workOfAFrame();
        EXPECT_LE(work.draws - window.visibleIcons(), kMostOtherDraws + 6 * work.layouts);
        if (work.layouts > 0) continue;
        ++knownFrames;
        EXPECT_EQ(work.objects, 0);
        EXPECT_EQ(work.allocations, 0U);
    }
    EXPECT_EQ(knownFrames, 10);
}

TEST_F(FrameWorkTest, ANewLabelIsLaidOutAndDrawnOnce) {
    workOfAFrame();
    window.renameVisible(5);
    const Work first = workOfAFrame();
    EXPECT_EQ(first.layouts, 5);
    EXPECT_EQ(first.pictures, 5);
    const Work second = workOfAFrame();
    EXPECT_EQ(second.layouts, 0);
    EXPECT_EQ(second.objects, 0);
}

}  // namespace
}  // namespace varnelo
