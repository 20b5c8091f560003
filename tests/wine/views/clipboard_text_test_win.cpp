#include "views/clipboard_text_win.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/handles_win.h"
#include "support/surface_window_win.h"

namespace varnelo {
namespace {

class ClipboardTextWinTest : public ::testing::Test {
protected:
    // The other program, started with those arguments.
    ProcessHandle peer(const std::wstring& arguments) {
        std::wstring command = L"clipboard_peer.exe " + arguments;
        STARTUPINFOW startup{};
        startup.cb = sizeof startup;
        PROCESS_INFORMATION process{};
        if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                            &process)) {
            return {};
        }
        CloseHandle(process.hThread);
        return ProcessHandle(process.hProcess);
    }
    static DWORD exitCodeOf(const ProcessHandle& process) {
        DWORD code = 99;
        WaitForSingleObject(process.get(), 60000);
        GetExitCodeProcess(process.get(), &code);
        return code;
    }
    void putFromAnotherProgram(const std::wstring& text) {
        const ProcessHandle process = peer(L"put " + text);
        ASSERT_TRUE(process);
        ASSERT_EQ(exitCodeOf(process), 0U);
    }
    void emptyClipboard() {
        ASSERT_TRUE(OpenClipboard(owner));
        EmptyClipboard();
        CloseClipboard();
    }

    HiddenWindow window{10, 10};
    HWND owner = window.get();
    SystemClipboardText clipboard{owner};
};

TEST_F(ClipboardTextWinTest, WhatIsWrittenIsRead) {
    std::wstring units;
    for (int i = 1; i < 0x10000; ++i) units += static_cast<wchar_t>(i);
    for (const std::wstring& text : {std::wstring(L"some words"), std::wstring(L"x"), units}) {
        ASSERT_TRUE(clipboard.write(text));
        EXPECT_TRUE(clipboard.hasText());
        EXPECT_EQ(clipboard.read(), text);
    }
}

TEST_F(ClipboardTextWinTest, TheTextStandsInItsBlockWithAZeroBehindIt) {
    ASSERT_TRUE(clipboard.write(L"abc"));
    ASSERT_TRUE(OpenClipboard(owner));
    const HANDLE memory = GetClipboardData(CF_UNICODETEXT);
    ASSERT_TRUE(memory);
    EXPECT_GE(GlobalSize(memory), 8U);
    EXPECT_STREQ(static_cast<const wchar_t*>(GlobalLock(memory)), L"abc");
    GlobalUnlock(memory);
    CloseClipboard();
}

TEST_F(ClipboardTextWinTest, AnEmptyClipboardHasNoText) {
    emptyClipboard();
    EXPECT_FALSE(clipboard.hasText());
    EXPECT_FALSE(clipboard.read());
}

TEST_F(ClipboardTextWinTest, ABlockOfAnotherProgramWithoutATerminatorIsReadToItsEnd) {
    putFromAnotherProgram(L"abcdefgh");
    EXPECT_TRUE(clipboard.hasText());
    const std::optional<std::wstring> text = clipboard.read();
    ASSERT_TRUE(text);
    // The system may put its own terminator over the last unit. Nothing from behind the block comes along.
    EXPECT_TRUE(*text == L"abcdefgh" || *text == L"abcdefg") << text->size();
}

TEST_F(ClipboardTextWinTest, AClipboardThatAnotherProgramHoldsOpenIsLeftAsItIs) {
    ASSERT_TRUE(clipboard.write(L"before"));
    const EventHandle opened(CreateEventW(nullptr, TRUE, FALSE, L"varnelo-clipboard-opened"));
    const EventHandle release(CreateEventW(nullptr, TRUE, FALSE, L"varnelo-clipboard-release"));
    const ProcessHandle holder = peer(L"hold varnelo-clipboard-opened varnelo-clipboard-release");
    ASSERT_TRUE(holder);
    ASSERT_EQ(WaitForSingleObject(opened.get(), 60000), WAIT_OBJECT_0);
    EXPECT_FALSE(clipboard.write(L"after"));
    EXPECT_FALSE(clipboard.read());
    SetEvent(release.get());
    EXPECT_EQ(exitCodeOf(holder), 0U);
    EXPECT_EQ(clipboard.read(), L"before");
}

}  // namespace
}  // namespace varnelo
