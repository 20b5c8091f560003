// DesktopOrganizer: which group each item stands in.

#include <cstddef>

#include "model/desktop_organizer.h"
#include "platform/text.h"

namespace varnelo {
namespace {

// A day more than the groups' names say.
constexpr std::uint64_t kLast7DaysSeconds = 8 * 86400;
constexpr std::uint64_t kLast30DaysSeconds = 31 * 86400;
constexpr std::uint64_t kLast90DaysSeconds = 91 * 86400;

SpecialGroup ageGroup(std::uint64_t ageSeconds) {
    if (ageSeconds < kLast7DaysSeconds) return SpecialGroup::Last7Days;
    if (ageSeconds < kLast30DaysSeconds) return SpecialGroup::Last30Days;
    if (ageSeconds < kLast90DaysSeconds) return SpecialGroup::Last90Days;
    return SpecialGroup::Older;
}

}  // namespace

// The mark is never taken away here: a file that loses its stream counts as downloaded until the next
// rebuild.
void DesktopOrganizer::markZoneIdentifiers() {
    for (DesktopFileInfo* info : entries) {
        if (info->isSpecial || info->hasZoneIdentifier) continue;
        info->hasZoneIdentifier = services.probe.hasZoneIdentifier(info->fullPath);
    }
}

void DesktopOrganizer::groupAll(const std::wstring& rootFolder) {
    std::vector<FileCluster> clusters;
    clusterer.build(clusters, entries, rootFolder);
    const std::uint64_t nowSeconds = fileTimeSeconds(services.clock.fileTime());
    for (DesktopFileInfo* info : entries) {
        if (info->grouped) continue;
        info->group = fixedGroup(*info, nowSeconds);
        info->grouped = true;
    }
}

GroupKey DesktopOrganizer::fixedGroup(const DesktopFileInfo& info, std::uint64_t nowSeconds) const {
    const auto special = [](SpecialGroup value) { return GroupKey{GroupCategory::Special, value}; };
    if (info.isSpecial) return special(SpecialGroup::System);
    if (clusterer.isSoftware(info)) return special(SpecialGroup::Software);
    if (info.hasZoneIdentifier) return special(SpecialGroup::Downloads);
    if (clusterer.archiveExtensions.contains(lowered(info.extension))) return special(SpecialGroup::Archives);
    // Unsigned: a file from the future has a huge age and is among the old ones.
    return special(ageGroup(nowSeconds - fileTimeSeconds(info.lastWriteTime)));
}

DesktopOrganizer::GroupOf DesktopOrganizer::currentGroups() const {
    GroupOf groups;
    groups.reserve(entries.size());
    for (const DesktopFileInfo* info : entries) groups.emplace(info, info->group);
    return groups;
}

// An item without a group before is not known to any listener yet; its own change will name its group.
void DesktopOrganizer::recordMoved(const GroupOf& before) {
    for (DesktopFileInfo* info : entries) {
        const auto known = before.find(info);
        if (known == before.end() || !known->second) continue;
        if (known->second != info->group) record(*info, Action::Updated);
    }
}

// Groups what the watcher's batches have changed, as the next shell notification would, since nothing says
// that one will come: an item may have got its family, and others theirs by it.
void DesktopOrganizer::settle() {
    const GroupOf before = currentGroups();
    markZoneIdentifiers();
    groupAll(services.desktopFolder);
    recordMoved(before);
    unsettled = false;
}

}  // namespace varnelo
