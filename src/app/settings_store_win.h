#pragma once

#include <memory>

#include "app/settings.h"

namespace varnelo {

// The values of one key of the current user, which is made when it is missing and stays open. Null when that
// fails.
std::unique_ptr<SettingsStore> openRegistrySettings(const char* keyPath);

}  // namespace varnelo
