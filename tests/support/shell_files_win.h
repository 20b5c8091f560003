#pragma once

// Files of one folder, the shell's calls written down, and programs that run beside the test.

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/language_table.h"
#include "platform/handles_win.h"
#include "support/real_desktop_win.h"
#include "views/shell_file_actions_win.h"

namespace varnelo {

// Does nothing but write down what was asked, each call as a line.
class RecordedShellCalls final : public ShellCalls {
public:
    std::vector<std::wstring> done;
    std::vector<ItemIdList> executed;
    std::vector<std::wstring> menuItems;  // of the last menu: "id text", "-" for a separator
    int choice = 0;                       // what the user takes from a menu
    std::function<void(HMENU)> whileMenuIsOpen;

    bool open(HWND window, const wchar_t* file, const wchar_t* parameters, const wchar_t* folder,
              int show) override;
    bool execute(SHELLEXECUTEINFOW& info) override;
    int fileOperation(SHFILEOPSTRUCTW& operation) override;
    int trackMenu(HMENU menu, UINT flags, POINT place, HWND window) override;
};

// Of the ones that stand beside the tests.
std::wstring testProgram(const std::wstring& name);
// Runs it to its end; its exit code.
DWORD runTestProgram(const std::wstring& name, const std::vector<std::wstring>& arguments);
// Leaves it running.
ProcessHandle startTestProgram(const std::wstring& name, const std::vector<std::wstring>& arguments);

// The lines of a UTF-8 file; none when there is no such file.
std::vector<std::wstring> linesOf(const std::wstring& path);

// A folder with files and the actions of a window, with the shell's calls written down or made.
class ShellFilesTest : public ::testing::Test {
protected:
    ShellFilesTest();
    ~ShellFilesTest() override;

    std::wstring pathOf(const std::wstring& name) const { return folder.path() + L"\\" + name; }
    // Makes the file, with its path as content.
    std::wstring file(const std::wstring& name) const;
    std::wstring directory(const std::wstring& name) const;
    ItemIdList itemAt(const std::wstring& path) const;
    ItemIdList item(const std::wstring& name) const { return itemAt(pathOf(name)); }
    static FileEntry entry(const ItemIdList& item);
    // "This computer", which has no path.
    static ItemIdList virtualItem();

    ComApartment apartment{ComApartment::Kind::Single};
    TemporaryFolder folder{L"shell files"};
    LanguageTable language;
    RecordedShellCalls calls;
    WindowsShellCalls realCalls;
    HWND window = nullptr;
    ShellFileActions recorded{[this] { return window; }, language, calls};
    ShellFileActions actions{[this] { return window; }, language, realCalls};
};

// Every block on the clipboard, by the name of its format.
std::map<std::wstring, std::vector<std::uint8_t>> clipboardBlocks();
void putOnClipboard(const wchar_t* format, const std::vector<std::uint8_t>& block);
void emptyClipboard();

}  // namespace varnelo
