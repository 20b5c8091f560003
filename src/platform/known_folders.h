#pragma once

#include <string>
#include <string_view>

namespace varnelo {

enum class KnownFolder { RoamingAppData, LocalAppData, ProgramData, Desktop, PublicDesktop, Profile };

// The folder's path without a separator at its end, or "" when the system does not know it. The host build
// answers from HOME and the XDG variables and knows no public desktop.
std::wstring knownFolder(KnownFolder folder);

// The path of a file in a sub-folder of the roaming application data, which is made when it is missing.
// Throws std::filesystem::filesystem_error, which names "create_directories", when it cannot be made. That
// the roaming folder itself is unknown is not looked at: the result is relative to the current folder then.
std::wstring appDataPath(std::wstring_view subFolder, std::wstring_view fileName);

// The same in the application data of all users. An absolute `subFolder` stands for itself.
std::wstring machineDataPath(std::wstring_view subFolder, std::wstring_view fileName);

}  // namespace varnelo
