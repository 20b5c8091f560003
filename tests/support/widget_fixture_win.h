#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <memory>

#include "support/glass_reference.h"
#include "support/surface_window_win.h"
#include "views/widget_canvas_win.h"

namespace varnelo {

// Widgets over a busy wallpaper on a surface of 420 by 300. What is drawn is read back and compared.
class WidgetFixture : public ::testing::Test {
protected:
    using Picture = reference::Picture;
    static constexpr int kWidth = 420;
    static constexpr int kHeight = 300;
    static constexpr int kBlurSteps = 2;  // a shader's rounding

    // One device for all cases: making one takes longer than most of them.
    static void SetUpTestSuite() { shared = std::make_unique<SurfaceWindow>(kWidth, kHeight); }
    static void TearDownTestSuite() { shared.reset(); }
    void SetUp() override {
        ASSERT_TRUE(window.ready);
        window.surface.backgroundSRV = window.upload(wallpaper);
        canvas.init();
        target = window.surface.d2dRT;
    }
    void TearDown() override {
        window.surface.d2dRT = target;
        canvas.release();
    }

    template <class Draw>
    Picture frame(Draw draw) {
        window.layer.clear();
        window.surface.drawBackground();
        draw();
        return window.backBuffer();
    }

    // Over the wallpaper, as the reference computes it.
    static void blurOn(Picture& picture, const Picture& scene, const ViewRect& rect, const BlurTint& tint) {
        const ScissorEdges edges = paneScissor(rect);
        reference::drawBlur(picture, scene,
                            {edges.left,
                             edges.top,
                             edges.right,
                             edges.bottom,
                             tint.offset,
                             {tint.color.r, tint.color.g, tint.color.b, tint.color.a}});
    }

    static void expectSame(const Picture& actual, const Picture& wanted, int steps = kBlurSteps) {
        const reference::Difference difference = reference::greatestDifference(actual, wanted);
        EXPECT_LE(difference.steps, steps) << "at " << difference.x << ", " << difference.y;
    }

    // How many pixels differ clearly, inside or outside of `rect` grown by `margin`.
    enum class Where { Inside, Outside };
    static int differing(const Picture& a, const Picture& b, const ViewRect& rect, Where where,
                         int margin = 0) {
        int count = 0;
        for (int y = 0; y < a.height(); ++y) {
            for (int x = 0; x < a.width(); ++x) {
                const bool inside = static_cast<float>(x) >= std::floor(rect.x) - margin &&
                                    static_cast<float>(x) < std::ceil(rect.right()) + margin &&
                                    static_cast<float>(y) >= std::floor(rect.y) - margin &&
                                    static_cast<float>(y) < std::ceil(rect.bottom()) + margin;
                if (inside == (where == Where::Inside) && std::abs(a.at(x, y).g - b.at(x, y).g) > 0.02F)
                    ++count;
            }
        }
        return count;
    }

    // Whether that part of the picture holds a text's white.
    static bool hasInk(const Picture& picture, const ViewRect& rect) {
        for (int y = static_cast<int>(rect.y); y < static_cast<int>(rect.bottom()); ++y) {
            for (int x = static_cast<int>(rect.x); x < static_cast<int>(rect.right()); ++x) {
                const reference::Color c = picture.at(x, y);
                if (std::min({c.r, c.g, c.b}) > 0.93F) return true;
            }
        }
        return false;
    }

    static std::unique_ptr<SurfaceWindow> shared;
    SurfaceWindow& window = *shared;
    // No part of it is as bright as ink.
    const Picture wallpaper = [] {
        Picture picture = reference::busyPicture(kWidth, kHeight, 3);
        for (int y = 0; y < kHeight; ++y) {
            for (int x = 0; x < kWidth; ++x) {
                const reference::Color c = picture.at(x, y);
                picture.set(x, y, {c.r * 0.7F, c.g * 0.7F, c.b * 0.7F, 1});
            }
        }
        return picture;
    }();
    WidgetCanvas canvas{window.surface, window.base};

private:
    ComRef<ID2D1RenderTarget> target;  // a case may take it away
};

inline std::unique_ptr<SurfaceWindow> WidgetFixture::shared;

}  // namespace varnelo
