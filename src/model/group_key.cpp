#include "model/group_key.h"

#include <cstddef>
#include <span>
#include <stdexcept>

namespace varnelo {
namespace {

template <class Group>
struct Row {
    Group value;
    std::wstring_view key;   // in the language tables
    std::wstring_view text;  // the fixed English text
};

constexpr Row<SoftwareGroup> kSoftwareRows[] = {
    {SoftwareGroup::Browser, L"BROWSER", L"Browser"},
    {SoftwareGroup::Office, L"OFFICE", L"Office"},
    {SoftwareGroup::Communication, L"COMMUNICATION", L"Communication"},
    {SoftwareGroup::Media, L"MEDIA", L"Media"},
    {SoftwareGroup::Graphics, L"GRAPHICS", L"Graphics"},
    {SoftwareGroup::Games, L"GAMES", L"Games"},
    {SoftwareGroup::Education, L"EDUCATION", L"Education"},
    {SoftwareGroup::Finance, L"FINANCE", L"Finance"},
    {SoftwareGroup::Health, L"HEALTH", L"Health"},
    {SoftwareGroup::Utilities, L"UTILITIES", L"Utilities"},
    {SoftwareGroup::Search, L"SEARCH", L"Search"},
    {SoftwareGroup::Development, L"DEVELOPMENT", L"Development"},
    {SoftwareGroup::DevTools, L"DEVTOOLS", L"DevTools"},
    {SoftwareGroup::Database, L"DATABASE", L"Database"},
    {SoftwareGroup::Testing, L"TESTING", L"Testing"},
    {SoftwareGroup::System, L"SYSTEM", L"System"},
    {SoftwareGroup::Drivers, L"DRIVERS", L"Drivers"},
    {SoftwareGroup::Security, L"SECURITY", L"Security"},
    {SoftwareGroup::Networking, L"NETWORKING", L"Networking"},
    {SoftwareGroup::Virtualization, L"VIRTUALIZATION", L"Virtualization"},
    {SoftwareGroup::Storage, L"STORAGE", L"Storage"},
    {SoftwareGroup::Cloud, L"CLOUD", L"Cloud"},
    {SoftwareGroup::Compression, L"COMPRESSION", L"Compression"},
    {SoftwareGroup::Others, L"OTHERS", L"Others"},
};

constexpr Row<FileGroup> kFileRows[] = {
    {FileGroup::OfficeDocuments, L"OFFICE_DOCUMENTS", L"Office Documents"},
    {FileGroup::TextDocuments, L"TEXT_DOCUMENTS", L"Text Documents"},
    {FileGroup::MediaMusic, L"MEDIA_MUSIC", L"Music"},
    {FileGroup::MediaImages, L"MEDIA_IMAGES", L"Images"},
    {FileGroup::MediaVideo, L"MEDIA_VIDEO", L"Video"},
    {FileGroup::DesignAndGraphics, L"DESIGN_AND_GRAPHICS", L"Design & Graphics"},
    {FileGroup::ProjectFiles, L"PROJECT_FILES", L"Project Files"},
    {FileGroup::SourceCode, L"SOURCE_CODE", L"Source Code"},
    {FileGroup::Scripts, L"SCRIPTS", L"Scripts"},
    {FileGroup::BuildArtifacts, L"BUILD_ARTIFACTS", L"Build Artifacts"},
    {FileGroup::Executables, L"EXECUTABLES", L"Executables"},
    {FileGroup::InstallersAndPackages, L"INSTALLERS_AND_PACKAGES", L"Installers & Packages"},
    {FileGroup::StructuredData, L"STRUCTURED_DATA", L"Structured Data"},
    {FileGroup::DatabaseFiles, L"DATABASE_FILES", L"Database Files"},
    {FileGroup::ConfigurationFiles, L"CONFIGURATION_FILES", L"Configuration Files"},
    {FileGroup::Archives, L"ARCHIVES", L"Archives"},
    {FileGroup::DiskImages, L"DISK_IMAGES", L"Disk Images"},
    {FileGroup::BackupFiles, L"BACKUP_FILES", L"Backup Files"},
    {FileGroup::SystemFiles, L"SYSTEM_FILES", L"System Files"},
    {FileGroup::Logs, L"LOGS", L"Logs"},
    {FileGroup::TemporaryFiles, L"TEMPORARY_FILES", L"Temporary Files"},
    {FileGroup::Others, L"OTHERS", L"Others"},
};

// The last row's text is "Others" although its key is OTHER: the text is the one every family ends in.
constexpr Row<SystemGroup> kSystemRows[] = {
    {SystemGroup::SystemSettings, L"SYSTEM_SETTINGS", L"System Settings"},
    {SystemGroup::Hardware, L"HARDWARE", L"Hardware"},
    {SystemGroup::Network, L"NETWORK", L"Network"},
    {SystemGroup::Security, L"SECURITY", L"Security"},
    {SystemGroup::User, L"USER", L"User"},
    {SystemGroup::Programs, L"PROGRAMS", L"Programs"},
    {SystemGroup::Other, L"OTHER", L"Others"},
};

constexpr Row<SpecialGroup> kSpecialRows[] = {
    {SpecialGroup::RecentFiles, L"RECENT_FILES", L"Recent Files"},
    {SpecialGroup::FrequentlyUsedFiles, L"FREQUENTLY_USED_FILES", L"Frequently Used Files"},
    {SpecialGroup::ImportantFiles, L"IMPORTANT_FILES", L"Important Files"},
    {SpecialGroup::TemporaryFiles, L"TEMPORARY_FILES", L"Temporary Files"},
    {SpecialGroup::SystemCriticalFiles, L"SYSTEM_CRITICAL_FILES", L"System Critical Files"},
    {SpecialGroup::System, L"SYSTEM", L"System"},
    {SpecialGroup::Software, L"SOFTWARE", L"Software"},
    {SpecialGroup::Archives, L"ARCHIVES", L"Archives"},
    {SpecialGroup::Downloads, L"DOWNLOADS", L"Downloads"},
    {SpecialGroup::Last7Days, L"LAST_7_DAYS", L"Last 7 Days"},
    {SpecialGroup::Last30Days, L"LAST_30_DAYS", L"Last 30 Days"},
    {SpecialGroup::Last90Days, L"LAST_90_DAYS", L"Last 90 Days"},
    {SpecialGroup::Older, L"OLDER", L"Older"},
};

template <class Group, std::size_t N>
constexpr bool rowsStandAtTheirValue(const Row<Group> (&rows)[N]) {
    for (std::size_t i = 0; i < N; ++i)
        if (static_cast<std::size_t>(rows[i].value) != i) return false;
    return true;
}
static_assert(rowsStandAtTheirValue(kSoftwareRows) && rowsStandAtTheirValue(kFileRows));
static_assert(rowsStandAtTheirValue(kSystemRows) && rowsStandAtTheirValue(kSpecialRows));

std::span<const Row<SoftwareGroup>> familyOf(SoftwareGroup) { return kSoftwareRows; }
std::span<const Row<FileGroup>> familyOf(FileGroup) { return kFileRows; }
std::span<const Row<SystemGroup>> familyOf(SystemGroup) { return kSystemRows; }
std::span<const Row<SpecialGroup>> familyOf(SpecialGroup) { return kSpecialRows; }

// Null for a number outside the family.
template <class Group>
const Row<Group>* rowOf(Group group) {
    const auto rows = familyOf(group);
    const auto index = static_cast<std::size_t>(group);
    return index < rows.size() ? &rows[index] : nullptr;
}

template <class Group>
std::wstring textOf(Group group) {
    const Row<Group>* row = rowOf(group);
    return std::wstring(row ? row->text : L"Unknown");
}

// The fixed text of the alternative `Group`; throws std::bad_variant_access when another one is held.
template <class Group>
std::wstring heldText(const GroupKey& key) {
    return textOf(std::get<Group>(key.value));
}

template <class Group>
std::wstring heldNameOrText(const GroupKey& key) {
    if (const auto* name = std::get_if<std::wstring>(&key.value)) return *name;
    return heldText<Group>(key);
}

struct LanguageKeyOf {
    std::wstring operator()(const std::wstring& clusterName) const { return clusterName; }

    template <class Group>
    std::wstring operator()(Group group) const {
        const Row<Group>* row = rowOf(group);
        return row ? std::wstring(row->key) : std::wstring();
    }
};

template <class Group>
std::optional<GroupKey> findText(GroupCategory category, std::wstring_view text,
                                 std::optional<Group> otherwise) {
    for (const Row<Group>& row : familyOf(Group{}))
        if (row.text == text) return GroupKey{category, row.value};
    if (!otherwise) return std::nullopt;
    return GroupKey{category, *otherwise};
}

template <class Group>
std::wstring joinTexts(std::span<const Row<Group>> rows, std::wstring_view quote) {
    std::wstring list;
    for (const Row<Group>& row : rows) {
        if (!list.empty()) list += L", ";
        list.append(quote).append(row.text).append(quote);
    }
    return list;
}

}  // namespace

std::wstring groupDisplayName(SoftwareGroup group) { return textOf(group); }
std::wstring groupDisplayName(FileGroup group) { return textOf(group); }
std::wstring groupDisplayName(SystemGroup group) { return textOf(group); }
std::wstring groupDisplayName(SpecialGroup group) { return textOf(group); }

std::wstring groupLanguageKey(const GroupKey& key) { return std::visit(LanguageKeyOf{}, key.value); }

std::wstring groupKeyName(const GroupKey& key) {
    switch (key.category) {
        case GroupCategory::Software:
            return L"Software-" + heldNameOrText<SoftwareGroup>(key);
        case GroupCategory::Files:
            return L"Files-" + heldNameOrText<FileGroup>(key);
        // A cluster among the system items is a contradiction, so no name is accepted here.
        case GroupCategory::System:
            return L"System-" + heldText<SystemGroup>(key);
        case GroupCategory::Special:
            return L"Special-" + heldNameOrText<SpecialGroup>(key);
    }
    throw std::runtime_error("Invalid group category");
}

std::optional<GroupKey> groupFromText(GroupCategory category, std::wstring_view text) {
    switch (category) {
        case GroupCategory::Software:
            return findText<SoftwareGroup>(category, text, SoftwareGroup::Others);
        case GroupCategory::Files:
            return findText<FileGroup>(category, text, FileGroup::Others);
        case GroupCategory::System:
            return findText<SystemGroup>(category, text, SystemGroup::Other);
        case GroupCategory::Special:
            return findText<SpecialGroup>(category, text, std::nullopt);
    }
    return std::nullopt;
}

std::wstring softwareGroupList() { return joinTexts(familyOf(SoftwareGroup{}), L"\""); }
std::wstring fileGroupList() { return joinTexts(familyOf(FileGroup{}), L""); }

int desktopGroupRank(const GroupKey& key) {
    constexpr int kUnlisted = 3;
    if (key.category != GroupCategory::Special) return kUnlisted;
    const auto* group = std::get_if<SpecialGroup>(&key.value);
    if (!group) return kUnlisted;
    switch (*group) {
        case SpecialGroup::System:
            return 0;
        case SpecialGroup::Software:
            return 1;
        case SpecialGroup::Downloads:
            return 2;
        case SpecialGroup::Last7Days:
            return 4;
        case SpecialGroup::Last30Days:
            return 5;
        case SpecialGroup::Last90Days:
            return 6;
        case SpecialGroup::Older:
            return 7;
        case SpecialGroup::Archives:
            return 8;
        default:
            return kUnlisted;
    }
}

}  // namespace varnelo
