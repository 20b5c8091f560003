#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "app/language_table.h"
#include "platform/utf.h"
#include "support/project_files.h"

namespace varnelo {
namespace {

const char* const kKeys[] = {"BROWSER",
                             "OFFICE",
                             "COMMUNICATION",
                             "MEDIA",
                             "GRAPHICS",
                             "GAMES",
                             "EDUCATION",
                             "FINANCE",
                             "HEALTH",
                             "UTILITIES",
                             "SEARCH",
                             "DEVELOPMENT",
                             "DEVTOOLS",
                             "DATABASE",
                             "TESTING",
                             "SYSTEM",
                             "DRIVERS",
                             "SECURITY",
                             "NETWORKING",
                             "VIRTUALIZATION",
                             "STORAGE",
                             "CLOUD",
                             "COMPRESSION",
                             "OTHERS",
                             "OFFICE_DOCUMENTS",
                             "TEXT_DOCUMENTS",
                             "MEDIA_MUSIC",
                             "MEDIA_IMAGES",
                             "MEDIA_VIDEO",
                             "DESIGN_AND_GRAPHICS",
                             "PROJECT_FILES",
                             "SOURCE_CODE",
                             "SCRIPTS",
                             "BUILD_ARTIFACTS",
                             "EXECUTABLES",
                             "INSTALLERS_AND_PACKAGES",
                             "STRUCTURED_DATA",
                             "DATABASE_FILES",
                             "CONFIGURATION_FILES",
                             "ARCHIVES",
                             "DISK_IMAGES",
                             "BACKUP_FILES",
                             "SYSTEM_FILES",
                             "LOGS",
                             "TEMPORARY_FILES",
                             "RECENT_FILES",
                             "FREQUENTLY_USED_FILES",
                             "IMPORTANT_FILES",
                             "SYSTEM_CRITICAL_FILES",
                             "RETRIEVING_INSTALLED_SOFTWARE",
                             "INDEXING_FILES",
                             "LOADING_EXTENSIONS",
                             "EXECUTE",
                             "EXECUTE_ADMIN",
                             "UNINSTALL",
                             "SETTINGS",
                             "INFO",
                             "EXIT",
                             "DESKTOP",
                             "SOFTWARE",
                             "DOWNLOADS",
                             "LAST_7_DAYS",
                             "LAST_30_DAYS",
                             "LAST_90_DAYS",
                             "OLDER",
                             "SYSTEM_SETTINGS",
                             "HARDWARE",
                             "NETWORK",
                             "USER",
                             "PROGRAMS",
                             "OTHER",
                             "SETTINGS_CAPTION",
                             "SETTINGS_GROUP_SORTING",
                             "SETTINGS_TIMEOUT_DAYS",
                             "SETTINGS_GROUP_ICON_SIZE",
                             "SETTINGS_SIZE",
                             "SETTINGS_GROUP_HOVER",
                             "SETTINGS_HOVER_SHAKE",
                             "SETTINGS_HOVER_ENLARGE",
                             "SETTINGS_GROUP_LANGUAGE",
                             "SETTINGS_OK",
                             "SETTINGS_CANCEL",
                             "INFO_CAPTION",
                             "INFO_GROUP_VERSION",
                             "INFO_NAME",
                             "INFO_APP_NAME",
                             "INFO_VERSION",
                             "INFO_DATE",
                             "INFO_GROUP_PRODUCT",
                             "INFO_DEVELOPER",
                             "INFO_DEVELOPER_NAME",
                             "INFO_WEB",
                             "INFO_WEB_URL",
                             "INFO_OK",
                             "OVERVIEW",
                             "SEARCH_TAB",
                             "LIST_HEADER_NAME",
                             "LIST_HEADER_PATH",
                             "LIST_HEADER_SIZE",
                             "LIST_HEADER_DATE",
                             "SEARCH_PLACEHOLDER_FILENAME",
                             "SEARCH_PLACEHOLDER_CONTENT",
                             "EDIT_CUT",
                             "EDIT_COPY",
                             "EDIT_PASTE",
                             "EDIT_DELETE",
                             "EDIT_SELECT_ALL",
                             "MONITORS",
                             "MONITORS_CAPTION",
                             "MONITOR_PRIMARY",
                             "UPDATE_TITLE",
                             "UPDATE_REQUIRED_MSG",
                             "UPDATE_OPTIONAL_MSG",
                             "UPDATE_BTN_DOWNLOAD",
                             "UPDATE_BTN_CONTINUE",
                             "UPDATE_BTN_EXIT",
                             "UPDATE_BTN_DOWNLOAD_INSTALL",
                             "UPDATE_BTN_OK",
                             "UPDATE_DOWNLOAD_FAILED",
                             "STATUS_FILE_COUNT",
                             "SETTINGS_TAB_GENERAL",
                             "SETTINGS_TAB_SEARCH",
                             "SETTINGS_GROUP_INDEX",
                             "SETTINGS_BTN_REBUILD_INDEX"};

// In two group tables each, which share the keys.
const char* const kDoubledKeys[] = {"SYSTEM", "SECURITY", "OTHERS", "ARCHIVES", "TEMPORARY_FILES"};

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find("\r\n", begin), text.size());
        lines.push_back(text.substr(begin, end - begin));
        begin = end + 2;
    }
    return lines;
}

std::string keyOf(const std::string& line) {
    const std::string key = line.substr(0, line.find('='));
    return key.substr(0, key.find_last_not_of(' ') + 1);
}

std::size_t occurrences(const std::wstring& text, const std::wstring& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::wstring::npos; at = text.find(part, at + 1)) ++count;
    return count;
}

class LanguageFile : public testing::TestWithParam<const char*> {
protected:
    LanguageFile() {
        const auto bytes = test::projectFile("resources/lang/" + std::string(GetParam()) + ".txt");
        text.assign(bytes.begin(), bytes.end());
        entries = parseLanguageText(bytes);
    }

    bool japanese() const { return std::string(GetParam()) == "japanese"; }

    std::string text;
    LanguageEntries entries;
};

TEST_P(LanguageFile, HoldsExactlyTheKeysOfTheProgram) {
    std::set<std::string> found;
    for (const auto& [key, value] : entries) found.insert(utf8FromWide(key));
    EXPECT_EQ(found, std::set<std::string>(std::begin(kKeys), std::end(kKeys)));
    EXPECT_EQ(entries.size(), 124u);
}

TEST_P(LanguageFile, HasATextForEachKey) {
    for (const auto& [key, value] : entries) EXPECT_NE(value, L"") << utf8FromWide(key);
}

TEST_P(LanguageFile, LinesEndInCrLfAndTheLastOneInNothing) {
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), std::count(text.begin(), text.end(), '\r'));
    EXPECT_EQ(linesOf(text).size(), static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) + 1);
    EXPECT_NE(text.back(), '\n');
}

TEST_P(LanguageFile, IsWellFormedUtf8AndOnlyJapaneseHasAByteOrderMark) {
    EXPECT_EQ(text.find("\xEF\xBF\xBD"), std::string::npos);
    EXPECT_EQ(utf8FromWide(wideFromUtf8(text)), text);
    EXPECT_EQ(text.starts_with("\xEF\xBB\xBF"), japanese());
}

TEST_P(LanguageFile, DoubledKeysCarryTheSameText) {
    std::map<std::string, std::vector<std::string>> values;
    for (const std::string& line : linesOf(text)) {
        if (line.find('=') != std::string::npos) values[keyOf(line)].push_back(line.substr(line.find('=')));
    }
    std::set<std::string> doubled;
    for (const auto& [key, lines] : values) {
        if (lines.size() == 1) continue;
        EXPECT_EQ(lines.size(), 2u) << key;
        EXPECT_EQ(lines[0], lines[1]) << key;
        doubled.insert(key);
    }
    EXPECT_EQ(doubled, std::set<std::string>(std::begin(kDoubledKeys), std::end(kDoubledKeys)));
}

TEST_P(LanguageFile, TheLastFourLinesHaveNoBlanksAroundTheEqualsSign) {
    const auto lines = linesOf(text);
    ASSERT_GT(lines.size(), 5u);
    EXPECT_NE(lines[lines.size() - 5].find(" = "), std::string::npos);
    const char* const last[] = {"SETTINGS_TAB_GENERAL", "SETTINGS_TAB_SEARCH", "SETTINGS_GROUP_INDEX",
                                "SETTINGS_BTN_REBUILD_INDEX"};
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_TRUE(lines[lines.size() - 4 + i].starts_with(std::string(last[i]) + "="))
            << lines[lines.size() - 4 + i];
    }
}

// A text with another number of arguments would make a format function read what is not there.
TEST_P(LanguageFile, FormatsTakeTheArgumentsThatTheProgramGives) {
    for (const auto& [key, value] : entries) {
        const bool version = key == L"UPDATE_REQUIRED_MSG" || key == L"UPDATE_OPTIONAL_MSG";
        const bool count = key == L"STATUS_FILE_COUNT";
        EXPECT_EQ(occurrences(value, L"%s"), version ? 2u : 0u) << utf8FromWide(key);
        EXPECT_EQ(occurrences(value, L"%d"), count ? 1u : 0u) << utf8FromWide(key);
        EXPECT_EQ(occurrences(value, L"%"), version ? 2u : count ? 1u : 0u) << utf8FromWide(key);
    }
}

TEST_P(LanguageFile, NamesTheProgramAndItsMakerAlike) {
    EXPECT_EQ(entries[L"INFO_APP_NAME"], L"Varnelo.exe");
    EXPECT_EQ(entries[L"INFO_DEVELOPER_NAME"], L"Varnelo Project");
    EXPECT_EQ(entries[L"INFO_WEB_URL"], L"https://varnelo.example");
}

TEST_P(LanguageFile, MessagesHaveTheirLineBreaks) {
    EXPECT_EQ(occurrences(entries[L"UPDATE_REQUIRED_MSG"], L"\n"), 3u);
    EXPECT_EQ(occurrences(entries[L"UPDATE_OPTIONAL_MSG"], L"\n"), 3u);
    EXPECT_EQ(occurrences(entries[L"UPDATE_DOWNLOAD_FAILED"], L"\n"), 1u);
}

INSTANTIATE_TEST_SUITE_P(All, LanguageFile, testing::Values("english", "german", "japanese"),
                         [](const auto& given) { return std::string(given.param); });

struct GivenText {
    const char* key;
    const char* english;
    const char* german;
};

class GivenTexts : public testing::TestWithParam<GivenText> {
protected:
    static std::string textIn(const char* language, const char* key) {
        const auto bytes = test::projectFile("resources/lang/" + std::string(language) + ".txt");
        LanguageEntries entries = parseLanguageText(bytes);
        return utf8FromWide(entries[wideFromUtf8(key)]);
    }
};

TEST_P(GivenTexts, StandInTheFiles) {
    EXPECT_EQ(textIn("english", GetParam().key), GetParam().english);
    EXPECT_EQ(textIn("german", GetParam().key), GetParam().german);
}

INSTANTIATE_TEST_SUITE_P(
    LanguageFiles, GivenTexts,
    testing::Values(
        GivenText{"BROWSER", "Browser", "Browser"}, GivenText{"OFFICE", "Office", "Büro"},
        GivenText{"EXIT", "Exit", "Beenden"}, GivenText{"GRAPHICS", "Graphics & Design", "Grafik & Design"},
        GivenText{"RETRIEVING_INSTALLED_SOFTWARE", "Retrieving installed software",
                  "Installierte Software wird ermittelt"},
        GivenText{"INDEXING_FILES", "Indexing files", "Dateien werden indiziert"},
        GivenText{"LOADING_EXTENSIONS", "Loading extensions", "Erweiterungen werden geladen"},
        GivenText{"EXECUTE_ADMIN", "Run as Administrator", "Als Administrator ausführen"},
        GivenText{"SETTINGS_TIMEOUT_DAYS", "Timeout (days):", "Ablaufzeit (Tage):"},
        GivenText{"SETTINGS_HOVER_SHAKE", "Shake", "Wackeln"},
        GivenText{"SETTINGS_HOVER_ENLARGE", "Enlarge", "Vergrößern"},
        GivenText{"SEARCH_PLACEHOLDER_FILENAME", "Search file names...", "Dateinamen suchen..."},
        GivenText{"SEARCH_PLACEHOLDER_CONTENT", "Search file contents...", "Dateiinhalt suchen..."},
        GivenText{"MONITORS_CAPTION", "Monitor Selection", "Monitor-Auswahl"},
        GivenText{"MONITOR_PRIMARY", "Primary", "Primär"},
        GivenText{"UPDATE_TITLE", "Software Update", "Software-Update"},
        GivenText{"UPDATE_BTN_DOWNLOAD_INSTALL", "Download and install", "Herunterladen und installieren"},
        GivenText{"STATUS_FILE_COUNT", "%d files", "%d Dateien"},
        GivenText{"SETTINGS_BTN_REBUILD_INDEX", "Rebuild NTFS Index", "NTFS Index neu erstellen"}),
    [](const auto& given) { return std::string(given.param.key); });

TEST(EnglishFile, ShowsItsOwnWordsForSomeGroups) {
    LanguageEntries english = parseLanguageText(test::projectFile("resources/lang/english.txt"));
    EXPECT_EQ(english[L"DEVTOOLS"], L"Developer Tools");
    EXPECT_EQ(english[L"DATABASE"], L"Databases");
    EXPECT_EQ(english[L"DESIGN_AND_GRAPHICS"], L"Design & Graphics Files");
    EXPECT_EQ(english[L"LAST_7_DAYS"], L"Last 7 days");
    EXPECT_EQ(english[L"LAST_30_DAYS"], L"Last 30 days");
    EXPECT_EQ(english[L"LAST_90_DAYS"], L"Last 90 days");
    EXPECT_EQ(english[L"SYSTEM_SETTINGS"], L"System settings");
    EXPECT_EQ(english[L"OTHER"], L"Other");
}

TEST(EnglishFile, TellsOfUpdatesInTheseWords) {
    LanguageEntries english = parseLanguageText(test::projectFile("resources/lang/english.txt"));
    EXPECT_EQ(
        english[L"UPDATE_REQUIRED_MSG"],
        L"A new version is available: %s\nUpdate is required by %s\n\nPlease download the latest version.");
    EXPECT_EQ(
        english[L"UPDATE_OPTIONAL_MSG"],
        L"A new version is available: %s\nUpdate is optional until %s\n\nDo you want to download it now?");
    EXPECT_EQ(english[L"UPDATE_DOWNLOAD_FAILED"],
              L"The setup file download has failed.\nPlease try again later or download the update manually "
              L"from the "
              L"website.");
}

}  // namespace
}  // namespace varnelo
