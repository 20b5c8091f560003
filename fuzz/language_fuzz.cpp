#include <cstdint>
#include <cstdlib>
#include <span>
#include <string>

#include "app/language_table.h"
#include "platform/text.h"
#include "platform/utf.h"

namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

// The value as a file would hold it, so that reading it back must give the value.
std::wstring escaped(const std::wstring& value) {
    std::wstring result;
    for (const wchar_t unit : value) {
        switch (unit) {
            case L'\\':
                result += L"\\\\";
                break;
            case L'\n':
                result += L"\\n";
                break;
            case L'\t':
                result += L"\\t";
                break;
            default:
                result += unit;
        }
    }
    return result;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace varnelo;
    const LanguageEntries entries = parseLanguageText({data, size});

    // A line feed at the start keeps a key that begins with U+FEFF from being read as a byte-order mark.
    std::wstring written = L"\n";
    for (const auto& [key, value] : entries) {
        require(!key.empty());
        require(trimmed(key) == key);
        require(key.find_first_of(L"=\n") == std::wstring::npos);
        written += key + L" = " + escaped(value) + L"\n";
    }
    const std::string utf8 = utf8FromWide(written);
    require(parseLanguageText({reinterpret_cast<const std::uint8_t*>(utf8.data()), utf8.size()}) == entries);

    LanguageTable table;
    require(table.loadText({data, size}) == (size != 0));
    for (const auto& [key, value] : entries) require(table.translate(key) == value);
    return 0;
}
