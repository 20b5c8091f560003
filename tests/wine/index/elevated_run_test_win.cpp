#include "index/elevated_run_win.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/handles_win.h"
#include "support/shell_files_win.h"
#include "support/temp_folder.h"

namespace varnelo {
namespace {

constexpr const wchar_t* kEventName = L"Local\\VarneloElevatedRunTest";

DWORD probe(const std::vector<std::wstring>& arguments) {
    return runTestProgram(L"elevated_probe.exe", arguments);
}

using TokenHandle = UniqueHandle<KernelHandleTraits>;

// The calling thread acts with a token in which the Administrators group only denies.
class WithoutAdministrators {
public:
    WithoutAdministrators() {
        SID_IDENTIFIER_AUTHORITY authority = {SECURITY_NT_AUTHORITY};
        PSID group = nullptr;
        AllocateAndInitializeSid(&authority, 2, SECURITY_BUILTIN_DOMAIN_RID, DOMAIN_ALIAS_RID_ADMINS, 0, 0, 0,
                                 0, 0, 0, &group);
        TokenHandle own;
        TokenHandle restricted;
        SID_AND_ATTRIBUTES disabled = {group, 0};
        held = OpenProcessToken(GetCurrentProcess(), TOKEN_ALL_ACCESS, own.put()) &&
               CreateRestrictedToken(own.get(), 0, 1, &disabled, 0, nullptr, 0, nullptr, restricted.put()) &&
               ImpersonateLoggedOnUser(restricted.get());
        FreeSid(group);
    }
    WithoutAdministrators(const WithoutAdministrators&) = delete;
    WithoutAdministrators& operator=(const WithoutAdministrators&) = delete;
    ~WithoutAdministrators() { RevertToSelf(); }

    bool held = false;
};

TEST(ElevatedRunTest, TheAdministratorsGroupCountsUnlessTheTokenIsRestricted) {
    WindowsElevatedRun run;
    EXPECT_TRUE(run.isUserAdmin()) << "as every user of Wine";
    {
        const WithoutAdministrators restricted;
        ASSERT_TRUE(restricted.held);
        EXPECT_FALSE(run.isUserAdmin());
    }
    EXPECT_TRUE(run.isUserAdmin());
}

TEST(ElevatedRunTest, ItRunsItselfHiddenAndWaitsForItsEnd) {
    const test::TempFolder folder;
    EXPECT_EQ(probe({L"raise", L"60000", L"note", folder.file(L"notes")}), 0u)
        << "how the run ended is not told";
    std::ifstream file(std::filesystem::path(folder.file(L"notes")));
    int show = -1;
    file >> show;
    EXPECT_EQ(show, SW_HIDE);
}

TEST(ElevatedRunTest, AWaitThatIsTooLongOrNotWantedEndsAndLeavesTheRunAlone) {
    const EventHandle event(CreateEventW(nullptr, TRUE, FALSE, kEventName));
    ASSERT_TRUE(event);
    EXPECT_EQ(probe({L"raise", L"100", L"wait", kEventName}), 0u);
    EXPECT_EQ(probe({L"abandon", L"600000", L"wait", kEventName}), 0u);
    SetEvent(event.get());
}

}  // namespace
}  // namespace varnelo
