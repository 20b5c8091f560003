#include "app/roof/command_line.h"

namespace varnelo {

CommandLine parseCommandLine(std::wstring_view line) {
    const auto holds = [line](std::wstring_view text) { return line.find(text) != std::wstring_view::npos; };
    CommandLine result;
    result.ntfsScan = holds(L"--ntfs-scan");
    result.windowed = holds(L"--windowed");
    return result;
}

}  // namespace varnelo
