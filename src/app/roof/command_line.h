// The switches of the program.
#pragma once

#include <string_view>

namespace varnelo {

struct CommandLine {
    bool ntfsScan = false;  // scan the volumes, save the index and end
    bool windowed = false;  // an ordinary window instead of the desktop layer
};

// A switch counts wherever its text stands in the line, also inside another word; no switch has a value.
CommandLine parseCommandLine(std::wstring_view line);

}  // namespace varnelo
