#include "index/path_policy.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "index/path_policy_rows.h"
#include "platform/text.h"

namespace varnelo {
namespace {

using Folder = PathPolicyMachine::Folder;

constexpr Folder kSystemFolders[] = {Folder::Windows, Folder::System, Folder::SystemX86, Folder::Fonts};
constexpr Folder kProgramFolders[] = {
    Folder::ProgramFiles, Folder::ProgramFilesX86, Folder::ProgramFilesCommon, Folder::ProgramFilesCommonX86,
    Folder::ProgramData,  Folder::LocalAppData,    Folder::RoamingAppData,     Folder::LocalAppDataLow,
};
constexpr std::wstring_view kProfileFolders[] = {L"AppData\\Local", L"AppData\\Roaming",
                                                 L"AppData\\LocalLow"};
constexpr std::wstring_view kDriveFolders[] = {L":\\$Recycle.Bin", L":\\System Volume Information",
                                               L":\\Recovery"};
constexpr std::wstring_view kDesktopFolderNames[] = {L"desktop"};

std::wstring withSeparator(std::wstring folder) {
    if (folder.empty() || folder.back() != L'\\') folder += L'\\';
    return folder;
}

// Whether the path, once lowered, equals or begins with a text, which is compared as it stands.
bool loweredEquals(std::wstring_view path, std::wstring_view text) {
    return std::equal(path.begin(), path.end(), text.begin(), text.end(),
                      [](wchar_t unit, wchar_t wanted) { return lowerUnit(unit) == wanted; });
}
bool loweredStartsWith(std::wstring_view path, std::wstring_view text) {
    return loweredEquals(path.substr(0, text.size()), text);
}

bool isExcludedFolderName(std::wstring_view component) {
    if (component.empty()) return false;
    const wchar_t first = lowerUnit(component.front());
    for (const std::wstring_view row : excludedFolderNameRows()) {
        // Most rows are told apart by this alone, and every component of every path comes through here.
        if (row.size() != component.size() || row.front() != first) continue;
        if (loweredEquals(component, row)) return true;
    }
    return false;
}

// What stands in front of the first separator is no folder of the path but its drive.
bool hasExcludedComponent(std::wstring_view path) {
    for (std::size_t separator = path.find(L'\\'); separator != std::wstring_view::npos;) {
        const std::size_t next = path.find(L'\\', separator + 1);
        const std::size_t end = std::min(next, path.size());
        if (isExcludedFolderName(path.substr(separator + 1, end - separator - 1))) return true;
        separator = next;
    }
    return false;
}

}  // namespace

PathPolicy::PathPolicy(const PathPolicyMachine& machine) {
    for (const Folder folder : kSystemFolders) addKnownFolder(machine, folder);
    for (const std::wstring_view row : excludedSystemRows()) addExpanded(machine, row);
    for (const Folder folder : kProgramFolders) addKnownFolder(machine, folder);
    if (const auto profiles = machine.knownFolder(Folder::UserProfiles)) addProfiles(machine, *profiles);
    addDrives(machine);
    for (const std::wstring_view row : excludedPlaceRows()) {
        if (row.find(L'%') == std::wstring_view::npos) {
            addPrefix(std::wstring(row));
        } else {
            addExpanded(machine, row);
        }
    }
    finish();
}

bool PathPolicy::isExcludedPath(std::wstring_view path) const {
    return hasExcludedPrefix(path) || hasExcludedComponent(path);
}

bool PathPolicy::isUserDesktopFolder(std::wstring_view path) const {
    if (!path.empty() && path.back() == L'\\') path.remove_suffix(1);
    const std::size_t separator = path.rfind(L'\\');
    if (separator == std::wstring_view::npos) return false;
    const std::wstring_view name = path.substr(separator + 1);
    return std::any_of(std::begin(kDesktopFolderNames), std::end(kDesktopFolderNames),
                       [name](std::wstring_view row) { return loweredEquals(name, row); }) &&
           loweredStartsWith(path, usersRoot);
}

void PathPolicy::addPrefix(std::wstring folder) {
    excludedPrefixes.push_back(lowered(withSeparator(std::move(folder))));
}

void PathPolicy::addKnownFolder(const PathPolicyMachine& machine, Folder folder) {
    if (auto path = machine.knownFolder(folder)) addPrefix(std::move(*path));
}

void PathPolicy::addExpanded(const PathPolicyMachine& machine, std::wstring_view row) {
    if (auto path = machine.expanded(row)) addPrefix(std::move(*path));
}

void PathPolicy::addProfiles(const PathPolicyMachine& machine, const std::wstring& profiles) {
    const std::wstring root = withSeparator(profiles);
    usersRoot = lowered(root);
    for (const std::wstring& profile : machine.subfolders(profiles)) {
        for (const std::wstring_view folder : kProfileFolders) {
            addPrefix(root + profile + L'\\' + std::wstring(folder));
        }
    }
}

void PathPolicy::addDrives(const PathPolicyMachine& machine) {
    for (const wchar_t letter : machine.driveLetters()) {
        for (const std::wstring_view folder : kDriveFolders) addPrefix(letter + std::wstring(folder));
    }
}

void PathPolicy::finish() {
    std::sort(excludedPrefixes.begin(), excludedPrefixes.end());
    excludedPrefixes.erase(std::unique(excludedPrefixes.begin(), excludedPrefixes.end()),
                           excludedPrefixes.end());
    // In this order a prefix stands in front of all that begin with it.
    for (const std::wstring& prefix : excludedPrefixes) {
        if (outermostPrefixes.empty() || !prefix.starts_with(outermostPrefixes.back())) {
            outermostPrefixes.push_back(prefix);
        }
    }
}

bool PathPolicy::hasExcludedPrefix(std::wstring_view path) const {
    const auto behind =
        std::upper_bound(outermostPrefixes.begin(), outermostPrefixes.end(), path,
                         [](std::wstring_view asked, const std::wstring& prefix) {
                             return std::lexicographical_compare(
                                 asked.begin(), asked.end(), prefix.begin(), prefix.end(),
                                 // The two are handed over in either order, so both are lowered.
                                 [](wchar_t a, wchar_t b) { return lowerUnit(a) < lowerUnit(b); });
                         });
    return behind != outermostPrefixes.begin() && loweredStartsWith(path, *std::prev(behind));
}

}  // namespace varnelo
