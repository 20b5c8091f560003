#include "views/progress_bar.h"

#include <algorithm>
#include <cmath>
#include <mutex>

namespace varnelo {

namespace {

constexpr float kEasingRate = 2.5F;
constexpr float kArrived = 0.001F;

// Under the lock of `progress`.
float fractionOf(const LoadProgress& progress) {
    if (progress.total == 0) return 0;
    const double share = static_cast<double>(progress.done) / static_cast<double>(progress.total);
    return static_cast<float>(std::min(share, 1.0));
}

}  // namespace

void ProgressBar::read(Content& content) const {
    content.shows = false;
    content.fill.reset();
    if (!progress || !(rect.h > 0)) return;
    const std::lock_guard lock(progress->mutex);
    if (!progress->active) return;
    content.shows = true;
    if (progress->total > 0) content.fill = ViewRect{rect.x, rect.y, rect.w * fractionOf(*progress), rect.h};
    content.label = progress->label;
}

float progressFraction(LoadProgress& progress) {
    const std::lock_guard lock(progress.mutex);
    return fractionOf(progress);
}

bool ProgressEasing::update(float target, float dt) {
    shown += (target - shown) * std::min(dt * kEasingRate, 1.0F);
    return std::abs(target - shown) > kArrived;
}

}  // namespace varnelo
