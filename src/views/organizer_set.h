#pragma once

#include <future>

#include "index/ntfs_index.h"
#include "model/desktop_organizer.h"

namespace varnelo {

// The models behind the tabs of one view.
struct OrganizerSet {
    DesktopOrganizer desktop;
};

// What the views of one process share; the application owns it. User-interface thread, but for the index,
// which has a lock of its own, and the future.
struct SharedViews {
    NTFSIndex index;

    // The primary view's models, published while it lives; null otherwise.
    OrganizerSet* organizers = nullptr;

    // Kept by the primary view when its index task has ended, whatever came of it.
    std::promise<void> indexPromise;
    std::shared_future<void> indexReady{indexPromise.get_future()};
};

}  // namespace varnelo
