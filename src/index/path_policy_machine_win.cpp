#include "index/path_policy_machine_win.h"

#include <windows.h>

#include <initguid.h>
#include <knownfolders.h>
#include <shlobj.h>

#include <iterator>

#include "platform/handles_win.h"

namespace varnelo {
namespace {

using Folder = PathPolicyMachine::Folder;

constexpr DWORD kExpansionUnits = 260;  // with the terminator

const KNOWNFOLDERID* folderId(Folder folder) {
    switch (folder) {
        case Folder::Windows:
            return &FOLDERID_Windows;
        case Folder::System:
            return &FOLDERID_System;
        case Folder::SystemX86:
            return &FOLDERID_SystemX86;
        case Folder::Fonts:
            return &FOLDERID_Fonts;
        case Folder::ProgramFiles:
            return &FOLDERID_ProgramFiles;
        case Folder::ProgramFilesX86:
            return &FOLDERID_ProgramFilesX86;
        case Folder::ProgramFilesCommon:
            return &FOLDERID_ProgramFilesCommon;
        case Folder::ProgramFilesCommonX86:
            return &FOLDERID_ProgramFilesCommonX86;
        case Folder::ProgramData:
            return &FOLDERID_ProgramData;
        case Folder::LocalAppData:
            return &FOLDERID_LocalAppData;
        case Folder::RoamingAppData:
            return &FOLDERID_RoamingAppData;
        case Folder::LocalAppDataLow:
            return &FOLDERID_LocalAppDataLow;
        case Folder::UserProfiles:
            return &FOLDERID_UserProfiles;
    }
    return nullptr;
}

bool isFolderEntry(const WIN32_FIND_DATAW& entry) {
    const std::wstring_view name = entry.cFileName;
    return (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 && name != L"." && name != L"..";
}

}  // namespace

std::optional<std::wstring> WindowsPolicyMachine::knownFolder(Folder folder) const {
    const KNOWNFOLDERID* id = folderId(folder);
    CoTaskString path;
    // The string must be freed after a failure too.
    if (!id || FAILED(SHGetKnownFolderPath(*id, 0, nullptr, path.put())) || !path) return std::nullopt;
    return path.get();
}

std::optional<std::wstring> WindowsPolicyMachine::expanded(std::wstring_view text) const {
    wchar_t buffer[kExpansionUnits] = {};
    const DWORD units = ExpandEnvironmentStringsW(std::wstring(text).c_str(), buffer, kExpansionUnits);
    // A result that does not fit is reported by the size that it would need.
    if (units == 0 || units > kExpansionUnits) return std::nullopt;
    return buffer;
}

std::vector<std::wstring> WindowsPolicyMachine::subfolders(const std::wstring& folder) const {
    std::vector<std::wstring> names;
    WIN32_FIND_DATAW entry;
    const FindHandle search(FindFirstFileW((folder + L"\\*").c_str(), &entry));
    if (!search) return names;
    do {
        if (isFolderEntry(entry)) names.emplace_back(entry.cFileName);
    } while (FindNextFileW(search.get(), &entry));
    return names;
}

std::wstring WindowsPolicyMachine::driveLetters() const {
    std::wstring letters;
    const DWORD present = GetLogicalDrives();
    for (int drive = 0; drive < 26; ++drive) {
        if ((present >> drive & 1) != 0) letters += static_cast<wchar_t>(L'A' + drive);
    }
    return letters;
}

}  // namespace varnelo
