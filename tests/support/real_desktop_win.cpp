#include "support/real_desktop_win.h"

#include <windows.h>

#include <shlobj.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <thread>

#include "platform/com_ref.h"
#include "platform/handles_win.h"
#include "platform/known_folders.h"

namespace varnelo {
namespace {

FileHandle openForWriting(const std::wstring& path, DWORD access, DWORD disposition) {
    FileHandle file(CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                nullptr, disposition, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    if (!file) throw std::runtime_error("a file of the test cannot be opened");
    return file;
}

}  // namespace

TemporaryFolder::TemporaryFolder(const std::wstring& name) {
    const auto base = std::filesystem::temp_directory_path() /
                      (L"varnelo " + name + L" " + std::to_wstring(GetCurrentProcessId()));
    std::filesystem::remove_all(base);
    std::filesystem::create_directories(base);
    folder = base.wstring();
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
}

void writeFile(const std::wstring& path, const std::string& content) {
    const FileHandle file = openForWriting(path, GENERIC_WRITE, CREATE_ALWAYS);
    DWORD written = 0;
    if (!WriteFile(file.get(), content.data(), static_cast<DWORD>(content.size()), &written, nullptr)) {
        throw std::runtime_error("a file of the test cannot be written");
    }
}

void setWriteTime(const std::wstring& path, std::uint64_t fileTime) {
    const FileHandle file = openForWriting(path, FILE_WRITE_ATTRIBUTES, OPEN_EXISTING);
    const FILETIME time = {static_cast<DWORD>(fileTime), static_cast<DWORD>(fileTime >> 32)};
    if (!SetFileTime(file.get(), nullptr, nullptr, &time)) throw std::runtime_error("no time can be set");
}

void makeLink(const std::wstring& linkPath, const std::wstring& target) {
    ComRef<IShellLinkW> link;
    ComRef<IPersistFile> file;
    if (FAILED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                                link.putVoid())) ||
        FAILED(link->SetPath(target.c_str())) ||
        FAILED(link->QueryInterface(IID_IPersistFile, file.putVoid())) ||
        FAILED(file->Save(linkPath.c_str(), TRUE))) {
        throw std::runtime_error("a link of the test cannot be made");
    }
}

std::vector<std::wstring> namesIn(const std::wstring& folder) {
    std::vector<std::wstring> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        names.push_back(entry.path().filename().wstring());
    }
    std::sort(names.begin(), names.end());
    return names;
}

void anotherProcess(const std::wstring& arguments) {
    wchar_t self[MAX_PATH];
    GetModuleFileNameW(nullptr, self, MAX_PATH);
    const auto program = std::filesystem::path(self).parent_path() / L"change_files.exe";
    std::wstring command = L"\"" + program.wstring() + L"\" " + arguments;
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started = {};
    if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &started)) {
        throw std::runtime_error("change_files.exe cannot be started");
    }
    const ProcessHandle process(started.hProcess);
    const ThreadHandle thread(started.hThread);
    DWORD exitCode = 1;
    if (WaitForSingleObject(process.get(), 60000) != WAIT_OBJECT_0 ||
        !GetExitCodeProcess(process.get(), &exitCode) || exitCode != 0) {
        throw std::runtime_error("change_files.exe failed");
    }
}

::testing::AssertionResult becomesTrue(const std::function<bool()>& question) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!question()) {
        if (std::chrono::steady_clock::now() > end) {
            return ::testing::AssertionFailure() << "not within ten seconds";
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return ::testing::AssertionSuccess();
}

RealDesktopTest::RealDesktopTest() : desktopFolder(knownFolder(KnownFolder::Desktop)) {
    if (desktopFolder.empty()) throw std::runtime_error("there is no desktop folder");
    emptyTheDesktop();
}

RealDesktopTest::~RealDesktopTest() { emptyTheDesktop(); }

// Only what tests put there: all their names begin with a number, which makes no two of them a family.
void RealDesktopTest::emptyTheDesktop() const {
    for (const std::wstring& name : namesIn(desktopFolder)) {
        if (!name.starts_with(L"00 ")) continue;
        SetFileAttributesW(pathOf(name).c_str(), FILE_ATTRIBUTE_NORMAL);
        std::error_code ignored;
        std::filesystem::remove_all(pathOf(name), ignored);
    }
}

}  // namespace varnelo
