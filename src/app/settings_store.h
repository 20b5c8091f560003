#pragma once

#include <memory>

#include "app/settings.h"

namespace varnelo {

// The store of the user who runs the program, or null when it cannot be opened. The host build has none.
std::unique_ptr<SettingsStore> openUserSettingsStore();

}  // namespace varnelo
