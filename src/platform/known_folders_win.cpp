#include <windows.h>

#include <initguid.h>
#include <knownfolders.h>
#include <shlobj.h>

#include <filesystem>
#include <system_error>

#include "platform/handles_win.h"
#include "platform/known_folders.h"

namespace varnelo {

namespace {

const KNOWNFOLDERID& folderId(KnownFolder folder) {
    switch (folder) {
        case KnownFolder::RoamingAppData:
            return FOLDERID_RoamingAppData;
        case KnownFolder::LocalAppData:
            return FOLDERID_LocalAppData;
        case KnownFolder::ProgramData:
            return FOLDERID_ProgramData;
        case KnownFolder::Desktop:
            return FOLDERID_Desktop;
        case KnownFolder::PublicDesktop:
            return FOLDERID_PublicDesktop;
        case KnownFolder::Profile:
            return FOLDERID_Profile;
    }
    return FOLDERID_RoamingAppData;
}

}  // namespace

std::wstring knownFolder(KnownFolder folder) {
    CoTaskString path;
    // The string must be freed after a failure too.
    if (FAILED(SHGetKnownFolderPath(folderId(folder), 0, nullptr, path.put())) || !path) return {};
    return path.get();
}

namespace {

std::wstring pathBelow(KnownFolder base, std::wstring_view subFolder, std::wstring_view fileName) {
    const std::filesystem::path folder = std::filesystem::path(knownFolder(base)) / subFolder;
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) throw std::filesystem::filesystem_error("create_directories", folder, error);
    return (folder / fileName).wstring();
}

}  // namespace

std::wstring appDataPath(std::wstring_view subFolder, std::wstring_view fileName) {
    return pathBelow(KnownFolder::RoamingAppData, subFolder, fileName);
}

std::wstring machineDataPath(std::wstring_view subFolder, std::wstring_view fileName) {
    return pathBelow(KnownFolder::ProgramData, subFolder, fileName);
}

}  // namespace varnelo
