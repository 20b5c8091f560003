#include "support/shell_files_win.h"

#include <shlobj.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "platform/item_id_list_win.h"
#include "platform/utf.h"

namespace varnelo {
namespace {

std::wstring textOf(const wchar_t* text) { return text ? text : L"null"; }
std::wstring windowText(HWND window) { return window ? L"window" : L"null"; }

// The paths of a list with two zeros at its end.
std::wstring listText(const wchar_t* list) {
    if (!list) return L"null";
    std::wstring text;
    for (; *list != L'\0'; list += std::wcslen(list) + 1) text += L"[" + std::wstring(list) + L"]";
    return text;
}

// As the C runtime takes a command line apart.
std::wstring quoted(const std::wstring& argument) { return L" \"" + argument + L"\""; }

}  // namespace

bool RecordedShellCalls::open(HWND window, const wchar_t* file, const wchar_t* parameters,
                              const wchar_t* folder, int show) {
    done.push_back(L"open " + windowText(window) + L", " + textOf(file) + L", " + textOf(parameters) + L", " +
                   textOf(folder) + L", " + std::to_wstring(show));
    return true;
}

bool RecordedShellCalls::execute(SHELLEXECUTEINFOW& info) {
    EXPECT_EQ(info.cbSize, sizeof info);
    done.push_back(L"execute " + textOf(info.lpVerb) + L", mask " + std::to_wstring(info.fMask) + L", " +
                   windowText(info.hwnd) + L", file " + textOf(info.lpFile) + L", show " +
                   std::to_wstring(info.nShow));
    executed.push_back(itemIdListFrom(static_cast<const ITEMIDLIST*>(info.lpIDList)));
    return true;
}

int RecordedShellCalls::fileOperation(SHFILEOPSTRUCTW& operation) {
    done.push_back(L"operation " + std::to_wstring(operation.wFunc) + L", " + windowText(operation.hwnd) +
                   L", " + listText(operation.pFrom) + L" to " + listText(operation.pTo) + L", flags " +
                   std::to_wstring(operation.fFlags) + L", title " + textOf(operation.lpszProgressTitle));
    return 0;
}

int RecordedShellCalls::trackMenu(HMENU menu, UINT flags, POINT, HWND window) {
    done.push_back(L"menu " + std::to_wstring(flags) + L", " + windowText(window));
    menuItems.clear();
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
        wchar_t text[100] = {};
        GetMenuStringW(menu, static_cast<UINT>(i), text, 100, MF_BYPOSITION);
        const UINT id = GetMenuItemID(menu, i);
        menuItems.push_back(id == 0 ? L"-" : std::to_wstring(id) + L" " + text);
    }
    if (whileMenuIsOpen) whileMenuIsOpen(menu);
    return choice;
}

std::wstring testProgram(const std::wstring& name) {
    wchar_t self[MAX_PATH];
    GetModuleFileNameW(nullptr, self, MAX_PATH);
    return (std::filesystem::path(self).parent_path() / name).wstring();
}

ProcessHandle startTestProgram(const std::wstring& name, const std::vector<std::wstring>& arguments) {
    std::wstring command = quoted(testProgram(name)).substr(1);
    for (const std::wstring& argument : arguments) command += quoted(argument);
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started = {};
    if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &started)) {
        throw std::runtime_error("a program of the test cannot be started");
    }
    const ThreadHandle thread(started.hThread);
    return ProcessHandle(started.hProcess);
}

DWORD runTestProgram(const std::wstring& name, const std::vector<std::wstring>& arguments) {
    const ProcessHandle process = startTestProgram(name, arguments);
    DWORD exitCode = 0;
    if (WaitForSingleObject(process.get(), 60000) != WAIT_OBJECT_0 ||
        !GetExitCodeProcess(process.get(), &exitCode)) {
        throw std::runtime_error("a program of the test does not end");
    }
    return exitCode;
}

std::vector<std::wstring> linesOf(const std::wstring& path) {
    std::ifstream file{std::filesystem::path(path), std::ios::binary};
    std::vector<std::wstring> lines;
    for (std::string line; std::getline(file, line);) lines.push_back(wideFromUtf8(line));
    return lines;
}

ShellFilesTest::ShellFilesTest() {
    const std::string texts = "EXECUTE = Run\nEXECUTE_ADMIN = Run as Administrator\nUNINSTALL = Uninstall\n";
    language.loadText({reinterpret_cast<const std::uint8_t*>(texts.data()), texts.size()});
    window = CreateWindowExW(0, L"STATIC", L"shell files", WS_POPUP | WS_VISIBLE, 0, 0, 300, 200, nullptr,
                             nullptr, GetModuleHandleW(nullptr), nullptr);
    emptyClipboard();
}

ShellFilesTest::~ShellFilesTest() {
    DestroyWindow(window);
    emptyClipboard();
}

std::wstring ShellFilesTest::file(const std::wstring& name) const {
    writeFile(pathOf(name), utf8FromWide(pathOf(name)));
    return pathOf(name);
}

std::wstring ShellFilesTest::directory(const std::wstring& name) const {
    std::filesystem::create_directories(pathOf(name));
    return pathOf(name);
}

ItemIdList ShellFilesTest::itemAt(const std::wstring& path) const {
    ShellIdList list;
    if (FAILED(SHParseDisplayName(path.c_str(), nullptr, list.put(), 0, nullptr))) {
        throw std::runtime_error("the shell does not know a file of the test");
    }
    return itemIdListFrom(list.get());
}

FileEntry ShellFilesTest::entry(const ItemIdList& item) {
    FileEntry result;
    result.pidl = item;
    return result;
}

ItemIdList ShellFilesTest::virtualItem() {
    ShellIdList list;
    SHGetSpecialFolderLocation(nullptr, CSIDL_DRIVES, list.put());
    return itemIdListFrom(list.get());
}

std::map<std::wstring, std::vector<std::uint8_t>> clipboardBlocks() {
    std::map<std::wstring, std::vector<std::uint8_t>> blocks;
    if (!OpenClipboard(nullptr)) throw std::runtime_error("the clipboard cannot be opened");
    for (UINT format = 0; (format = EnumClipboardFormats(format)) != 0;) {
        wchar_t name[100] = {};
        if (!GetClipboardFormatNameW(format, name, 100)) std::wcscpy(name, std::to_wstring(format).c_str());
        const HANDLE memory = GetClipboardData(format);
        const auto* const bytes = static_cast<const std::uint8_t*>(GlobalLock(memory));
        blocks[name].assign(bytes, bytes + GlobalSize(memory));
        GlobalUnlock(memory);
    }
    CloseClipboard();
    return blocks;
}

void putOnClipboard(const wchar_t* format, const std::vector<std::uint8_t>& block) {
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, block.size());
    std::memcpy(GlobalLock(memory), block.data(), block.size());
    GlobalUnlock(memory);
    if (!OpenClipboard(nullptr)) throw std::runtime_error("the clipboard cannot be opened");
    SetClipboardData(RegisterClipboardFormatW(format), memory);
    CloseClipboard();
}

void emptyClipboard() {
    if (!OpenClipboard(nullptr)) throw std::runtime_error("the clipboard cannot be opened");
    EmptyClipboard();
    CloseClipboard();
}

}  // namespace varnelo
