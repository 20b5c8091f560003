#include "desktop/window_procedure_win.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/window_state_win.h"

namespace varnelo {
namespace {

// A real window of the class, shown nowhere, whose messages are sent by hand.
class WindowProcedureTest : public testing::Test {
protected:
    static constexpr const wchar_t* kClass = L"VarneloWindowProcedureTest";

    WindowProcedureTest() {
        state.windowed = true;
        attachWindowProcedure(&state);
        WNDCLASSEXW description{};
        description.cbSize = sizeof description;
        description.lpfnWndProc = WndProc;
        description.hInstance = GetModuleHandleW(nullptr);
        description.lpszClassName = kClass;
        RegisterClassExW(&description);
        window = CreateWindowExW(0, kClass, L"", WS_OVERLAPPEDWINDOW, 0, 0, 400, 300, nullptr, nullptr,
                                 description.hInstance, nullptr);
        state.mainWindow = window;
        state.width = 100;
        state.height = 50;
        state.redrawRequested = false;
    }
    ~WindowProcedureTest() override {
        if (IsWindow(window)) DestroyWindow(window);
        drainQuit();
        UnregisterClassW(kClass, GetModuleHandleW(nullptr));
        attachWindowProcedure(nullptr);
    }

    LRESULT send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
        return SendMessageW(window, message, wParam, lParam);
    }
    static bool drainQuit() {
        MSG message;
        bool quit = false;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) quit = quit || message.message == WM_QUIT;
        return quit;
    }

    WindowState state;
    HWND window = nullptr;
};

TEST_F(WindowProcedureTest, ANewSizeWaitsForTheNextFrame) {
    send(WM_SIZE, SIZE_RESTORED, MAKELPARAM(640, 480));
    EXPECT_TRUE(state.resizePending);
    EXPECT_EQ(state.width, 640u);
    EXPECT_EQ(state.height, 480u);
    EXPECT_TRUE(state.redrawRequested);
}

TEST_F(WindowProcedureTest, AnUnchangedSizeCausesNoResize) {
    send(WM_SIZE, SIZE_RESTORED, MAKELPARAM(100, 50));
    EXPECT_FALSE(state.resizePending);
    EXPECT_FALSE(state.redrawRequested);
}

TEST_F(WindowProcedureTest, BeingMinimisedIsNoResize) {
    send(WM_SIZE, SIZE_MINIMIZED, 0);
    EXPECT_FALSE(state.resizePending);
    EXPECT_EQ(state.width, 100u);
}

TEST_F(WindowProcedureTest, ASizeOfAnotherWindowIsNotTheMainWindows) {
    state.mainWindow = GetDesktopWindow();
    send(WM_SIZE, SIZE_RESTORED, MAKELPARAM(640, 480));
    EXPECT_FALSE(state.resizePending);
}

TEST_F(WindowProcedureTest, SystemCommandsDoNothing) {
    EXPECT_EQ(send(WM_SYSCOMMAND, SC_CLOSE), 0);
    EXPECT_EQ(send(WM_SYSCOMMAND, SC_MINIMIZE), 0);
    EXPECT_EQ(send(WM_SYSCOMMAND, SC_MAXIMIZE), 0);
    EXPECT_TRUE(IsWindow(window));
    EXPECT_FALSE(IsIconic(window));
    EXPECT_FALSE(IsZoomed(window));
    EXPECT_FALSE(state.redrawRequested);
}

TEST_F(WindowProcedureTest, ACloseMessageDestroysTheMainWindowAndQuits) {
    send(WM_CLOSE);
    EXPECT_FALSE(IsWindow(window));
    EXPECT_TRUE(drainQuit());
}

TEST_F(WindowProcedureTest, TheEndOfAnotherWindowDoesNotQuit) {
    state.mainWindow = nullptr;
    DestroyWindow(window);
    EXPECT_FALSE(drainQuit());
}

TEST_F(WindowProcedureTest, ASettingChangeDoesNothingAtAll) {
    EXPECT_EQ(send(WM_SETTINGCHANGE, SPI_SETDESKWALLPAPER), 0);
    EXPECT_FALSE(state.redrawRequested);
}

TEST_F(WindowProcedureTest, AWakeUpCostsOneFrame) {
    EXPECT_EQ(send(kMessageRedraw), 0);
    EXPECT_TRUE(state.redrawRequested);
}

TEST_F(WindowProcedureTest, TheBackgroundIsNeverErased) { EXPECT_EQ(send(WM_ERASEBKGND), 1); }

TEST_F(WindowProcedureTest, PaintingOnlyValidates) {
    InvalidateRect(window, nullptr, FALSE);
    send(WM_PAINT);
    EXPECT_FALSE(GetUpdateRect(window, nullptr, FALSE));
    EXPECT_TRUE(state.redrawRequested);
}

TEST_F(WindowProcedureTest, TheEndOfTheSessionIsAllowedAndSavesOnlyWhenItComes) {
    int saves = 0;
    state.endSession = [&saves] { ++saves; };
    EXPECT_EQ(send(WM_QUERYENDSESSION), 1);
    EXPECT_EQ(send(WM_ENDSESSION, FALSE), 0);
    EXPECT_EQ(saves, 0);
    EXPECT_EQ(send(WM_ENDSESSION, TRUE), 0);
    EXPECT_EQ(saves, 1);
}

TEST_F(WindowProcedureTest, TheRightEdgeBelongsToTheContent) {
    RECT frame{};
    GetWindowRect(window, &frame);
    const LONG middle = (frame.top + frame.bottom) / 2;
    EXPECT_EQ(DefWindowProcW(window, WM_NCHITTEST, 0, MAKELPARAM(frame.right - 1, middle)), HTRIGHT);
    EXPECT_EQ(send(WM_NCHITTEST, 0, MAKELPARAM(frame.right - 1, middle)), HTCLIENT);
    EXPECT_EQ(send(WM_NCHITTEST, 0, MAKELPARAM(frame.right - 1, frame.top)), HTCLIENT);
    EXPECT_EQ(send(WM_NCHITTEST, 0, MAKELPARAM(frame.right - 1, frame.bottom - 1)), HTCLIENT);
    EXPECT_EQ(send(WM_NCHITTEST, 0, MAKELPARAM(frame.left, middle)), HTLEFT);
}

TEST_F(WindowProcedureTest, AnotherResolutionMovesTheWindowWhereTheSystemSays) {
    const RECT suggested{30, 40, 530, 440};
    EXPECT_EQ(send(WM_DPICHANGED, MAKEWPARAM(96, 96), reinterpret_cast<LPARAM>(&suggested)), 0);
    RECT area{};
    GetWindowRect(window, &area);
    EXPECT_TRUE(EqualRect(&area, &suggested));
    EXPECT_TRUE(state.redrawRequested);
}

TEST_F(WindowProcedureTest, AnotherResolutionWithoutAReadableRectangleMovesNothing) {
    RECT before{};
    GetWindowRect(window, &before);
    for (const LPARAM nowhere : {LPARAM{0}, LPARAM{1}, static_cast<LPARAM>(0x7FFFFFFF0000)}) {
        state.redrawRequested = false;
        EXPECT_EQ(send(WM_DPICHANGED, 0, nowhere), 0);
        EXPECT_TRUE(state.redrawRequested) << nowhere;
    }
    RECT after{};
    GetWindowRect(window, &after);
    EXPECT_TRUE(EqualRect(&before, &after));
}

TEST_F(WindowProcedureTest, ACharacterCostsAFrame) {
    EXPECT_EQ(send(WM_CHAR, L'x'), 0);
    EXPECT_TRUE(state.redrawRequested);
}

TEST_F(WindowProcedureTest, InputBeforeTheLoopIsDroppedAndCostsAFrame) {
    for (const UINT message :
         std::initializer_list<UINT>{WM_MOUSEMOVE, WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK,
                                     WM_MOUSEWHEEL, WM_CONTEXTMENU, kMessageShellChange}) {
        state.redrawRequested = false;
        EXPECT_EQ(send(message), 0);
        EXPECT_TRUE(state.redrawRequested) << message;
    }
    EXPECT_NE(GetCapture(), window);
}

}  // namespace
}  // namespace varnelo
