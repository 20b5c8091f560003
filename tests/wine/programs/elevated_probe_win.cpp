// Raises itself with administrator rights, as the program does:
//   elevated_probe raise MILLISECONDS ARGUMENTS    by those arguments; ends with 0 when that worked
//   elevated_probe abandon MILLISECONDS ARGUMENTS  the same, with a stop requested from the beginning
//   elevated_probe note FILE                       adds how it was started to FILE and ends with 7
//   elevated_probe wait EVENT                      ends when the event of that name is set

#include <windows.h>

#include <shellapi.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "index/elevated_run_win.h"
#include "platform/handles_win.h"

namespace {

int note(const wchar_t* path) {
    STARTUPINFOW start{};
    GetStartupInfoW(&start);
    std::ofstream file(std::filesystem::path(path), std::ios::app);
    file << ((start.dwFlags & STARTF_USESHOWWINDOW) != 0 ? start.wShowWindow : 999) << "\n";
    return 7;
}

int wait(const wchar_t* name) {
    const varnelo::EventHandle event(OpenEventW(SYNCHRONIZE, FALSE, name));
    return event && WaitForSingleObject(event.get(), 60'000) == WAIT_OBJECT_0 ? 0 : 1;
}

}  // namespace

int main() {
    int count = 0;
    wchar_t** const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    if (!arguments || count < 3) return 2;
    const std::wstring verb = arguments[1];
    if (verb == L"note") return note(arguments[2]);
    if (verb == L"wait") return wait(arguments[2]);
    if ((verb != L"raise" && verb != L"abandon") || count < 5) return 2;
    const std::wstring inner = std::wstring(arguments[3]) + L" \"" + arguments[4] + L"\"";
    const bool stop = verb == L"abandon";
    varnelo::WindowsElevatedRun run;
    const auto timeout = static_cast<std::uint32_t>(std::stoul(arguments[2]));
    return run.runElevated(inner, timeout, [stop] { return stop; }) ? 0 : 1;
}
