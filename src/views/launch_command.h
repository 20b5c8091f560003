#pragma once

// How an item is opened through the command processor, and which items can be.

#include <string>
#include <string_view>
#include <vector>

namespace varnelo {

// Units of the buffer that a name is fetched into, the terminator among them. A longer name is cut off.
inline constexpr std::size_t kLaunchNameUnits = 260;

// What cmd.exe is given to open `name` with its command "start". `name` must be safe.
std::wstring launchCommand(std::wstring_view name);

// Whether `launchCommand` opens exactly the item of this parsing name. Everything that is no whole file path
// is refused, as is all that cmd.exe or "start" could expand, cut off or read as something else.
bool isSafeToLaunchByName(std::wstring_view name);

// The paths that "start" may prefer to the file `name` itself: the same with each extension of the variable
// PATHEXT (".COM;.EXE") behind it.
std::vector<std::wstring> programsTriedFor(std::wstring_view name, std::wstring_view pathExtensions);

}  // namespace varnelo
