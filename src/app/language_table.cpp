#include "app/language_table.h"

#include <algorithm>
#include <array>
#include <mutex>

#include "app/settings.h"
#include "platform/resources.h"
#include "platform/text.h"
#include "platform/user_locale.h"
#include "platform/utf.h"

namespace varnelo {

namespace {

constexpr std::array<std::uint8_t, 3> kByteOrderMark = {0xEF, 0xBB, 0xBF};

// \\, \n and \t. A backslash before anything else, or at the end, means itself.
std::wstring unescaped(std::wstring_view text) {
    std::wstring result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const wchar_t next = text[i] == L'\\' && i + 1 < text.size() ? text[i + 1] : L'\0';
        switch (next) {
            case L'\\':
                result += L'\\';
                break;
            case L'n':
                result += L'\n';
                break;
            case L't':
                result += L'\t';
                break;
            default:
                result += text[i];
                continue;
        }
        ++i;
    }
    return result;
}

void parseLine(std::wstring_view line, LanguageEntries& entries) {
    const std::size_t equals = line.find(L'=');
    if (equals == std::wstring_view::npos) return;
    const std::wstring_view key = trimmed(line.substr(0, equals));
    if (key.empty()) return;
    entries.insert_or_assign(std::wstring(key), unescaped(trimmed(line.substr(equals + 1))));
}

}  // namespace

const std::vector<LanguageInfo>& languages() {
    static const std::vector<LanguageInfo> table = {
        {Language::German, 103, L"Deutsch", L"German"},
        {Language::English, 102, L"English", L"English"},
        {Language::Japanese, 113, L"日本語", L"Japanese"},
    };
    return table;
}

Language chooseLanguage(Settings& settings, std::wstring_view systemLanguage) {
    const auto& table = languages();
    if (settings.languageIndex >= 0) {
        const auto index = static_cast<std::size_t>(settings.languageIndex);
        // An index beyond the table stays in the settings.
        return table[index < table.size() ? index : 0].language;
    }

    const auto known = std::find_if(table.begin(), table.end(), [&](const LanguageInfo& info) {
        return info.englishName == systemLanguage;
    });
    const Language language = known == table.end() ? Language::English : known->language;
    const auto row = std::find_if(table.begin(), table.end(),
                                  [&](const LanguageInfo& info) { return info.language == language; });
    settings.languageIndex = row == table.end() ? 0 : static_cast<std::int32_t>(row - table.begin());
    settings.save();
    return language;
}

LanguageEntries parseLanguageText(std::span<const std::uint8_t> utf8) {
    if (utf8.size() >= kByteOrderMark.size() &&
        std::equal(kByteOrderMark.begin(), kByteOrderMark.end(), utf8.begin())) {
        utf8 = utf8.subspan(kByteOrderMark.size());
    }
    const std::wstring text = wideFromUtf8({reinterpret_cast<const char*>(utf8.data()), utf8.size()});
    LanguageEntries entries(8);
    std::wstring_view rest = text;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find(L'\n'), rest.size());
        parseLine(rest.substr(0, end), entries);
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return entries;
}

LanguageTable& LanguageTable::instance() {
    static LanguageTable table;
    return table;
}

LanguageTable::LanguageTable() : systemLanguage(userLanguageName()), systemCountry(userCountryName()) {}

bool LanguageTable::loadLanguage(void* module, Language language) {
    const auto& table = languages();
    const auto row = std::find_if(table.begin(), table.end(),
                                  [&](const LanguageInfo& info) { return info.language == language; });
    // An unknown language is refused before anything is touched.
    if (row == table.end()) return false;
    return loadText(resourceBytes(module, row->resourceId));
}

bool LanguageTable::loadText(std::span<const std::uint8_t> utf8) {
    LanguageEntries parsed = parseLanguageText(utf8);
    const std::unique_lock guard(lock);
    entries.swap(parsed);
    return !utf8.empty();
}

std::wstring LanguageTable::translate(std::wstring_view key) const {
    const std::shared_lock guard(lock);
    const auto found = entries.find(key);
    return found == entries.end() ? std::wstring(key) : found->second;
}

}  // namespace varnelo
