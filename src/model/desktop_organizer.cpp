#include "model/desktop_organizer.h"

#include <algorithm>
#include <iterator>
#include <unordered_set>
#include <utility>

#include "model/entry_cache.h"
#include "platform/text.h"

namespace varnelo {
namespace {

std::vector<CachedEntry> cachedEntries(const std::vector<DesktopFileInfo*>& entries) {
    std::vector<CachedEntry> cached;
    cached.reserve(entries.size());
    for (DesktopFileInfo* info : entries) cached.push_back({&info->pidl, info});
    return cached;
}

}  // namespace

DesktopOrganizer::DesktopOrganizer(Dependencies dependencies)
    : services(std::move(dependencies)),
      reader(services.shell, services.probe,
             {services.desktopFolder, services.publicDesktopFolder, services.profileFolder}) {}

EntryList DesktopOrganizer::rebuild() {
    const std::lock_guard lock(mutex);
    entries.clear();
    retimed.clear();
    retired = std::exchange(alive, {});
    desktopRoot = ItemIdList();

    enumerate();
    markZoneIdentifiers();
    groupAll(services.desktopFolder);
    unsettled = false;
    // After the grouping, so that a remembered timestamp says when the item was used last, whatever its age.
    loadEntryCache(services.cacheFileName, cachedEntries(entries),
                   [this](const ItemIdList& a, const ItemIdList& b) { return services.shell.equal(a, b); });

    wasBuilt = true;
    return takeList();
}

EntryList DesktopOrganizer::list() {
    const std::lock_guard lock(mutex);
    if (!wasBuilt) return rebuild();
    if (unsettled) settle();
    publishTimestamps();
    retireRemoved();
    return takeList();
}

EntryList DesktopOrganizer::takeList() {
    pending.clear();
    changedByWatcher.store(false, std::memory_order_release);
    EntryList list;
    list.entries.reserve(entries.size());
    for (DesktopFileInfo* info : entries) list.entries.emplace_back(*info);
    list.folder = desktopRoot;
    return list;
}

void DesktopOrganizer::retireRemoved() {
    retired.clear();
    const std::unordered_set<const DesktopFileInfo*> shown(entries.begin(), entries.end());
    const auto removed = std::stable_partition(
        alive.begin(), alive.end(), [&](const InfoPtr& info) { return shown.contains(info.get()); });
    std::move(removed, alive.end(), std::back_inserter(retired));
    alive.erase(removed, alive.end());
}

void DesktopOrganizer::flushPending() {
    std::vector<std::pair<FileEntry, Action>> changes;
    std::vector<Listener> told;
    {
        const std::lock_guard lock(mutex);
        if (unsettled) settle();
        changedByWatcher.store(false, std::memory_order_release);
        publishTimestamps();
        if (pending.empty()) return;
        changes.reserve(pending.size());
        for (const Change& change : pending) changes.emplace_back(FileEntry(*change.info), change.action);
        pending.clear();
        told = listeners;
    }
    for (const auto& [entry, action] : changes) {
        for (const Listener& listener : told) listener(entry, action);
    }
}

void DesktopOrganizer::addListener(Listener listener) {
    const std::lock_guard lock(mutex);
    listeners.push_back(std::move(listener));
}

bool DesktopOrganizer::saveCache() {
    const std::lock_guard lock(mutex);
    publishTimestamps();
    return saveEntryCache(services.cacheFileName, cachedEntries(entries));
}

// The views read `timestamp` without a lock, so a write time that the watcher saw becomes one only here, on
// their thread.
void DesktopOrganizer::publishTimestamps() {
    for (DesktopFileInfo* info : retimed) info->timestamp = unixFromFileTime(info->lastWriteTime);
    retimed.clear();
}

void DesktopOrganizer::enumerate() {
    ItemIdList root;
    std::vector<ItemIdList> children;
    if (!services.shell.enumerateDesktop(root, children)) return;
    desktopRoot = std::move(root);
    for (const ItemIdList& child : children) addShellItem(child);
}

void DesktopOrganizer::addShellItem(const ItemIdList& item) {
    if (item.empty()) return;
    if (auto info = reader.read(item, desktopRoot)) insertUnique(std::move(info));
}

bool DesktopOrganizer::insertUnique(InfoPtr info) {
    if (duplicateOf(*info)) return false;
    entries.push_back(info.get());
    record(*info, Action::Added);
    alive.push_back(std::move(info));
    return true;
}

// A special item is known by its name alone, whatever its path; any other by its path.
DesktopFileInfo* DesktopOrganizer::duplicateOf(const DesktopFileInfo& info) const {
    const auto same = [&info](const DesktopFileInfo* known) {
        if (info.isSpecial) return known->isSpecial && equalIgnoringCase(known->fileName, info.fileName);
        return equalIgnoringCase(known->fullPath, info.fullPath);
    };
    const auto found = std::find_if(entries.begin(), entries.end(), same);
    return found == entries.end() ? nullptr : *found;
}

DesktopFileInfo* DesktopOrganizer::findByPath(std::wstring_view path) const {
    for (DesktopFileInfo* info : entries) {
        if (equalIgnoringCase(info->fullPath, path)) return info;
    }
    return nullptr;
}

DesktopFileInfo* DesktopOrganizer::findByList(const ItemIdList& item) const {
    for (std::size_t i = 0; i < entries.size(); ++i) {
        DesktopFileInfo* const info = entries[i];
        if (services.shell.equal(info->pidl, item)) return info;
    }
    return nullptr;
}

// The object stays alive: changes and views still point to it.
void DesktopOrganizer::takeOut(DesktopFileInfo& info) {
    record(info, Action::Removed);
    std::erase(entries, &info);
}

}  // namespace varnelo
