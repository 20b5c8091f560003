#pragma once

// The groups that everything shown is sorted into: four families of fixed groups, and beside them the
// free-named group of a cluster of related files.
//
// A fixed group has two words. The fixed English text (`groupDisplayName`) serves in files, caches and
// prompts and never changes with the language. The language key (`groupLanguageKey`) goes through the
// language table to give the word the user sees, which differs from the fixed text even in English.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace varnelo {

enum class GroupCategory : std::uint32_t { Software = 0, Files = 1, System = 2, Special = 3 };

// The values are stored in caches: append, never reorder.
enum class SoftwareGroup : std::uint32_t {
    Browser,
    Office,
    Communication,
    Media,
    Graphics,
    Games,
    Education,
    Finance,
    Health,
    Utilities,
    Search,
    Development,
    DevTools,
    Database,
    Testing,
    System,
    Drivers,
    Security,
    Networking,
    Virtualization,
    Storage,
    Cloud,
    Compression,
    Others,
};

enum class FileGroup : std::uint32_t {
    OfficeDocuments,
    TextDocuments,
    MediaMusic,
    MediaImages,
    MediaVideo,
    DesignAndGraphics,
    ProjectFiles,
    SourceCode,
    Scripts,
    BuildArtifacts,
    Executables,
    InstallersAndPackages,
    StructuredData,
    DatabaseFiles,
    ConfigurationFiles,
    Archives,
    DiskImages,
    BackupFiles,
    SystemFiles,
    Logs,
    TemporaryFiles,
    Others,
};

enum class SystemGroup : std::uint32_t { SystemSettings, Hardware, Network, Security, User, Programs, Other };

enum class SpecialGroup : std::uint32_t {
    RecentFiles,
    FrequentlyUsedFiles,
    ImportantFiles,
    TemporaryFiles,
    SystemCriticalFiles,
    System,
    Software,
    Archives,
    Downloads,
    Last7Days,
    Last30Days,
    Last90Days,
    Older,
};

// `value` holds the enumeration of the family that `category` names, or, as a wide string, the name of a
// cluster (made with category `Files`). Equal when category, alternative and value are all equal.
struct GroupKey {
    using Value = std::variant<SoftwareGroup, FileGroup, SystemGroup, SpecialGroup, std::wstring>;

    GroupCategory category = GroupCategory::Software;
    Value value;

    bool operator==(const GroupKey&) const = default;
};

// The fixed English text; "Unknown" for a number outside the family.
std::wstring groupDisplayName(SoftwareGroup group);
std::wstring groupDisplayName(FileGroup group);
std::wstring groupDisplayName(SystemGroup group);
std::wstring groupDisplayName(SpecialGroup group);

// The key in the language tables, chosen by the alternative held; empty for a number outside the family.
// A cluster has no key: its name is returned as it stands.
std::wstring groupLanguageKey(const GroupKey& key);

// The identity of a group: "Software-", "Files-", "System-" or "Special-", then the fixed text or the
// cluster's name. Throws std::bad_variant_access when the alternative held does not belong to the category
// (a cluster in `System` included), and std::runtime_error "Invalid group category" for a category above 3.
std::wstring groupKeyName(const GroupKey& key);

// The group with exactly this fixed text. A text that is no row gives `Others` (`Other` in `System`), so a
// wrong answer of the service still gives a group, but nothing in `Special` or in a category above 3.
std::optional<GroupKey> groupFromText(GroupCategory category, std::wstring_view text);

// All texts of the family, joined by ", ", as prompts use them: those of software each in double quotes,
// those of files bare.
std::wstring softwareGroupList();
std::wstring fileGroupList();

// The place of a group on the desktop tab, 0 to 8, low first. All that has no place of its own, clusters
// among it, has 3.
int desktopGroupRank(const GroupKey& key);

}  // namespace varnelo
