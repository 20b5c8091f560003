#pragma once

#include <string>

namespace varnelo {

// English names of the language and the country of the user's regional settings, such as "German" and
// "Germany"; "" when the system does not tell. The host build never does.
std::wstring userLanguageName();
std::wstring userCountryName();

}  // namespace varnelo
