#include <windows.h>

#include "platform/user_locale.h"

namespace varnelo {

namespace {

std::wstring localeText(LCTYPE kind) {
    wchar_t text[LOCALE_NAME_MAX_LENGTH] = {};
    if (GetLocaleInfoEx(LOCALE_NAME_USER_DEFAULT, kind, text, LOCALE_NAME_MAX_LENGTH) <= 0) return {};
    return text;
}

}  // namespace

std::wstring userLanguageName() { return localeText(LOCALE_SENGLISHLANGUAGENAME); }

std::wstring userCountryName() { return localeText(LOCALE_SENGLISHCOUNTRYNAME); }

}  // namespace varnelo
