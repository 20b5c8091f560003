#include "views/splitter.h"

#include <algorithm>
#include <cmath>

namespace varnelo {

namespace {

constexpr float kArrived = 0.001F;

// A value from the registry can be any bit pattern.
float clampedRatio(float ratio) {
    if (!(ratio >= Splitter::kMinRatio)) return Splitter::kMinRatio;
    return std::min(ratio, Splitter::kMaxRatio);
}

}  // namespace

void Splitter::setArea(const ViewRect& area) {
    whole = area;
    layOut();
}

void Splitter::restore(float savedRatio) {
    if (savedRatio != 0) {
        wanted = shown = clampedRatio(savedRatio);
        if (wanted < kHideThreshold) remembered = wanted;
    }
    layOut();
}

void Splitter::snapSecondPart(float secondSize) {
    const float size = bar == Bar::Column ? whole.w : whole.h;
    if (!(size > 0)) return;
    wanted = shown = clampedRatio((size - secondSize - kBarWidth) / size);
    layOut();
}

bool Splitter::hitBar(float x, float y) const {
    const float reach = hidden ? kHiddenReach : 0;
    ViewRect box = strip;
    if (bar == Bar::Column) {
        box.x -= reach;
        box.w += 2 * reach;
    } else {
        box.y -= reach;
        box.h += 2 * reach;
    }
    return box.contains(x, y);
}

void Splitter::beginDrag() { dragging = true; }

void Splitter::dragTo(float x, float y) {
    const float size = bar == Bar::Column ? whole.w : whole.h;
    if (!dragging || !(size > 0)) return;
    place((bar == Bar::Column ? x - whole.x : y - whole.y) / size);
}

void Splitter::place(float newRatio) {
    wanted = shown = clampedRatio(newRatio);
    if (wanted < kHideThreshold) remembered = wanted;
    animating = false;
    layOut();
}

void Splitter::endDrag() {
    if (!dragging) return;
    dragging = false;
    if (wanted < kHideThreshold) {
        remembered = wanted;
    } else {
        wanted = kMaxRatio;
        animating = true;
    }
}

bool Splitter::advance(float seconds) {
    if (!animating) return false;
    shown += (1 - std::exp(-kEaseRate * seconds)) * (wanted - shown);
    if (std::abs(wanted - shown) <= kArrived) {
        shown = wanted;
        animating = false;
    }
    layOut();
    return animating;
}

void Splitter::layOut() {
    const float part = animating ? shown : wanted;
    hidden = part >= kHideThreshold;
    first = second = strip = whole;
    if (bar == Bar::Column) {
        strip.x = whole.x + whole.w * part - kBarWidth / 2;
        strip.w = kBarWidth;
        first.w = std::max(strip.x - whole.x, 0.0F);
        second.x = strip.right();
        second.w = std::max(whole.right() - second.x, 0.0F);
    } else {
        strip.y = whole.y + whole.h * part - kBarWidth / 2;
        strip.h = kBarWidth;
        first.h = std::max(strip.y - whole.y, 0.0F);
        second.y = strip.bottom();
        second.h = std::max(whole.bottom() - second.y, 0.0F);
    }
}

}  // namespace varnelo
