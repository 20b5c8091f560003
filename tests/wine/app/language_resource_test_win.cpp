#include <windows.h>

#include <gtest/gtest.h>

#include "app/language_table.h"
#include "platform/resources.h"
#include "support/project_files.h"

namespace varnelo {
namespace {

TEST(LanguageResources, AreTheFilesOfTheSourceTree) {
    const std::pair<std::uint32_t, const char*> files[] = {
        {102, "english"}, {103, "german"}, {113, "japanese"}};
    for (const auto& [id, name] : files) {
        const auto resource = resourceBytes(GetModuleHandleW(nullptr), id);
        const auto file = test::projectFile("resources/lang/" + std::string(name) + ".txt");
        EXPECT_FALSE(file.empty()) << name;
        EXPECT_EQ(std::vector<std::uint8_t>(resource.begin(), resource.end()), file) << name;
    }
}

TEST(LanguageResources, LoadIntoTheTable) {
    LanguageTable table;
    const HINSTANCE module = GetModuleHandleW(nullptr);
    EXPECT_TRUE(table.loadLanguage(module, Language::German));
    EXPECT_EQ(table.translate(L"EXIT"), L"Beenden");
    EXPECT_TRUE(table.loadLanguage(module, Language::English));
    EXPECT_EQ(table.translate(L"EXIT"), L"Exit");
    EXPECT_TRUE(table.loadLanguage(module, Language::Japanese));
    EXPECT_EQ(table.translate(L"EXIT"), L"\x7D42\x4E86");
    EXPECT_EQ(table.translate(L"BROWSER"), L"\x30D6\x30E9\x30A6\x30B6\x30FC")
        << "the first line, behind the mark";
}

TEST(LanguageResources, AModuleWithoutThemLeavesTheTableEmpty) {
    LanguageTable table;
    ASSERT_TRUE(table.loadLanguage(GetModuleHandleW(nullptr), Language::German));
    EXPECT_FALSE(table.loadLanguage(GetModuleHandleW(L"kernel32.dll"), Language::German));
    EXPECT_EQ(table.translate(L"EXIT"), L"EXIT");
}

TEST(LanguageTableSystem, NamesTheUsersLanguageAndCountryInEnglish) {
    const LanguageTable table;
    wchar_t name[85] = {};
    ASSERT_GT(GetLocaleInfoEx(LOCALE_NAME_USER_DEFAULT, LOCALE_SENGLISHLANGUAGENAME, name, 85), 0);
    EXPECT_EQ(table.systemLanguage, name);
    EXPECT_FALSE(table.systemLanguage.empty());
    ASSERT_GT(GetLocaleInfoEx(LOCALE_NAME_USER_DEFAULT, LOCALE_SENGLISHCOUNTRYNAME, name, 85), 0);
    EXPECT_EQ(table.systemCountry, name);
}

}  // namespace
}  // namespace varnelo
