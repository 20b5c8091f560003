#pragma once

#include <cstdint>
#include <functional>
#include <shared_mutex>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace varnelo {

class Settings;

enum class Language : std::uint32_t { English = 0, German = 1, Japanese = 2 };

struct LanguageInfo {
    Language language;
    std::uint32_t resourceId;
    const wchar_t* nativeName;
    const wchar_t* englishName;
};

// The languages in the order of the settings dialog. Settings::languageIndex is an index into it: the order
// is part of the stored format.
const std::vector<LanguageInfo>& languages();

// The language to start with. A stored index wins, and one beyond the table means its first row. Otherwise
// the language of that English name is taken, or English; its row is then stored for good.
Language chooseLanguage(Settings& settings, std::wstring_view systemLanguage);

struct TextHash : std::hash<std::wstring_view> {
    using is_transparent = void;
};
using LanguageEntries = std::unordered_map<std::wstring, std::wstring, TextHash, std::equal_to<>>;

// Reads the lines "KEY = value" of a language file, in UTF-8 (docs/formats/language-tables.md). Any bytes
// will do; what is no such line is left out.
LanguageEntries parseLanguageText(std::span<const std::uint8_t> utf8);

// The words that the user reads, in one language at a time. Lookups may come from any thread, also while
// the language changes.
class LanguageTable {
public:
    static LanguageTable& instance();

    // Asks the system for the user's language and country.
    LanguageTable();

    // Replaces all texts by those of the language's resource in `module` (an HINSTANCE). False, and no text
    // at all, when the language or its resource does not exist or is empty.
    bool loadLanguage(void* module, Language language);
    // The same from the bytes of a language file. False when there are none.
    bool loadText(std::span<const std::uint8_t> utf8);

    // The text of a key, or the key itself when it has none: no other language is asked.
    std::wstring translate(std::wstring_view key) const;

    // English names of the user's language and country, such as "German" and "Germany"; "" when unknown.
    const std::wstring systemLanguage;
    const std::wstring systemCountry;

private:
    mutable std::shared_mutex lock;
    LanguageEntries entries;  // guarded by lock
};

}  // namespace varnelo
