#pragma once

#include <future>

#include "model/desktop_organizer.h"

namespace varnelo {

// The models behind the tabs of one view.
struct OrganizerSet {
    DesktopOrganizer desktop;
};

// What the views of one process share; the application owns it. User-interface thread, but for the future.
struct SharedViews {
    // The primary view's models, published while it lives; null otherwise.
    OrganizerSet* organizers = nullptr;

    // Kept by the primary view once there is something to search in.
    std::promise<void> indexPromise;
    std::shared_future<void> indexReady{indexPromise.get_future()};
};

}  // namespace varnelo
