#include "index/path_policy_machine_win.h"

#include <windows.h>

#include <shlobj.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

#include "platform/known_folders.h"
#include "platform/text.h"
#include "support/temp_folder.h"

namespace varnelo {
namespace {

using Folder = PathPolicyMachine::Folder;
using Names = std::vector<std::wstring>;

// Sets a variable of this process for one test.
class Variable {
public:
    Variable(const wchar_t* variable, const std::wstring& value) : name(variable) {
        SetEnvironmentVariableW(name, value.c_str());
    }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;
    ~Variable() { SetEnvironmentVariableW(name, nullptr); }

private:
    const wchar_t* name;
};

std::wstring documentsFolder() {
    wchar_t path[MAX_PATH] = {};
    EXPECT_EQ(SHGetFolderPathW(nullptr, CSIDL_PERSONAL, nullptr, 0, path), S_OK);
    return path;
}

TEST(PathPolicyMachineTest, ThePolicyOfThisMachineTellsTheSystemFromTheUser) {
    const WindowsPolicyMachine machine;
    const PathPolicy policy(machine);
    wchar_t windows[MAX_PATH] = {};
    ASSERT_NE(GetWindowsDirectoryW(windows, MAX_PATH), 0u);
    EXPECT_TRUE(policy.isExcludedPath(std::wstring(windows) + L"\\notes.txt"));
    EXPECT_FALSE(policy.isExcludedPath(documentsFolder() + L"\\notes.txt"));
    EXPECT_TRUE(policy.isExcludedPath(knownFolder(KnownFolder::LocalAppData) + L"\\notes.txt"));
    EXPECT_TRUE(policy.isUserDesktopFolder(knownFolder(KnownFolder::Desktop)));
    EXPECT_FALSE(policy.isUserDesktopFolder(std::wstring(windows) + L"\\Desktop"))
        << "the place of profiles is known";
}

TEST(PathPolicyMachineTest, KnownFoldersAreThoseOfTheSystem) {
    const WindowsPolicyMachine machine;
    wchar_t path[MAX_PATH] = {};
    const auto folderOf = [&path](int id) {
        EXPECT_EQ(SHGetFolderPathW(nullptr, id, nullptr, 0, path), S_OK) << id;
        return std::wstring(path);
    };
    EXPECT_EQ(machine.knownFolder(Folder::Windows), folderOf(CSIDL_WINDOWS));
    EXPECT_EQ(machine.knownFolder(Folder::System), folderOf(CSIDL_SYSTEM));
    EXPECT_EQ(machine.knownFolder(Folder::SystemX86), folderOf(CSIDL_SYSTEMX86));
    EXPECT_EQ(machine.knownFolder(Folder::Fonts), folderOf(CSIDL_FONTS));
    EXPECT_EQ(machine.knownFolder(Folder::ProgramFiles), folderOf(CSIDL_PROGRAM_FILES));
    EXPECT_EQ(machine.knownFolder(Folder::ProgramFilesX86), folderOf(CSIDL_PROGRAM_FILESX86));
    EXPECT_EQ(machine.knownFolder(Folder::ProgramFilesCommon), folderOf(CSIDL_PROGRAM_FILES_COMMON));
    EXPECT_EQ(machine.knownFolder(Folder::ProgramFilesCommonX86), folderOf(CSIDL_PROGRAM_FILES_COMMONX86));
    EXPECT_EQ(machine.knownFolder(Folder::ProgramData), folderOf(CSIDL_COMMON_APPDATA));
    EXPECT_EQ(machine.knownFolder(Folder::LocalAppData), folderOf(CSIDL_LOCAL_APPDATA));
    EXPECT_EQ(machine.knownFolder(Folder::RoamingAppData), folderOf(CSIDL_APPDATA));
    // The two without a number of that kind lie beside and above what has one.
    const std::wstring local = folderOf(CSIDL_LOCAL_APPDATA);
    EXPECT_EQ(machine.knownFolder(Folder::LocalAppDataLow), local + L"Low");
    const std::wstring profile = folderOf(CSIDL_PROFILE);
    const auto profiles = machine.knownFolder(Folder::UserProfiles);
    ASSERT_TRUE(profiles.has_value());
    EXPECT_EQ(lowered(*profiles), lowered(profile.substr(0, profile.rfind(L'\\'))));
}

TEST(PathPolicyMachineTest, AVariableIsReplacedAndAnUnknownOneStays) {
    const WindowsPolicyMachine machine;
    const Variable variable(L"VarneloPlace", L"P:\\place");
    EXPECT_EQ(machine.expanded(L"%VARNELOPLACE%\\sub"), L"P:\\place\\sub");
    EXPECT_EQ(machine.expanded(L"%VarneloNowhere%\\sub"), L"%VarneloNowhere%\\sub");
}

TEST(PathPolicyMachineTest, AnExpansionOf259UnitsIsTheLongest) {
    const WindowsPolicyMachine machine;
    const Variable variable(L"VarneloPlace", std::wstring(258, L'p'));
    EXPECT_EQ(machine.expanded(L"%VarneloPlace%s"), std::wstring(258, L'p') + L"s");
    EXPECT_EQ(machine.expanded(L"%VarneloPlace%st"), std::nullopt);
}

TEST(PathPolicyMachineTest, SubfoldersAreAllFoldersAndNoFiles) {
    const WindowsPolicyMachine machine;
    const test::TempFolder folder;
    ASSERT_TRUE(CreateDirectoryW(folder.file(L"shown").c_str(), nullptr));
    ASSERT_TRUE(CreateDirectoryW(folder.file(L"hidden").c_str(), nullptr));
    ASSERT_TRUE(SetFileAttributesW(folder.file(L"hidden").c_str(), FILE_ATTRIBUTE_HIDDEN));
    ASSERT_TRUE(CreateDirectoryW(folder.file(L"shown\\deeper").c_str(), nullptr));
    CloseHandle(CreateFileW(folder.file(L"file").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
    Names names = machine.subfolders(folder.path());
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (Names{L"hidden", L"shown"}));
    EXPECT_EQ(machine.subfolders(folder.file(L"missing")), Names{});
}

TEST(PathPolicyMachineTest, DriveLettersAreThoseOfTheSystem) {
    const WindowsPolicyMachine machine;
    wchar_t roots[26 * 4 + 1] = {};  // "A:\", each with a terminator, and one more
    ASSERT_NE(GetLogicalDriveStringsW(static_cast<DWORD>(std::size(roots)), roots), 0u);
    std::wstring expected;
    for (const wchar_t* root = roots; *root != L'\0'; root += 4) expected += *root;
    EXPECT_EQ(machine.driveLetters(), expected);
    EXPECT_NE(expected.find(L'C'), std::wstring::npos);
}

}  // namespace
}  // namespace varnelo
