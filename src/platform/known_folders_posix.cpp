#include "platform/known_folders.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "platform/utf.h"

namespace varnelo {

namespace {

std::string variable(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

std::string below(const std::string& folder, const char* rest) { return folder.empty() ? "" : folder + rest; }

std::string folderPath(KnownFolder folder) {
    std::string home = variable("HOME");
    switch (folder) {
        case KnownFolder::RoamingAppData: {
            const std::string config = variable("XDG_CONFIG_HOME");
            return config.empty() ? below(home, "/.config") : config;
        }
        case KnownFolder::LocalAppData: {
            const std::string data = variable("XDG_DATA_HOME");
            return data.empty() ? below(home, "/.local/share") : data;
        }
        case KnownFolder::ProgramData:
            return "/var/lib";
        case KnownFolder::Desktop:
            return below(home, "/Desktop");
        case KnownFolder::PublicDesktop:
            return "";
        case KnownFolder::Profile:
            return home;
    }
    return "";
}

std::wstring pathBelow(KnownFolder base, std::wstring_view subFolder, std::wstring_view fileName) {
    const std::filesystem::path folder = std::filesystem::path(folderPath(base)) / utf8FromWide(subFolder);
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) throw std::filesystem::filesystem_error("create_directories", folder, error);
    return wideFromUtf8((folder / utf8FromWide(fileName)).string());
}

}  // namespace

std::wstring knownFolder(KnownFolder folder) { return wideFromUtf8(folderPath(folder)); }

std::wstring appDataPath(std::wstring_view subFolder, std::wstring_view fileName) {
    return pathBelow(KnownFolder::RoamingAppData, subFolder, fileName);
}

std::wstring machineDataPath(std::wstring_view subFolder, std::wstring_view fileName) {
    return pathBelow(KnownFolder::ProgramData, subFolder, fileName);
}

}  // namespace varnelo
