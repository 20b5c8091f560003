#include "index/path_policy.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "index/path_policy_rows.h"
#include "platform/text.h"
#include "support/allocation_counter.h"
#include "support/scripted_policy_machine.h"

namespace varnelo {
namespace {

using Folder = PathPolicyMachine::Folder;
using test::ScriptedPolicyMachine;
using test::usualMachine;
using Paths = std::vector<std::wstring>;

bool holds(const PathPolicy& policy, const std::wstring& prefix) {
    const Paths& prefixes = policy.prefixes();
    return std::count(prefixes.begin(), prefixes.end(), prefix) == 1;
}

// The same answer by the plain rule: every row is tried on the lowered path.
bool excludedByEveryRow(const PathPolicy& policy, const std::wstring& asked) {
    const std::wstring path = lowered(asked);
    for (const std::wstring& prefix : policy.prefixes()) {
        if (path.starts_with(prefix)) return true;
    }
    for (const std::wstring_view row : excludedFolderNameRows()) {
        const std::wstring end = L"\\" + std::wstring(row);
        if (path.find(end + L"\\") != std::wstring::npos || path.ends_with(end)) return true;
    }
    return false;
}

// --- what is excluded on a usual machine

TEST(PathPolicyTest, AFileInTheWindowsFolderIsExcludedTheFolderNeedsItsBackslash) {
    const PathPolicy policy(usualMachine());
    EXPECT_TRUE(policy.isExcludedPath(L"C:\\Windows\\notepad.exe"));
    EXPECT_TRUE(policy.isExcludedPath(L"C:\\Windows\\"));
    EXPECT_FALSE(policy.isExcludedPath(L"C:\\Windows"));
    EXPECT_FALSE(policy.isExcludedPath(L"C:\\Windows.old\\notes.txt"));
    EXPECT_FALSE(policy.isExcludedPath(L"D:\\Windows\\notepad.exe"));
}

TEST(PathPolicyTest, CaseDoesNotMatter) {
    const PathPolicy policy(usualMachine());
    EXPECT_TRUE(policy.isExcludedPath(L"c:\\WINDOWS\\NOTEPAD.EXE"));
    EXPECT_TRUE(policy.isExcludedPath(L"e:\\Work\\BIN\\tool.txt"));
}

TEST(PathPolicyTest, LettersBeyondAsciiKeepTheirCase) {
    ScriptedPolicyMachine machine;
    machine.folders = {{Folder::Windows, L"C:\\\u00C4mter"}};
    const PathPolicy policy(machine);
    EXPECT_TRUE(policy.isExcludedPath(L"c:\\\u00C4MTER\\a.txt"));
    EXPECT_FALSE(policy.isExcludedPath(L"c:\\\u00E4mter\\a.txt"));
}

TEST(PathPolicyTest, TheUsersOwnFilesAreNotExcluded) {
    const PathPolicy policy(usualMachine());
    EXPECT_FALSE(policy.isExcludedPath(L"C:\\Users\\Ann\\Documents\\letter.txt"));
    EXPECT_FALSE(policy.isExcludedPath(L"C:\\Users\\Ann\\Desktop\\letter.txt"));
    EXPECT_FALSE(policy.isExcludedPath(L"C:\\Users\\Ann\\"));
    EXPECT_FALSE(policy.isExcludedPath(L"D:\\letter.txt"));
    EXPECT_FALSE(policy.isExcludedPath(L"D:\\"));
    EXPECT_FALSE(policy.isExcludedPath(L""));
}

TEST(PathPolicyTest, EveryKnownFolderIsExcludedButNotThatOfTheProfiles) {
    for (const auto& [folder, path] : usualMachine().folders) {
        ScriptedPolicyMachine machine;
        machine.folders = {{folder, path}};
        const PathPolicy policy(machine);
        EXPECT_EQ(policy.isExcludedPath(path + L"\\letter.txt"), folder != Folder::UserProfiles);
        EXPECT_EQ(holds(policy, lowered(path) + L"\\"), folder != Folder::UserProfiles);
    }
}

// --- folder names

TEST(PathPolicyTest, AFolderNameIsExcludedOnAnyDriveAsAWholeComponent) {
    const PathPolicy policy(usualMachine());
    EXPECT_TRUE(policy.isExcludedPath(L"E:\\work\\bin\\notes.txt"));
    EXPECT_TRUE(policy.isExcludedPath(L"E:\\bin\\deep\\down\\notes.txt"));
    EXPECT_TRUE(policy.isExcludedPath(L"E:\\work\\bin\\"));
    EXPECT_TRUE(policy.isExcludedPath(L"E:\\work\\bin")) << "the folder itself";
    EXPECT_FALSE(policy.isExcludedPath(L"E:\\work\\binder\\notes.txt"));
    EXPECT_FALSE(policy.isExcludedPath(L"E:\\work\\cabin\\notes.txt"));
    EXPECT_FALSE(policy.isExcludedPath(L"E:\\work\\cabin"));
    EXPECT_FALSE(policy.isExcludedPath(L"E:\\work\\notes.bin"));
    EXPECT_FALSE(policy.isExcludedPath(L"E:\\work\\bin.txt"));
    EXPECT_FALSE(policy.isExcludedPath(L"bin\\notes.txt")) << "no backslash in front";
    EXPECT_FALSE(policy.isExcludedPath(L"bin"));
}

TEST(PathPolicyTest, EveryFolderNameButTheOneInCapitalsMatches) {
    const PathPolicy policy{ScriptedPolicyMachine()};
    for (const std::wstring_view row : excludedFolderNameRows()) {
        const std::wstring folder = L"E:\\work\\" + std::wstring(row);
        const bool matches = row != L"__MACOSX";
        EXPECT_EQ(policy.isExcludedPath(folder), matches);
        EXPECT_EQ(policy.isExcludedPath(folder + L"\\"), matches);
        EXPECT_EQ(policy.isExcludedPath(folder + L"\\notes.txt"), matches);
        EXPECT_FALSE(policy.isExcludedPath(folder + L"x\\notes.txt"));
        EXPECT_FALSE(policy.isExcludedPath(L"E:\\x" + std::wstring(row) + L"\\notes.txt"));
    }
}

TEST(PathPolicyTest, AFileInAFolderOfThatNameInCapitalsIsNotExcluded) {
    const PathPolicy policy(usualMachine());
    EXPECT_FALSE(policy.isExcludedPath(L"E:\\work\\__MACOSX\\notes.txt"));
    EXPECT_FALSE(policy.isExcludedPath(L"E:\\work\\__macosx\\notes.txt"));
}

// --- profiles and drives

TEST(PathPolicyTest, AppDataOfEveryProfileIsExcluded) {
    const PathPolicy policy(usualMachine());
    for (const wchar_t* folder : {L"local\\", L"roaming\\", L"locallow\\"}) {
        EXPECT_TRUE(holds(policy, std::wstring(L"c:\\users\\ann\\appdata\\") + folder));
        EXPECT_TRUE(holds(policy, std::wstring(L"c:\\users\\public\\appdata\\") + folder));
    }
    EXPECT_TRUE(holds(policy, L"c:\\users\\ann\\appdata\\")) << "the row of the user's own profile";
    EXPECT_FALSE(holds(policy, L"c:\\users\\public\\appdata\\"));
    EXPECT_TRUE(policy.isExcludedPath(L"C:\\Users\\Ann\\AppData\\other\\a.txt"));
    EXPECT_TRUE(policy.isExcludedPath(L"D:\\backup\\AppData\\a.txt")) << "by the folder name";
}

TEST(PathPolicyTest, AProfilesFolderThatEndsInABackslashGetsNoSecondOne) {
    ScriptedPolicyMachine machine;
    machine.folders = {{Folder::UserProfiles, L"U:\\"}};
    machine.subfoldersOf = {{L"U:\\", {L"Ann"}}};
    const PathPolicy policy(machine);
    EXPECT_TRUE(holds(policy, L"u:\\ann\\appdata\\local\\"));
    EXPECT_TRUE(policy.isUserDesktopFolder(L"U:\\Ann\\Desktop"));
}

TEST(PathPolicyTest, TheSystemsFoldersOfEveryDrivePresentAreExcluded) {
    const PathPolicy policy(usualMachine());
    for (const wchar_t* drive : {L"C", L"D"}) {
        const std::wstring root = std::wstring(drive) + L":\\";
        EXPECT_TRUE(policy.isExcludedPath(root + L"$Recycle.Bin\\S-1\\$R1.txt"));
        EXPECT_TRUE(policy.isExcludedPath(root + L"System Volume Information\\a"));
        EXPECT_TRUE(policy.isExcludedPath(root + L"Recovery\\a"));
        EXPECT_FALSE(policy.isExcludedPath(root + L"old\\Recovery\\a"));
    }
    EXPECT_FALSE(policy.isExcludedPath(L"E:\\$Recycle.Bin\\S-1\\$R1.txt"));
}

// --- rows

TEST(PathPolicyTest, EveryRowOfTheListsExcludesWhatLiesBelowIt) {
    ScriptedPolicyMachine machine;
    machine.variables = usualMachine().variables;
    const PathPolicy policy(machine);
    for (const auto rows : {excludedSystemRows(), excludedPlaceRows()}) {
        for (const std::wstring_view row : rows) {
            const std::wstring folder = *machine.expanded(row);
            EXPECT_TRUE(holds(policy, lowered(folder) + L"\\"));
            EXPECT_TRUE(policy.isExcludedPath(folder + L"\\notes.txt"));
        }
    }
    EXPECT_FALSE(policy.isExcludedPath(L"C:\\Windows\\notepad.exe")) << "only a known folder says so";
}

TEST(PathPolicyTest, RowsOfDriveCAreTakenAsTheyStand) {
    ScriptedPolicyMachine machine;
    machine.drives = L"CD";
    const PathPolicy policy(machine);
    EXPECT_TRUE(policy.isExcludedPath(L"C:\\Intel\\logs\\a.txt"));
    EXPECT_FALSE(policy.isExcludedPath(L"D:\\Intel\\logs\\a.txt"));
    for (const std::wstring& row : machine.expandedRows) EXPECT_NE(row.find(L'%'), std::wstring::npos);
    EXPECT_EQ(machine.expandedRows.size(), 10u + 141u - 23u);
}

TEST(PathPolicyTest, AVariableThatIsNotSetStaysInTheText) {
    const PathPolicy policy{ScriptedPolicyMachine()};
    EXPECT_TRUE(holds(policy, L"%systemroot%\\temp\\"));
    EXPECT_TRUE(holds(policy, L"%temp%\\"));
    EXPECT_TRUE(holds(policy, L"%programfiles(x86)%\\steam\\"));
    EXPECT_FALSE(policy.isExcludedPath(L"C:\\Users\\Ann\\notes.txt"));
}

TEST(PathPolicyTest, ARowWhoseExpansionFailsIsLeftOut) {
    ScriptedPolicyMachine machine = usualMachine();
    machine.failingRows = {L"%USERPROFILE%\\.ssh", L"%SystemRoot%\\Temp"};
    const PathPolicy policy(machine);
    EXPECT_FALSE(policy.isExcludedPath(L"C:\\Users\\Ann\\.ssh\\config.txt"));
    EXPECT_TRUE(policy.isExcludedPath(L"C:\\Users\\Ann\\.kube\\config.txt"));
    EXPECT_FALSE(holds(policy, L"c:\\windows\\temp\\"));
    EXPECT_TRUE(holds(policy, L"c:\\windows\\prefetch\\"));
}

TEST(PathPolicyTest, AMachineThatTellsNothingLeavesTheRowsOfDriveC) {
    ScriptedPolicyMachine machine;
    for (const auto rows : {excludedSystemRows(), excludedPlaceRows()}) {
        machine.failingRows.insert(rows.begin(), rows.end());
    }
    const PathPolicy policy(machine);
    ASSERT_EQ(policy.prefixes().size(), 23u);
    for (const std::wstring& prefix : policy.prefixes()) EXPECT_TRUE(prefix.starts_with(L"c:\\"));
    EXPECT_EQ(policy.prefixes().front(), L"c:\\amd\\");
    EXPECT_EQ(policy.prefixes().back(), L"c:\\xampp\\");
}

TEST(PathPolicyTest, APrefixIsLoweredEndsInOneBackslashAndStandsOnceInOrder) {
    ScriptedPolicyMachine machine = usualMachine();
    machine.folders[Folder::Fonts] = L"F:\\Fonts\\";
    machine.variables[L"tmp"] = L"T:\\";
    const PathPolicy policy(machine);
    EXPECT_TRUE(holds(policy, L"f:\\fonts\\"));
    EXPECT_TRUE(holds(policy, L"t:\\"));
    EXPECT_TRUE(policy.isExcludedPath(L"T:\\a.txt"));
    Paths expected = policy.prefixes();
    std::sort(expected.begin(), expected.end());
    expected.erase(std::unique(expected.begin(), expected.end()), expected.end());
    EXPECT_EQ(policy.prefixes(), expected);
    for (const std::wstring& prefix : policy.prefixes()) {
        EXPECT_EQ(prefix, lowered(prefix));
        EXPECT_TRUE(prefix.ends_with(L'\\') && !prefix.ends_with(L"\\\\"));
    }
}

TEST(PathPolicyTest, AnEmptyTextBecomesTheBackslashAloneRatherThanExcludeEverything) {
    ScriptedPolicyMachine machine;
    machine.variables = {{L"temp", L""}};
    const PathPolicy policy(machine);
    EXPECT_TRUE(holds(policy, L"\\"));
    EXPECT_FALSE(policy.isExcludedPath(L"C:\\notes.txt"));
}

TEST(PathPolicyTest, WhatTheMachineTellsLaterDoesNotCount) {
    ScriptedPolicyMachine machine = usualMachine();
    const PathPolicy policy(machine);
    machine.drives = L"CDE";
    machine.subfoldersOf[L"C:\\Users"].push_back(L"Bob");
    EXPECT_FALSE(policy.isExcludedPath(L"E:\\Recovery\\a"));
    EXPECT_FALSE(holds(policy, L"c:\\users\\bob\\appdata\\local\\"));
}

// --- the search

TEST(PathPolicyTest, TheSearchAnswersAsTryingEveryRowWould) {
    const PathPolicy policy(usualMachine());
    Paths components = {L"",       L"C:",        L"D:",      L"Users", L"Ann",
                        L"Public", L"notes.txt", L"Windows", L"z",     L"\u00E4"};
    for (const std::wstring& prefix : policy.prefixes()) {
        for (std::size_t begin = 0, end = 0; begin < prefix.size(); begin = end + 1) {
            end = prefix.find(L'\\', begin);
            components.push_back(prefix.substr(begin, end - begin));
        }
    }
    for (const std::wstring_view row : excludedFolderNameRows()) components.emplace_back(row);
    std::mt19937 random(7);
    const auto below = [&random](std::size_t limit) { return random() % limit; };
    std::size_t excluded = 0, shown = 0;
    for (int round = 0; round < 15000; ++round) {
        std::wstring path;
        if (below(2) == 0) {
            const std::wstring& prefix = policy.prefixes()[below(policy.prefixes().size())];
            path = prefix.substr(0, prefix.size() - below(3));
        }
        for (std::size_t count = below(5); count > 0; --count) {
            path += components[below(components.size())];
            if (below(8) != 0) path += L'\\';
        }
        if (!path.empty() && below(4) == 0) {
            wchar_t& unit = path[below(path.size())];
            if (unit >= L'a' && unit <= L'z') unit = static_cast<wchar_t>(unit - L'a' + L'A');
        }
        const bool expected = excludedByEveryRow(policy, path);
        ++(expected ? excluded : shown);
        ASSERT_EQ(policy.isExcludedPath(path), expected) << ::testing::PrintToString(path);
    }
    EXPECT_GT(excluded, 3000u);
    EXPECT_GT(shown, 3000u);
}

TEST(PathPolicyTest, NoQuestionAllocatesMemory) {
    const PathPolicy policy(usualMachine());
    const std::wstring shown = L"C:\\Users\\Ann\\Documents\\a rather long name of a letter.txt";
    const std::wstring desktop = L"C:\\Users\\Ann\\Documents\\old\\Desktop\\";
    const std::uint64_t before = allocationsOfThisThread();
    const bool excluded = policy.isExcludedPath(shown);
    const bool isDesktop = policy.isUserDesktopFolder(desktop);
    EXPECT_EQ(allocationsOfThisThread(), before);
    EXPECT_FALSE(excluded);
    EXPECT_TRUE(isDesktop);
}

// --- desktop folders

TEST(PathPolicyTest, ADesktopFolderAtAnyDepthBelowTheProfilesCounts) {
    const PathPolicy policy(usualMachine());
    EXPECT_TRUE(policy.isUserDesktopFolder(L"C:\\Users\\Ann\\Desktop"));
    EXPECT_TRUE(policy.isUserDesktopFolder(L"C:\\Users\\Ann\\Desktop\\"));
    EXPECT_TRUE(policy.isUserDesktopFolder(L"c:\\USERS\\public\\DESKTOP"));
    EXPECT_TRUE(policy.isUserDesktopFolder(L"C:\\Users\\Ann\\Documents\\old\\Desktop"));
    EXPECT_TRUE(policy.isUserDesktopFolder(L"C:\\Users\\Desktop"));
}

TEST(PathPolicyTest, OtherFoldersAreNoDesktop) {
    const PathPolicy policy(usualMachine());
    EXPECT_FALSE(policy.isUserDesktopFolder(L""));
    EXPECT_FALSE(policy.isUserDesktopFolder(L"\\"));
    EXPECT_FALSE(policy.isUserDesktopFolder(L"desktop"));
    EXPECT_FALSE(policy.isUserDesktopFolder(L"desktop\\"));
    EXPECT_FALSE(policy.isUserDesktopFolder(L"C:\\Users\\Ann\\Desktop\\\\"))
        << "only one backslash is dropped";
    EXPECT_FALSE(policy.isUserDesktopFolder(L"C:\\Users\\Ann\\Desktop\\sub"));
    EXPECT_FALSE(policy.isUserDesktopFolder(L"C:\\Users\\Ann\\My Desktop"));
    EXPECT_FALSE(policy.isUserDesktopFolder(L"C:\\Users\\Ann\\Desktops"));
    EXPECT_FALSE(policy.isUserDesktopFolder(L"D:\\Users\\Ann\\Desktop"));
    EXPECT_FALSE(policy.isUserDesktopFolder(L"C:\\Users2\\Ann\\Desktop"));
    EXPECT_FALSE(policy.isUserDesktopFolder(L"C:\\Desktop"));
}

TEST(PathPolicyTest, WithoutAKnownPlaceOfProfilesADesktopFolderCountsAnywhere) {
    const PathPolicy policy{ScriptedPolicyMachine()};
    EXPECT_TRUE(policy.isUserDesktopFolder(L"D:\\Desktop"));
    EXPECT_TRUE(policy.isUserDesktopFolder(L"\\desktop"));
    EXPECT_FALSE(policy.isUserDesktopFolder(L"desktop"));
    EXPECT_FALSE(policy.isUserDesktopFolder(L"D:\\Desk"));
}

}  // namespace
}  // namespace varnelo
