#include "desktop/shell_watcher_win.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <shlobj.h>

#include <chrono>
#include <vector>

#include "app/logger.h"
#include "desktop/window_state_win.h"
#include "platform/known_folders.h"

namespace varnelo {
namespace {

// A window that keeps the events of the messages that the shell sends it.
class ShellWatcherTest : public testing::Test {
protected:
    static constexpr const wchar_t* kClass = L"VarneloShellWatcherTest";

    ShellWatcherTest() {
        WNDCLASSEXW description{};
        description.cbSize = sizeof description;
        description.lpfnWndProc = procedure;
        description.hInstance = GetModuleHandleW(nullptr);
        description.lpszClassName = kClass;
        RegisterClassExW(&description);
        window = CreateWindowExW(0, kClass, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, description.hInstance,
                                 nullptr);
        events.clear();
    }
    ~ShellWatcherTest() override {
        if (id != 0) SHChangeNotifyDeregister(id);
        DestroyWindow(window);
        UnregisterClassW(kClass, GetModuleHandleW(nullptr));
    }

    static LRESULT CALLBACK procedure(HWND target, UINT message, WPARAM wParam, LPARAM lParam) {
        if (message != kMessageShellChange) return DefWindowProcW(target, message, wParam, lParam);
        PIDLIST_ABSOLUTE* lists = nullptr;
        LONG event = 0;
        const HANDLE lock = SHChangeNotification_Lock(reinterpret_cast<HANDLE>(wParam),
                                                      static_cast<DWORD>(lParam), &lists, &event);
        if (lock) {
            events.push_back(event);
            SHChangeNotification_Unlock(lock);
        }
        return 0;
    }

    // Serves messages until that many events are there; what they are, at last.
    std::vector<LONG> eventsUpTo(std::size_t count) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (events.size() < count && std::chrono::steady_clock::now() < end) {
            MsgWaitForMultipleObjects(0, nullptr, FALSE, 50, QS_ALLINPUT);
            MSG message;
            while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
        }
        return events;
    }
    static void tell(LONG event, const std::wstring& path, const std::wstring& other = L"") {
        SHChangeNotify(event, SHCNF_PATHW | SHCNF_FLUSH, path.c_str(),
                       other.empty() ? nullptr : other.c_str());
    }

    static std::vector<LONG> events;
    HWND window = nullptr;
    ULONG id = 0;
};

std::vector<LONG> ShellWatcherTest::events;

TEST_F(ShellWatcherTest, TheWatchedChangesBelowTheDesktopArriveAsMessagesAndNoOthers) {
    const std::size_t before = Logger::instance().lines().size();
    id = startShellWatcher(window);
    ASSERT_NE(id, 0u);
    const auto lines = Logger::instance().lines();
    ASSERT_EQ(lines.size(), before + 2);
    EXPECT_TRUE(lines[before].ends_with(L"[INFO] Shell watcher starting"));
    EXPECT_TRUE(lines[before + 1].ends_with(L"[INFO] Shell watcher registered"));

    const std::wstring file = knownFolder(KnownFolder::Desktop) + L"\\watched.txt";
    tell(SHCNE_ATTRIBUTES, file);  // not asked for
    const std::vector<LONG> watched = {SHCNE_CREATE,    SHCNE_DELETE,     SHCNE_MKDIR,     SHCNE_RMDIR,
                                       SHCNE_UPDATEDIR, SHCNE_UPDATEITEM, SHCNE_RENAMEITEM};
    for (const LONG event : watched) tell(event, file, event == SHCNE_RENAMEITEM ? file + L"2" : L"");
    EXPECT_EQ(eventsUpTo(watched.size()), watched);
}

}  // namespace
}  // namespace varnelo
