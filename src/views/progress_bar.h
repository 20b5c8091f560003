#pragma once

#include <optional>
#include <string>

#include "views/load_progress.h"
#include "views/view_rect.h"

namespace varnelo {

// The bar that tells how far the loading tasks are. User-interface thread only.
class ProgressBar {
public:
    static constexpr float kFontShare = 0.5F;  // of the height
    static constexpr float kShadowShift = 1;   // pixels right and down
    static constexpr float kShadowOpacity = 0.75F;

    // What one frame shows of the progress.
    struct Content {
        bool shows = false;
        std::optional<ViewRect> fill;  // nothing while there is no total
        std::wstring label;
    };

    // Reads the progress under its lock, into an object that is kept from frame to frame.
    void read(Content& content) const;

    ViewRect rect;
    LoadProgress* progress = nullptr;  // may be null: nothing shows
};

// The share that is done, 0 without a total. Takes the lock.
float progressFraction(LoadProgress& progress);

// A shown fraction that glides after the real one.
struct ProgressEasing {
    float shown = 0;

    // `dt` in seconds. True while `shown` has not arrived: another frame is needed.
    bool update(float target, float dt);
};

}  // namespace varnelo
