#include "platform/user_locale.h"

namespace varnelo {

std::wstring userLanguageName() { return {}; }

std::wstring userCountryName() { return {}; }

}  // namespace varnelo
