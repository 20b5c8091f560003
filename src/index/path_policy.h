#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace varnelo {

// What a PathPolicy asks of the machine. The real one is in path_policy_machine_win.h; tests script theirs.
class PathPolicyMachine {
public:
    enum class Folder {  // the FOLDERID_ values of the same names
        Windows,
        System,
        SystemX86,
        Fonts,
        ProgramFiles,
        ProgramFilesX86,
        ProgramFilesCommon,
        ProgramFilesCommonX86,
        ProgramData,
        LocalAppData,
        RoamingAppData,
        LocalAppDataLow,
        UserProfiles,
    };

    virtual ~PathPolicyMachine() = default;

    // The folder's path; nothing when the system cannot tell it.
    virtual std::optional<std::wstring> knownFolder(Folder folder) const = 0;

    // The text with each %NAME% replaced by that variable's value; one that is not set stays as it is.
    // Nothing when the expansion fails.
    virtual std::optional<std::wstring> expanded(std::wstring_view text) const = 0;

    // The names of all folders in a folder, hidden and linked ones too, without "." and "..".
    virtual std::vector<std::wstring> subfolders(const std::wstring& folder) const = 0;

    // The letter of every drive present, of whatever kind.
    virtual std::wstring driveLetters() const = 0;
};

// Which paths are not worth showing on the overview: folders of the system, of programs, toolchains, caches
// and games. The index is not touched by it, so what is excluded can still be searched for.
//
// What the machine tells is read once, by the constructor; drives and profiles that come later are not known.
// Read-only from then on, so that any thread may ask without a lock. Paths are absolute, with backslashes;
// case is folded by lowerUnit. No question allocates memory.
class PathPolicy {
public:
    explicit PathPolicy(const PathPolicyMachine& machine);

    // Whether the path lies in an excluded folder, or has a component with an excluded name behind its first
    // separator. To be asked about a folder itself, its path must end in a backslash: without one it is taken
    // for a file of that name.
    bool isExcludedPath(std::wstring_view path) const;

    // Whether the path, with or without a backslash at its end, is that of a folder named "desktop" at any
    // depth below the profiles; anywhere when the machine did not tell where profiles are.
    bool isUserDesktopFolder(std::wstring_view path) const;

    // Lowered, each with a backslash at its end; sorted, each once.
    const std::vector<std::wstring>& prefixes() const { return excludedPrefixes; }

private:
    void addPrefix(std::wstring folder);
    void addKnownFolder(const PathPolicyMachine& machine, PathPolicyMachine::Folder folder);
    void addExpanded(const PathPolicyMachine& machine, std::wstring_view row);
    void addProfiles(const PathPolicyMachine& machine, const std::wstring& profiles);
    void addDrives(const PathPolicyMachine& machine);
    void finish();
    bool hasExcludedPrefix(std::wstring_view path) const;

    std::vector<std::wstring> excludedPrefixes;
    // Those of excludedPrefixes that do not begin with another one, sorted. At most one of them can begin a
    // path, and it is the last that does not stand behind the path.
    std::vector<std::wstring> outermostPrefixes;
    std::wstring usersRoot;  // lowered, with a backslash at its end; "" when it is unknown
};

}  // namespace varnelo
