#include "views/font_family_win.h"

#include <iterator>

#include "platform/com_ref.h"

namespace varnelo {

namespace {

bool hasFamily(IDWriteFontCollection& fonts, const wchar_t* family) {
    UINT32 index = 0;
    BOOL exists = FALSE;
    return SUCCEEDED(fonts.FindFamilyName(family, &index, &exists)) && exists;
}

std::wstring firstFamily(IDWriteFontCollection& fonts) {
    ComRef<IDWriteFontFamily> family;
    ComRef<IDWriteLocalizedStrings> names;
    wchar_t name[64] = {};
    if (fonts.GetFontFamilyCount() > 0 && SUCCEEDED(fonts.GetFontFamily(0, family.put())) &&
        SUCCEEDED(family->GetFamilyNames(names.put()))) {
        names->GetString(0, name, static_cast<UINT32>(std::size(name)));
    }
    return name;
}

}  // namespace

std::wstring availableFamily(IDWriteFactory* factory, const wchar_t* wanted) {
    ComRef<IDWriteFontCollection> fonts;
    if (FAILED(factory->GetSystemFontCollection(fonts.put(), FALSE)) || !fonts) return wanted;
    for (const wchar_t* family : {wanted, L"Tahoma", L"Arial"}) {
        if (hasFamily(*fonts, family)) return family;
    }
    const std::wstring first = firstFamily(*fonts);
    return first.empty() ? wanted : first;
}

}  // namespace varnelo
