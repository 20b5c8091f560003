#include "views/progress_bar.h"

#include <gtest/gtest.h>

#include <thread>

namespace varnelo {
namespace {

class ProgressBarTest : public ::testing::Test {
protected:
    ProgressBarTest() {
        bar.rect = {10, 570, 800, 30};
        bar.progress = &progress;
        progress.active = true;
        progress.total = 4;
        progress.done = 1;
        progress.label = L"Indexing files";
    }
    ProgressBar::Content shown() {
        bar.read(content);
        return content;
    }

    LoadProgress progress;
    ProgressBar bar;
    ProgressBar::Content content;
};

TEST_F(ProgressBarTest, TheFillIsTheShareThatIsDone) {
    EXPECT_TRUE(shown().shows);
    EXPECT_EQ(shown().label, L"Indexing files");
    EXPECT_EQ(shown().fill, (ViewRect{10, 570, 200, 30}));
    progress.done = 0;
    EXPECT_EQ(shown().fill, (ViewRect{10, 570, 0, 30}));
    progress.done = 4;
    EXPECT_EQ(shown().fill, (ViewRect{10, 570, 800, 30}));
    bar.rect = {0, 0, 100, 20};
    EXPECT_EQ(shown().fill, (ViewRect{0, 0, 100, 20}));
}

TEST_F(ProgressBarTest, WithoutATotalThereIsNoFill) {
    progress.total = progress.done = 0;
    EXPECT_TRUE(shown().shows);
    EXPECT_FALSE(shown().fill);
}

TEST_F(ProgressBarTest, NothingShowsWhileNothingIsActive) {
    shown();
    progress.active = false;
    EXPECT_FALSE(shown().shows);
    EXPECT_FALSE(shown().fill);
}

TEST_F(ProgressBarTest, NothingShowsWithoutHeightOrProgress) {
    bar.rect.h = 0;
    EXPECT_FALSE(shown().shows);
    bar.rect.h = 30;
    bar.progress = nullptr;
    EXPECT_FALSE(shown().shows);
}

TEST_F(ProgressBarTest, MoreDoneThanThereIsFillsTheBarAndNoMore) {
    progress.done = 9;
    EXPECT_EQ(shown().fill->w, 800);
    EXPECT_EQ(progressFraction(progress), 1);
}

TEST_F(ProgressBarTest, TheFractionIsZeroWithoutATotal) {
    EXPECT_EQ(progressFraction(progress), 0.25F);
    progress.total = 0;
    EXPECT_EQ(progressFraction(progress), 0);
}

TEST_F(ProgressBarTest, ReadingHoldsTheLock) {
    std::thread worker([this] {
        for (int i = 0; i < 2000; ++i) {
            const std::lock_guard lock(progress.mutex);
            progress.label = std::wstring(static_cast<std::size_t>(i % 50), L'x');
            progress.done = progress.label.size();
            progress.total = 50;
        }
    });
    for (int i = 0; i < 2000; ++i) {
        const ProgressBar::Content now = shown();
        if (now.label == L"Indexing files") continue;
        EXPECT_FLOAT_EQ(now.fill->w, 16.0F * static_cast<float>(now.label.size()));
    }
    worker.join();
}

TEST(ProgressEasingTest, TheShownValueMovesByItsGapTimesTwoAndAHalfASecond) {
    ProgressEasing easing;
    EXPECT_TRUE(easing.update(1, 0.1F));
    EXPECT_FLOAT_EQ(easing.shown, 0.25F);
    EXPECT_TRUE(easing.update(1, 0.1F));
    EXPECT_FLOAT_EQ(easing.shown, 0.4375F);
    EXPECT_TRUE(easing.update(0, 0.1F));
    EXPECT_FLOAT_EQ(easing.shown, 0.328125F);
}

TEST(ProgressEasingTest, FramesAreNeededUntilTheGapIsAThousandth) {
    ProgressEasing easing;
    EXPECT_FALSE(easing.update(0, 0.1F));
    int frames = 0;
    while (easing.update(1, 0.016F)) ASSERT_LT(++frames, 1000);
    EXPECT_GT(frames, 100);
    EXPECT_LE(1 - easing.shown, 0.001F);
    easing.shown = 0.9985F;
    EXPECT_TRUE(easing.update(1, 0));
    easing.shown = 0.9995F;
    EXPECT_FALSE(easing.update(1, 0));
}

TEST(ProgressEasingTest, ALongFrameDoesNotOvershoot) {
    ProgressEasing easing;
    EXPECT_FALSE(easing.update(1, 5));
    EXPECT_EQ(easing.shown, 1);
}

TEST(ProgressBarLook, HasItsSizesAndItsShadow) {
    EXPECT_EQ(ProgressBar::kFontShare, 0.5F);
    EXPECT_EQ(ProgressBar::kShadowShift, 1);
    EXPECT_EQ(ProgressBar::kShadowOpacity, 0.75F);
}

}  // namespace
}  // namespace varnelo
