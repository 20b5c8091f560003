#include "model/group_key.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

namespace varnelo {
namespace {

// Written out a second time on purpose: values, keys and texts stand in caches, language tables and prompts,
// so a change to one of them must show here.
struct ExpectedRow {
    std::uint32_t value;
    const wchar_t* key;
    const wchar_t* text;
};

const std::vector<ExpectedRow> kSoftwareGroupRows = {
    {0, L"BROWSER", L"Browser"},
    {1, L"OFFICE", L"Office"},
    {2, L"COMMUNICATION", L"Communication"},
    {3, L"MEDIA", L"Media"},
    {4, L"GRAPHICS", L"Graphics"},
    {5, L"GAMES", L"Games"},
    {6, L"EDUCATION", L"Education"},
    {7, L"FINANCE", L"Finance"},
    {8, L"HEALTH", L"Health"},
    {9, L"UTILITIES", L"Utilities"},
    {10, L"SEARCH", L"Search"},
    {11, L"DEVELOPMENT", L"Development"},
    {12, L"DEVTOOLS", L"DevTools"},
    {13, L"DATABASE", L"Database"},
    {14, L"TESTING", L"Testing"},
    {15, L"SYSTEM", L"System"},
    {16, L"DRIVERS", L"Drivers"},
    {17, L"SECURITY", L"Security"},
    {18, L"NETWORKING", L"Networking"},
    {19, L"VIRTUALIZATION", L"Virtualization"},
    {20, L"STORAGE", L"Storage"},
    {21, L"CLOUD", L"Cloud"},
    {22, L"COMPRESSION", L"Compression"},
    {23, L"OTHERS", L"Others"},
};

const std::vector<ExpectedRow> kFileGroupRows = {
    {0, L"OFFICE_DOCUMENTS", L"Office Documents"},
    {1, L"TEXT_DOCUMENTS", L"Text Documents"},
    {2, L"MEDIA_MUSIC", L"Music"},
    {3, L"MEDIA_IMAGES", L"Images"},
    {4, L"MEDIA_VIDEO", L"Video"},
    {5, L"DESIGN_AND_GRAPHICS", L"Design & Graphics"},
    {6, L"PROJECT_FILES", L"Project Files"},
    {7, L"SOURCE_CODE", L"Source Code"},
    {8, L"SCRIPTS", L"Scripts"},
    {9, L"BUILD_ARTIFACTS", L"Build Artifacts"},
    {10, L"EXECUTABLES", L"Executables"},
    {11, L"INSTALLERS_AND_PACKAGES", L"Installers & Packages"},
    {12, L"STRUCTURED_DATA", L"Structured Data"},
    {13, L"DATABASE_FILES", L"Database Files"},
    {14, L"CONFIGURATION_FILES", L"Configuration Files"},
    {15, L"ARCHIVES", L"Archives"},
    {16, L"DISK_IMAGES", L"Disk Images"},
    {17, L"BACKUP_FILES", L"Backup Files"},
    {18, L"SYSTEM_FILES", L"System Files"},
    {19, L"LOGS", L"Logs"},
    {20, L"TEMPORARY_FILES", L"Temporary Files"},
    {21, L"OTHERS", L"Others"},
};

const std::vector<ExpectedRow> kSystemGroupRows = {
    {0, L"SYSTEM_SETTINGS", L"System Settings"},
    {1, L"HARDWARE", L"Hardware"},
    {2, L"NETWORK", L"Network"},
    {3, L"SECURITY", L"Security"},
    {4, L"USER", L"User"},
    {5, L"PROGRAMS", L"Programs"},
    {6, L"OTHER", L"Others"},
};

const std::vector<ExpectedRow> kSpecialGroupRows = {
    {0, L"RECENT_FILES", L"Recent Files"},
    {1, L"FREQUENTLY_USED_FILES", L"Frequently Used Files"},
    {2, L"IMPORTANT_FILES", L"Important Files"},
    {3, L"TEMPORARY_FILES", L"Temporary Files"},
    {4, L"SYSTEM_CRITICAL_FILES", L"System Critical Files"},
    {5, L"SYSTEM", L"System"},
    {6, L"SOFTWARE", L"Software"},
    {7, L"ARCHIVES", L"Archives"},
    {8, L"DOWNLOADS", L"Downloads"},
    {9, L"LAST_7_DAYS", L"Last 7 Days"},
    {10, L"LAST_30_DAYS", L"Last 30 Days"},
    {11, L"LAST_90_DAYS", L"Last 90 Days"},
    {12, L"OLDER", L"Older"},
};

GroupKey clusterIn(GroupCategory category, const wchar_t* name) { return {category, std::wstring(name)}; }

constexpr auto kInvalidCategory = static_cast<GroupCategory>(4);

template <class Group>
void expectRows(GroupCategory category, const std::wstring& prefix, const std::vector<ExpectedRow>& rows) {
    for (const ExpectedRow& row : rows) {
        const auto group = static_cast<Group>(row.value);
        const GroupKey key{category, group};
        EXPECT_EQ(groupDisplayName(group), row.text);
        EXPECT_EQ(groupLanguageKey(key), row.key);
        EXPECT_EQ(groupKeyName(key), prefix + row.text);
        EXPECT_EQ(groupFromText(category, row.text), key) << row.value;
    }
}

TEST(GroupKeyTest, EveryRowOfEveryFamilyHasItsKeyTextAndIdentity) {
    ASSERT_EQ(kSoftwareGroupRows.size(), 24u);
    ASSERT_EQ(kFileGroupRows.size(), 22u);
    ASSERT_EQ(kSystemGroupRows.size(), 7u);
    ASSERT_EQ(kSpecialGroupRows.size(), 13u);
    expectRows<SoftwareGroup>(GroupCategory::Software, L"Software-", kSoftwareGroupRows);
    expectRows<FileGroup>(GroupCategory::Files, L"Files-", kFileGroupRows);
    expectRows<SystemGroup>(GroupCategory::System, L"System-", kSystemGroupRows);
    expectRows<SpecialGroup>(GroupCategory::Special, L"Special-", kSpecialGroupRows);
}

TEST(GroupKeyTest, CategoriesAndAlternativesHaveTheirStoredNumbers) {
    EXPECT_EQ(static_cast<int>(GroupCategory::Software), 0);
    EXPECT_EQ(static_cast<int>(GroupCategory::Files), 1);
    EXPECT_EQ(static_cast<int>(GroupCategory::System), 2);
    EXPECT_EQ(static_cast<int>(GroupCategory::Special), 3);
    EXPECT_EQ(GroupKey::Value(SoftwareGroup{}).index(), 0u);
    EXPECT_EQ(GroupKey::Value(FileGroup{}).index(), 1u);
    EXPECT_EQ(GroupKey::Value(SystemGroup{}).index(), 2u);
    EXPECT_EQ(GroupKey::Value(SpecialGroup{}).index(), 3u);
    EXPECT_EQ(GroupKey::Value(std::wstring()).index(), 4u);
}

TEST(GroupKeyTest, ANumberBehindTheLastRowIsUnknownAndHasNoLanguageKey) {
    for (const std::uint32_t value : {24u, 25u, 0xFFFFFFFFu}) {
        EXPECT_EQ(groupDisplayName(static_cast<SoftwareGroup>(value)), L"Unknown");
        EXPECT_EQ(groupLanguageKey({GroupCategory::Software, static_cast<SoftwareGroup>(value)}), L"");
    }
    EXPECT_EQ(groupDisplayName(static_cast<FileGroup>(22)), L"Unknown");
    EXPECT_EQ(groupDisplayName(static_cast<SystemGroup>(7)), L"Unknown");
    EXPECT_EQ(groupDisplayName(static_cast<SpecialGroup>(13)), L"Unknown");
    EXPECT_EQ(groupLanguageKey({GroupCategory::Files, static_cast<FileGroup>(22)}), L"");
    EXPECT_EQ(groupLanguageKey({GroupCategory::System, static_cast<SystemGroup>(7)}), L"");
    EXPECT_EQ(groupLanguageKey({GroupCategory::Special, static_cast<SpecialGroup>(13)}), L"");
    EXPECT_EQ(groupKeyName({GroupCategory::Files, static_cast<FileGroup>(22)}), L"Files-Unknown");
}

TEST(GroupKeyTest, EqualityNeedsCategoryAlternativeAndValue) {
    const GroupKey archives{GroupCategory::Files, FileGroup::Archives};
    EXPECT_EQ(archives, (GroupKey{GroupCategory::Files, FileGroup::Archives}));
    EXPECT_NE(archives, (GroupKey{GroupCategory::Special, FileGroup::Archives}));
    EXPECT_NE(archives, (GroupKey{GroupCategory::Files, static_cast<SoftwareGroup>(15)}));
    EXPECT_NE(archives, (GroupKey{GroupCategory::Files, FileGroup::DiskImages}));
    EXPECT_NE(archives, clusterIn(GroupCategory::Files, L"Archives"));
    EXPECT_EQ(clusterIn(GroupCategory::Files, L"Trip"), clusterIn(GroupCategory::Files, L"Trip"));
    EXPECT_NE(clusterIn(GroupCategory::Files, L"Trip"), clusterIn(GroupCategory::Files, L"trip"));
}

TEST(GroupKeyTest, AClusterIsItsOwnLanguageKeyInAnyCategory) {
    EXPECT_EQ(groupLanguageKey(clusterIn(GroupCategory::Files, L"Holiday")), L"Holiday");
    EXPECT_EQ(groupLanguageKey(clusterIn(GroupCategory::System, L"Holiday")), L"Holiday");
    EXPECT_EQ(groupLanguageKey(clusterIn(GroupCategory::Files, L"")), L"");
}

TEST(GroupKeyTest, TheIdentityOfAClusterCarriesItsCategory) {
    EXPECT_EQ(groupKeyName(clusterIn(GroupCategory::Files, L"Holiday")), L"Files-Holiday");
    EXPECT_EQ(groupKeyName(clusterIn(GroupCategory::Software, L"Holiday")), L"Software-Holiday");
    EXPECT_EQ(groupKeyName(clusterIn(GroupCategory::Special, L"Holiday")), L"Special-Holiday");
    EXPECT_EQ(groupKeyName(clusterIn(GroupCategory::Files, L"")), L"Files-");
}

TEST(GroupKeyTest, AClusterAmongTheSystemItemsIsAContradiction) {
    EXPECT_THROW(groupKeyName(clusterIn(GroupCategory::System, L"Holiday")), std::bad_variant_access);
}

TEST(GroupKeyTest, AnAlternativeOfAnotherFamilyIsABadVariant) {
    const GroupKey::Value values[] = {SoftwareGroup::Browser, FileGroup::Logs, SystemGroup::User,
                                      SpecialGroup::Older};
    for (std::uint32_t category = 0; category < 4; ++category) {
        for (std::uint32_t held = 0; held < 4; ++held) {
            const GroupKey key{static_cast<GroupCategory>(category), values[held]};
            if (category == held)
                EXPECT_NO_THROW(groupKeyName(key));
            else
                EXPECT_THROW(groupKeyName(key), std::bad_variant_access) << category << " " << held;
        }
    }
}

TEST(GroupKeyTest, ACategoryAboveThreeIsARuntimeErrorWithItsText) {
    const GroupKey keys[] = {{kInvalidCategory, SpecialGroup::Older},
                             clusterIn(kInvalidCategory, L"Holiday")};
    for (const GroupKey& key : keys) {
        try {
            groupKeyName(key);
            ADD_FAILURE() << "no exception";
        } catch (const std::runtime_error& error) {
            EXPECT_STREQ(error.what(), "Invalid group category");
        }
    }
}

TEST(GroupKeyTest, AnUnknownTextFallsToOthersExceptAmongTheSpecialGroups) {
    for (const wchar_t* text : {L"xyz", L"", L"archives", L"Archives ", L"ARCHIVES", L"Unknown"}) {
        EXPECT_EQ(groupFromText(GroupCategory::Software, text),
                  (GroupKey{GroupCategory::Software, SoftwareGroup::Others}));
        EXPECT_EQ(groupFromText(GroupCategory::Files, text),
                  (GroupKey{GroupCategory::Files, FileGroup::Others}));
        EXPECT_EQ(groupFromText(GroupCategory::System, text),
                  (GroupKey{GroupCategory::System, SystemGroup::Other}));
        EXPECT_EQ(groupFromText(GroupCategory::Special, text), std::nullopt);
    }
}

TEST(GroupKeyTest, TheSameTextNamesDifferentGroupsInDifferentCategories) {
    EXPECT_EQ(groupFromText(GroupCategory::Files, L"Archives"),
              (GroupKey{GroupCategory::Files, static_cast<FileGroup>(15)}));
    EXPECT_EQ(groupFromText(GroupCategory::Special, L"Archives"),
              (GroupKey{GroupCategory::Special, static_cast<SpecialGroup>(7)}));
}

TEST(GroupKeyTest, TheSystemGroupOthersIsReadFromOthersAndNotFromOther) {
    // Both give the group: the first as its row, the second because every unknown text does.
    EXPECT_EQ(groupDisplayName(SystemGroup::Other), L"Others");
    EXPECT_EQ(groupFromText(GroupCategory::System, L"Others"),
              (GroupKey{GroupCategory::System, SystemGroup::Other}));
    EXPECT_EQ(groupFromText(GroupCategory::System, L"Other"),
              (GroupKey{GroupCategory::System, SystemGroup::Other}));
}

TEST(GroupKeyTest, ACategoryAboveThreeHasNoGroupForAnyText) {
    EXPECT_EQ(groupFromText(kInvalidCategory, L"Archives"), std::nullopt);
    EXPECT_EQ(groupFromText(static_cast<GroupCategory>(0xFFFFFFFFu), L"Others"), std::nullopt);
}

TEST(GroupKeyTest, ThePromptQuotesTheSoftwareGroupsAndLeavesTheFileGroupsBare) {
    EXPECT_EQ(softwareGroupList(),
              LR"("Browser", "Office", "Communication", "Media", "Graphics", "Games", "Education", )"
              LR"("Finance", "Health", "Utilities", "Search", "Development", "DevTools", "Database", )"
              LR"("Testing", "System", "Drivers", "Security", "Networking", "Virtualization", "Storage", )"
              LR"("Cloud", "Compression", "Others")");
    EXPECT_EQ(
        fileGroupList(),
        L"Office Documents, Text Documents, Music, Images, Video, Design & Graphics, Project Files, "
        L"Source Code, Scripts, Build Artifacts, Executables, Installers & Packages, Structured Data, "
        L"Database Files, Configuration Files, Archives, Disk Images, Backup Files, System Files, Logs, "
        L"Temporary Files, Others");
}

TEST(GroupKeyTest, TheDesktopTabRanksEightSpecialGroupsAndPutsAllElseBetween) {
    const int ranks[13] = {3, 3, 3, 3, 3, 0, 1, 8, 2, 4, 5, 6, 7};
    for (std::uint32_t value = 0; value < 13; ++value)
        EXPECT_EQ(desktopGroupRank({GroupCategory::Special, static_cast<SpecialGroup>(value)}), ranks[value])
            << value;
    EXPECT_EQ(desktopGroupRank({GroupCategory::Special, static_cast<SpecialGroup>(13)}), 3);
    EXPECT_EQ(desktopGroupRank(clusterIn(GroupCategory::Files, L"Holiday")), 3);
    EXPECT_EQ(desktopGroupRank(clusterIn(GroupCategory::Special, L"System")), 3);
    EXPECT_EQ(desktopGroupRank({GroupCategory::Special, static_cast<SoftwareGroup>(5)}), 3);
    EXPECT_EQ(desktopGroupRank({GroupCategory::Software, SoftwareGroup::System}), 3);
    EXPECT_EQ(desktopGroupRank({GroupCategory::Files, SpecialGroup::Older}), 3);
}

}  // namespace
}  // namespace varnelo
