// The program that a test has something opened with. Adds a line to a file, in UTF-8, and ends:
//   note_command_line FILE ANYTHING...    adds its whole command line to FILE
//   note_command_line                     adds its own path to a file of its own name with ".ran" behind it

#include <windows.h>

#include <shellapi.h>

#include <string>

#include "platform/utf.h"

namespace {

bool addLine(const std::wstring& path, const std::wstring& line) {
    const HANDLE file = CreateFileW(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                    nullptr, OPEN_ALWAYS, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) return false;
    const std::string text = varnelo::utf8FromWide(line) + "\n";
    DWORD written = 0;
    const bool good =
        WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr) != FALSE;
    CloseHandle(file);
    return good;
}

std::wstring ownPath() {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return path;
}

}  // namespace

int main() {
    int count = 0;
    wchar_t** const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    if (!arguments) return 2;
    const bool good =
        count > 1 ? addLine(arguments[1], GetCommandLineW()) : addLine(ownPath() + L".ran", ownPath());
    return good ? 0 : 1;
}
