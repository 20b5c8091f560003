#include "views/icon_load_queue.h"

#include <utility>

namespace varnelo {

IconLoadQueue::Load IconLoadQueue::begin(int index) {
    ++open;
    return {index, generation};
}

void IconLoadQueue::finish(const Load& load, std::shared_ptr<IconTexture> texture) {
    const std::lock_guard lock(mutex);
    finished.push_back({load, std::move(texture)});
}

void IconLoadQueue::cellsShifted() { ++generation; }

void IconLoadQueue::dropOpenLoads() { firstWorth = ++generation; }

IconLoadQueue::Delivery IconLoadQueue::deliver(std::vector<IconCell>& cells) {
    {
        const std::lock_guard lock(mutex);
        taken.swap(finished);
    }
    if (taken.empty()) return Delivery::Settled;
    for (Result& result : taken) {
        --open;
        misplaced |= result.load.generation != generation;
        if (!result.texture || result.load.index < 0 || result.load.generation < firstWorth) continue;
        const auto index = static_cast<std::size_t>(result.load.index);
        if (index >= cells.size()) continue;
        cells[index].texture = std::move(result.texture);
        cells[index].scale = 1;
    }
    taken.clear();
    if (open != 0 || !misplaced) return Delivery::Settled;
    misplaced = false;
    return Delivery::Misplaced;
}

}  // namespace varnelo
