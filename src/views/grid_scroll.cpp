#include "views/grid_scroll.h"

#include <algorithm>
#include <cmath>

#include "views/grid_math.h"

namespace varnelo {
namespace {

constexpr float kWheelSpeed = 600;  // pixels per second that a notch adds
constexpr float kWheelNotch = 120;
constexpr float kScrollDamping = 8;  // share of the speed lost per second
constexpr float kSlowest = 1;        // pixels per second; below it the content stands
constexpr float kSmallestThumb = 20;
constexpr float kPageShare = 0.9f;
constexpr float kAlphaTolerance = 0.001f;

float listHeader(const GridState& grid) {
    return grid.layoutMode == LayoutMode::List ? grid.listMode.headerHeight : 0;
}

float scrollRange(const GridState& grid) { return std::max(grid.contentHeight - visibleHeight(grid), 1.0f); }

}  // namespace

float maxScroll(const GridState& grid) { return std::max(grid.contentHeight - visibleHeight(grid), 0.0f); }

void clampScroll(GridState& grid) { grid.scrollY = std::clamp(grid.scrollY, 0.0f, maxScroll(grid)); }

void advanceScroll(GridState& grid, float seconds) {
    grid.scrollY -= grid.scrollVelocity * seconds;
    if (grid.scrollY < 0) {
        grid.scrollY = 0;
        grid.scrollVelocity = 0;
    }
    if (grid.scrollY > maxScroll(grid)) {
        grid.scrollY = maxScroll(grid);
        grid.scrollVelocity = 0;
    }
    grid.scrollVelocity -= grid.scrollVelocity * kScrollDamping * seconds;
    if (std::abs(grid.scrollVelocity) < kSlowest) grid.scrollVelocity = 0;
}

bool fadeScrollBar(GridScroll& scroll, double now, float seconds) {
    if (!scroll.scrollBarHovered && !scroll.scrollBarDragging) {
        const double hold = scroll.scrollBarHoldSeconds;
        if (now - scroll.lastScrollActivity > hold && now - scroll.lastWheelActivity > hold) {
            scroll.scrollBarAlphaTarget = 0;
        }
    }
    scroll.scrollBarAlpha +=
        easeShare(scroll.scrollBarFadeRate, seconds) * (scroll.scrollBarAlphaTarget - scroll.scrollBarAlpha);
    return scroll.scrollVelocity != 0 ||
           std::abs(scroll.scrollBarAlpha - scroll.scrollBarAlphaTarget) > kAlphaTolerance ||
           scroll.scrollBarAlpha > kAlphaTolerance;
}

std::optional<ScrollThumb> scrollThumb(const GridState& grid) {
    const float visible = visibleHeight(grid);
    if (!(visible < grid.contentHeight)) return std::nullopt;
    ScrollThumb thumb{};
    thumb.height = std::max(visible / grid.contentHeight * visible, kSmallestThumb);
    thumb.track =
        std::max(visible - thumb.height, 0.0f);  // a pane lower than the smallest thumb has no way to go
    thumb.top = grid.scrollY / scrollRange(grid) * thumb.track + listHeader(grid);
    return thumb;
}

bool onScrollBar(const GridState& grid, float cursorX, float cursorY) {
    return scrollThumb(grid) && grid.viewRect.contains(cursorX, cursorY) &&
           cursorX >= grid.viewRect.right() - grid.scrollBarWidth;
}

void turnWheel(GridScroll& scroll, float delta, double now) {
    scroll.scrollBarAlphaTarget = 1;
    scroll.lastWheelActivity = now;
    scroll.scrollVelocity += delta / kWheelNotch * kWheelSpeed;
}

void pressScrollBar(GridState& grid, float cursorY) {
    const std::optional<ScrollThumb> thumb = scrollThumb(grid);
    if (!thumb) return;
    const float inPane = cursorY - grid.viewRect.y;
    if (inPane >= thumb->top && inPane <= thumb->top + thumb->height) {
        grid.scrollBarDragging = true;
        grid.scrollBarGrabY = inPane - thumb->top;
        return;
    }
    const float page = kPageShare * grid.viewRect.h;
    grid.scrollY += inPane < thumb->top ? -page : page;
    clampScroll(grid);
}

void dragThumb(GridState& grid, float cursorY) {
    const std::optional<ScrollThumb> thumb = scrollThumb(grid);
    if (!thumb || thumb->track <= 0) return;
    const float top =
        std::clamp(cursorY - grid.viewRect.y - listHeader(grid) - grid.scrollBarGrabY, 0.0f, thumb->track);
    grid.scrollY = top / thumb->track * scrollRange(grid);
}

void showScrollBar(GridScroll& scroll, double now) {
    scroll.scrollBarAlphaTarget = 1;
    scroll.lastScrollActivity = now;
}

}  // namespace varnelo
