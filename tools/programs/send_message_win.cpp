// send_message CLASS MESSAGE WPARAM LPARAM   sends that message to the first window of the class, as any
// process can, and prints the answer. Numbers are decimal or 0x... Exit code 3: there is no such window;
// 4: it did not answer.
#include <windows.h>

#include <cstdio>
#include <cwchar>

int wmain(int count, wchar_t** arguments) {
    if (count != 5) {
        std::fputs("usage: send_message CLASS MESSAGE WPARAM LPARAM\n", stderr);
        return 2;
    }
    const HWND window = FindWindowW(arguments[1], nullptr);
    if (!window) {
        std::fputs("send_message: no such window\n", stderr);
        return 3;
    }
    const auto number = [arguments](int index) { return std::wcstoull(arguments[index], nullptr, 0); };
    constexpr UINT kPatienceMilliseconds = 100000;
    DWORD_PTR answer = 0;
    if (!SendMessageTimeoutW(window, static_cast<UINT>(number(2)), static_cast<WPARAM>(number(3)),
                             static_cast<LPARAM>(number(4)), SMTO_NORMAL, kPatienceMilliseconds, &answer)) {
        std::fprintf(stderr, "send_message: no answer, error %lu\n", GetLastError());
        return 4;
    }
    std::printf("%llu\n", static_cast<unsigned long long>(answer));
    return 0;
}
