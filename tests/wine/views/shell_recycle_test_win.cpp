// The recycle bin, which is the desktop user's own under Wine: a folder of files and one of notes about them.

#include <gmock/gmock.h>
#include <windows.h>

#include <atomic>
#include <filesystem>
#include <stop_token>
#include <thread>

#include "support/shell_files_win.h"

namespace varnelo {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

class RecycleTest : public ShellFilesTest {
protected:
    std::vector<FileEntry> entriesOf(const std::vector<std::wstring>& names) const {
        std::vector<FileEntry> entries;
        for (const std::wstring& name : names) entries.push_back(entry(item(name)));
        return entries;
    }
};

TEST_F(RecycleTest, AsksTheShellOnceForAllFiles) {
    file(L"b.txt");
    directory(L"a folder");
    recorded.recycle(entriesOf({L"b.txt", L"a folder"}));
    EXPECT_THAT(calls.done, ElementsAre(L"operation 3, window, [" + pathOf(L"b.txt") + L"][" +
                                        pathOf(L"a folder") + L"] to null, flags 16448, title null"));
}

TEST_F(RecycleTest, LeavesOutWhatHasNoPath) {
    file(L"a.txt");
    recorded.recycle({entry(virtualItem()), FileEntry(), entry(item(L"a.txt"))});
    EXPECT_THAT(calls.done, ElementsAre(L"operation 3, window, [" + pathOf(L"a.txt") +
                                        L"] to null, flags 16448, title null"));
}

TEST_F(RecycleTest, AsksForNothingWhenNothingHasAPath) {
    recorded.recycle({});
    recorded.recycle({entry(virtualItem()), FileEntry()});
    EXPECT_THAT(calls.done, IsEmpty());
}

// The user, who answers every question of this thread's dialogs the same, by a button's id.
class AnsweringUser {
public:
    explicit AnsweringUser(int theButton) : button(theButton) {}
    int questions() const { return asked; }

private:
    void run(std::stop_token stop) {
        HWND answered = nullptr;
        while (!stop.stop_requested()) {
            HWND dialog = nullptr;
            EnumThreadWindows(
                thread,
                [](HWND window, LPARAM found) -> BOOL {
                    wchar_t name[20] = {};
                    GetClassNameW(window, name, 20);
                    if (std::wstring(name) == L"#32770" && IsWindowVisible(window))
                        *reinterpret_cast<HWND*>(found) = window;
                    return TRUE;
                },
                reinterpret_cast<LPARAM>(&dialog));
            if (dialog && dialog != answered) {
                answered = dialog;
                ++asked;
                PostMessageW(dialog, WM_COMMAND, static_cast<WPARAM>(button), 0);
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    }

    const int button;
    const DWORD thread = GetCurrentThreadId();
    std::atomic<int> asked = 0;
    std::jthread hand{[this](std::stop_token stop) { run(stop); }};
};

class RealRecycleTest : public RecycleTest {
protected:
    // The shell may ask first; the answers are all yes.
    void recycle(const std::vector<FileEntry>& entries) {
        const AnsweringUser user(IDYES);
        actions.recycle(entries);
    }
    // The folder of the recycled files, as programs of this system see it.
    static std::wstring bin() {
        wchar_t home[MAX_PATH] = {};
        GetEnvironmentVariableW(L"XDG_DATA_HOME", home, MAX_PATH);
        std::wstring path = L"Z:" + std::wstring(home) + L"\\Trash\\files";
        for (wchar_t& unit : path) {
            if (unit == L'/') unit = L'\\';
        }
        return path;
    }
    static std::vector<std::wstring> recycled() {
        return std::filesystem::exists(bin()) ? namesIn(bin()) : std::vector<std::wstring>();
    }
    // Wine makes the bin in a folder that must be there; without one it deletes for good.
    RealRecycleTest() { std::filesystem::create_directories(std::filesystem::path(bin()).parent_path()); }
    ~RealRecycleTest() override {
        for (const std::wstring& name : recycled()) {
            std::error_code ignored;
            if (name.starts_with(L"00 ")) std::filesystem::remove_all(bin() + L"\\" + name, ignored);
        }
    }
};

TEST_F(RealRecycleTest, TheFilesGoToTheBinAndCanComeBack) {
    const std::vector<std::wstring> names = {L"00 plan & %PATH%.txt", L"00 \u65E5\u672C\u8A9E.txt"};
    for (const std::wstring& name : names) file(name);
    file(L"00 other.txt");
    recycle(entriesOf(names));
    EXPECT_THAT(namesIn(folder.path()), ElementsAre(L"00 other.txt"));
    for (const std::wstring& name : names) {
        ASSERT_THAT(recycled(), Contains(name));
        ASSERT_TRUE(MoveFileExW((bin() + L"\\" + name).c_str(), pathOf(name).c_str(), MOVEFILE_COPY_ALLOWED));
        EXPECT_THAT(linesOf(pathOf(name)), ElementsAre(pathOf(name)));
    }
}

TEST_F(RealRecycleTest, AFolderGoesWithEverythingInIt) {
    directory(L"00 folder");
    file(L"00 folder\\inside.txt");
    recycle(entriesOf({L"00 folder"}));
    EXPECT_THAT(namesIn(folder.path()), IsEmpty());
    EXPECT_THAT(namesIn(bin() + L"\\00 folder"), ElementsAre(L"inside.txt"));
}

TEST_F(RealRecycleTest, RefusedByTheUserItLeavesEveryFileWhereItWas) {
    file(L"00 plan.txt");
    const AnsweringUser user(IDNO);
    actions.recycle(entriesOf({L"00 plan.txt"}));
    EXPECT_EQ(user.questions(), 1);
    EXPECT_THAT(linesOf(pathOf(L"00 plan.txt")), ElementsAre(pathOf(L"00 plan.txt")));
    EXPECT_THAT(recycled(), Not(Contains(L"00 plan.txt")));
}

TEST_F(RealRecycleTest, AFileThatIsGoneAlreadyTakesNoOtherWithIt) {
    file(L"00 gone.txt");
    file(L"00 stays.txt");
    const auto entries = entriesOf({L"00 gone.txt"});
    ASSERT_TRUE(DeleteFileW(pathOf(L"00 gone.txt").c_str()));
    recycle(entries);
    EXPECT_THAT(namesIn(folder.path()), ElementsAre(L"00 stays.txt"));
    EXPECT_THAT(recycled(), Not(Contains(L"00 stays.txt")));
}

}  // namespace
}  // namespace varnelo
