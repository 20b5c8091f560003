#include "app/settings_store.h"

namespace varnelo {

std::unique_ptr<SettingsStore> openUserSettingsStore() { return nullptr; }

}  // namespace varnelo
