// What a double click opens: the exact call, and with the real shell the program that is started.

#include <gmock/gmock.h>
#include <windows.h>

#include "support/shell_files_win.h"

namespace varnelo {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;

const std::wstring kById = L"execute null, mask 4, null, file null, show 1";

class LaunchCallsTest : public ShellFilesTest {
protected:
    std::vector<std::wstring> launched(const ItemIdList& id) {
        calls.done.clear();
        calls.executed.clear();
        recorded.launch(entry(id));
        return calls.done;
    }
    std::vector<std::wstring> launchedFile(const std::wstring& name) {
        file(name);
        return launched(item(name));
    }
};

TEST_F(LaunchCallsTest, AFileGoesThroughTheHiddenCommandProcessor) {
    const auto call = [](const std::wstring& path) {
        return L"open null, cmd.exe, /c start \"\" \"" + path + L"\", null, 0";
    };
    for (const wchar_t* name : {L"plan.txt", L"My plan (1), new; a=b.txt", L"-rf.txt",
                                L"\u65E5\u672C\u8A9E.txt", L"noextension", L"run.bat"}) {
        EXPECT_THAT(launchedFile(name), ElementsAre(call(pathOf(name)))) << name;
    }
    directory(L"folder");
    EXPECT_THAT(launched(item(L"folder")), ElementsAre(call(pathOf(L"folder"))));
}

TEST_F(LaunchCallsTest, AFileWhoseNameCouldChangeGoesByItsIdList) {
    for (const wchar_t* name :
         {L"a & b.txt", L"100 %.txt", L"%VARNELO_NOWHERE%.txt", L"a^b.txt", L"hello!.txt", L"run (1).bat"}) {
        EXPECT_THAT(launchedFile(name), ElementsAre(kById)) << name;
        EXPECT_THAT(calls.executed, ElementsAre(item(name)));
    }
}

// Wine's shell expands variables in the path behind an id list too, unless it is told the class.
TEST_F(LaunchCallsTest, AFileNamedLikeAVariableGoesByItsIdListAndItsClass) {
    const std::wstring byClass = L"execute null, mask 7, null, file null, show 1";
    EXPECT_THAT(launchedFile(L"%PATH%.txt"), ElementsAre(byClass));
    EXPECT_THAT(calls.executed, ElementsAre(item(L"%PATH%.txt")));
    directory(L"%PATH%");
    EXPECT_THAT(launched(item(L"%PATH%")), ElementsAre(kById));
    EXPECT_THAT(launchedFile(L"%PATH%.unknowntype"), ElementsAre(kById));
}

TEST_F(LaunchCallsTest, AFileBesideAProgramOfItsNameGoesByItsIdList) {
    file(L"report.exe");
    EXPECT_THAT(launchedFile(L"report"), ElementsAre(kById));
    EXPECT_THAT(launchedFile(L"report.txt"), ElementsAre(::testing::StartsWith(L"open")));
    file(L"report.txt.cmd");
    EXPECT_THAT(launchedFile(L"report.txt"), ElementsAre(kById));
}

TEST_F(LaunchCallsTest, AVirtualItemGoesByItsIdList) {
    EXPECT_THAT(launched(virtualItem()), ElementsAre(kById));
    EXPECT_THAT(calls.executed, ElementsAre(virtualItem()));
}

TEST_F(LaunchCallsTest, ANameThatIsTooLongForTheBufferGoesByItsIdList) {
    const std::wstring deep = directory(std::wstring(80, L'a') + L"\\" + std::wstring(80, L'b'));
    const std::wstring fits = std::wstring(258 - deep.size() - 1, L'c');
    writeFile(L"\\\\?\\" + deep + L"\\" + fits);
    EXPECT_THAT(launched(itemAt(deep + L"\\" + fits)), ElementsAre(EndsWith(fits + L"\", null, 0")));
    // What is cut off is the name of another file.
    writeFile(L"\\\\?\\" + deep + L"\\" + fits + L"d");
    EXPECT_THAT(launched(itemAt(deep + L"\\" + fits + L"d")), ElementsAre(kById));
}

TEST_F(LaunchCallsTest, NothingIsOpenedWithoutAnIdList) {
    recorded.launch(FileEntry());
    EXPECT_THAT(calls.done, ElementsAre());
}

// A type of file whose program notes down how it was started.
class RealLaunchTest : public ShellFilesTest {
protected:
    RealLaunchTest() : notes(pathOf(L"notes")) {
        setDefault(L".vntest", L"VarneloTestFile");
        setDefault(L"VarneloTestFile\\shell\\open\\command",
                   L"\"" + testProgram(L"note_command_line.exe") + L"\" \"" + notes + L"\" \"%1\"");
        setDefault(L"VarneloTestFile\\shell\\runas\\command",
                   L"\"" + testProgram(L"note_command_line.exe") + L"\" \"" + notes + L"\" runas \"%1\"");
    }
    ~RealLaunchTest() override {
        RegDeleteTreeW(HKEY_CLASSES_ROOT, L".vntest");
        RegDeleteTreeW(HKEY_CLASSES_ROOT, L"VarneloTestFile");
    }

    static void setDefault(const std::wstring& key, const std::wstring& value) {
        RegSetKeyValueW(HKEY_CLASSES_ROOT, key.c_str(), nullptr, REG_SZ, value.c_str(),
                        static_cast<DWORD>(sizeof(wchar_t) * (value.size() + 1)));
    }
    // What the program notes when it is started for that file.
    std::wstring note(const std::wstring& name) const {
        return L"\"" + testProgram(L"note_command_line.exe") + L"\" \"" + notes + L"\" \"" + pathOf(name) +
               L"\"";
    }
    std::size_t noteCount() const { return noted().size(); }
    std::vector<std::wstring> noted() const { return linesOf(notes); }
    // What programs leave that were run without being told where to.
    static std::vector<std::wstring> ranIn(const std::wstring& path) {
        std::vector<std::wstring> names = namesIn(path);
        std::erase_if(names, [](const std::wstring& name) { return !name.ends_with(L".ran"); });
        return names;
    }

    const std::wstring notes;
};

// Each is followed by a plain file: what a name started besides itself would stand between the two.
TEST_F(RealLaunchTest, AFileOfAnyNameIsOpenedAndNothingElse) {
    file(L"last.vntest");
    for (const wchar_t* name : {L"plan.vntest",    L"My plan.vntest", L"\u65E5\u672C\u8A9E \u00E4.vntest",
                                L"a & b.vntest",   L"a&last.vntest",  L"%PATH%.vntest",
                                L"100 %.vntest",   L"a^b.vntest",     L"^.vntest",
                                L"hello!.vntest",  L"!PATH!.vntest",  L"-rf.vntest",
                                L"--help.vntest",  L"a;b.vntest",     L"a,b.vntest",
                                L"a (1).vntest",   L"(a.vntest",      L"a=b.vntest",
                                L"it's.vntest",    L"@a.vntest",      L"[a] {b}.vntest",
                                L"`a`~$#+.vntest", L" a.vntest"}) {
        DeleteFileW(notes.c_str());
        file(name);
        actions.launch(entry(item(name)));
        ASSERT_TRUE(becomesTrue([&] { return noteCount() > 0; })) << name;
        actions.launch(entry(item(L"last.vntest")));
        ASSERT_TRUE(becomesTrue([&] { return noted().back() == note(L"last.vntest"); })) << name;
        EXPECT_THAT(noted(), ElementsAre(note(name), note(L"last.vntest")));
    }
}

TEST_F(RealLaunchTest, AProgramOfAnyNameIsRun) {
    for (const wchar_t* name : {L"tool.exe", L"My tool (1).exe", L"a & 100 % ^!.exe"}) {
        ASSERT_TRUE(CopyFileW(testProgram(L"note_command_line.exe").c_str(), pathOf(name).c_str(), TRUE));
        actions.launch(entry(item(name)));
        EXPECT_TRUE(becomesTrue([&] { return !ranIn(folder.path()).empty(); })) << name;
        for (const std::wstring& ran : ranIn(folder.path())) DeleteFileW(pathOf(ran).c_str());
        EXPECT_TRUE(becomesTrue([&] { return DeleteFileW(pathOf(name).c_str()) != FALSE; }));  // it has ended
    }
}

TEST_F(RealLaunchTest, ABatchFileIsRunWhereverItLies) {
    for (const wchar_t* name : {L"run.bat", L"My (x86) & more run.bat"}) {
        DeleteFileW(notes.c_str());
        writeFile(pathOf(name), "@echo ran>\"%~dp0notes\"\r\n@exit\r\n");
        actions.launch(entry(item(name)));
        EXPECT_TRUE(becomesTrue([&] { return linesOf(notes) == std::vector<std::wstring>{L"ran\r"}; }))
            << name;
    }
}

// The top-level window whose title holds this text; null for none.
HWND windowTitled(const std::wstring& title) {
    struct Search {
        const std::wstring& title;
        HWND found = nullptr;
    } search{title};
    EnumWindows(
        [](HWND top, LPARAM parameter) -> BOOL {
            auto& wanted = *reinterpret_cast<Search*>(parameter);
            wchar_t text[300] = {};
            GetWindowTextW(top, text, 300);
            if (std::wstring_view(text).find(wanted.title) != std::wstring_view::npos) wanted.found = top;
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&search));
    return search.found;
}

void expectWindow(const std::wstring& title) {
    EXPECT_TRUE(becomesTrue([&] { return windowTitled(title) != nullptr; })) << title;
    if (const HWND opened = windowTitled(title)) {
        PostMessageW(opened, WM_CLOSE, 0, 0);
        EXPECT_TRUE(becomesTrue([&] { return !IsWindow(opened); })) << title;
    }
}

TEST_F(RealLaunchTest, AFolderOpensInAWindowOfItsOwn) {
    for (const wchar_t* name : {L"00 varnelo plain folder", L"00 varnelo & 100 % folder"}) {
        directory(name);
        actions.launch(entry(item(name)));
        expectWindow(name);
    }
}

TEST_F(RealLaunchTest, TheItemMenuRunsTheItemAlsoAsAdministrator) {
    file(L"a & b.vntest");
    class Choosing final : public ShellCalls {
    public:
        int choice = 0;
        WindowsShellCalls real;
        bool open(HWND w, const wchar_t* f, const wchar_t* p, const wchar_t* d, int s) override {
            return real.open(w, f, p, d, s);
        }
        bool execute(SHELLEXECUTEINFOW& info) override { return real.execute(info); }
        int fileOperation(SHFILEOPSTRUCTW& operation) override { return real.fileOperation(operation); }
        int trackMenu(HMENU, UINT, POINT, HWND) override { return choice; }
    } choosing;
    ShellFileActions chosen([this] { return window; }, language, choosing);

    choosing.choice = 1;
    chosen.showItemMenu(entry(item(L"a & b.vntest")));
    ASSERT_TRUE(becomesTrue([&] { return noteCount() == 1; }));
    choosing.choice = 2;
    chosen.showItemMenu(entry(item(L"a & b.vntest")));
    ASSERT_TRUE(becomesTrue([&] { return noteCount() == 2; }));
    const auto lines = noted();
    EXPECT_EQ(lines[0], note(L"a & b.vntest"));
    EXPECT_THAT(lines[1], EndsWith(L" runas \"" + pathOf(L"a & b.vntest") + L"\""));
}

}  // namespace
}  // namespace varnelo
