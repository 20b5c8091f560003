#include "index/elevated_run_win.h"

#include <windows.h>

#include <shellapi.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/handles_win.h"
#include "support/import_patch_win.h"
#include "support/shell_files_win.h"
#include "support/temp_folder.h"

extern "C" void* __imp_ShellExecuteExW;

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

// Stands in for the system's prompt.
struct Prompt {
    bool refused = false;
    HANDLE process = nullptr;  // of the run that was allowed

    std::wstring verb, program, arguments;
    DWORD structureBytes = 0;
    ULONG mask = 0;
    int show = -1;
};
Prompt prompt;

BOOL WINAPI answerPrompt(SHELLEXECUTEINFOW* info) {
    prompt.structureBytes = info->cbSize;
    prompt.verb = info->lpVerb;
    prompt.program = info->lpFile;
    prompt.arguments = info->lpParameters;
    prompt.mask = info->fMask;
    prompt.show = info->nShow;
    info->hProcess = prompt.process;
    if (prompt.refused) SetLastError(ERROR_CANCELLED);
    return !prompt.refused;
}

TEST(ElevatedRunTest, TheUserIsAskedForThisProgramAndItsProcessIsKeptToWaitFor) {
    const test::ImportPatch patch(__imp_ShellExecuteExW, answerPrompt);
    // Whatever can be waited for stands in for a process: this one has ended.
    prompt = {};
    prompt.process = CreateEventW(nullptr, TRUE, TRUE, nullptr);
    EXPECT_TRUE(WindowsElevatedRun().runElevated(L"--ntfs-scan", 600'000, {}));
    EXPECT_EQ(prompt.structureBytes, sizeof(SHELLEXECUTEINFOW));
    EXPECT_EQ(prompt.verb, L"runas");
    wchar_t own[1024] = {};
    GetModuleFileNameW(nullptr, own, 1024);
    EXPECT_EQ(prompt.program, own);
    EXPECT_EQ(prompt.arguments, L"--ntfs-scan");
    EXPECT_EQ(prompt.mask, 0x140u) << "keep the process, and return when it was started";
    EXPECT_EQ(prompt.show, 0);
    DWORD flags = 0;
    EXPECT_FALSE(GetHandleInformation(prompt.process, &flags)) << "the handle is closed";
}

TEST(ElevatedRunTest, ARefusalOfThePromptIsARunThatCouldNotBeStarted) {
    const test::ImportPatch patch(__imp_ShellExecuteExW, answerPrompt);
    prompt = {};
    prompt.refused = true;
    EXPECT_FALSE(WindowsElevatedRun().runElevated(L"--ntfs-scan", 600'000, {}));
}

}  // namespace
}  // namespace varnelo
