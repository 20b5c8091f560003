#include "views/load_progress.h"

namespace varnelo {

void LoadProgress::reset() {
    const std::lock_guard lock(mutex);
    total = 0;
    done = 0;
    label.clear();
    active = false;
}

}  // namespace varnelo
