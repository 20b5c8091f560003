#include "app/roof/command_line.h"

namespace varnelo {

CommandLine parseCommandLine(std::wstring_view line) {
    CommandLine result;
    result.windowed = line.find(L"--windowed") != std::wstring_view::npos;
    return result;
}

}  // namespace varnelo
