// DesktopOrganizer: what the shell tells.

#include "model/desktop_organizer.h"
#include "platform/text.h"

namespace varnelo {

void DesktopOrganizer::onShellChange(std::uint32_t event, const ItemIdList& first, const ItemIdList& second) {
    {
        const std::lock_guard lock(mutex);
        if (unsettled) settle();
        const GroupOf before = currentGroups();
        handleShellEvent(event, first, second);
        markZoneIdentifiers();
        groupAll(services.desktopFolder);
        recordMoved(before);
    }
    flushPending();
}

void DesktopOrganizer::handleShellEvent(std::uint32_t event, const ItemIdList& first,
                                        const ItemIdList& second) {
    switch (event) {
        case RenameItem:
            return renameItem(first, second);
        case Create:
        case MakeDirectory:
            return addShellItem(first);
        case Delete:
        case RemoveDirectory:
            return removeItem(first);
        case UpdateDirectory:
            return recheck();
        case UpdateItem:
            return updateItem(first);
        case UpdateImage:
            for (DesktopFileInfo* info : entries) record(*info, Action::Updated);
            return;
    }
}

// A notification may come late. If the name is taken again by then, the item that has it is read anew: its
// own notification may find it listed already, or come from the watcher before this one.
void DesktopOrganizer::removeItem(const ItemIdList& item) {
    bool taken = false;
    while (DesktopFileInfo* const info = findByList(item)) {
        takeOut(*info);
        taken = taken || (!info->isSpecial && services.probe.exists(info->fullPath));
    }
    if (taken) addShellItem(item);
}

void DesktopOrganizer::updateItem(const ItemIdList& item) {
    DesktopFileInfo* const info = findByList(item);
    if (!info) return addShellItem(item);
    if (const auto path = services.shell.fileSystemPath(item)) reader.fillFromPath(*path, *info);
    record(*info, Action::Updated);
}

void DesktopOrganizer::renameItem(const ItemIdList& oldItem, const ItemIdList& newItem) {
    DesktopFileInfo* const info = findByList(oldItem);
    if (!info) return;
    const std::wstring oldPath = info->fullPath;
    if (refillRenamed(*info, newItem)) {
        record(*info, Action::Renamed);
        // What stood under the new name was replaced.
        if (!info->isSpecial) {
            for (DesktopFileInfo* other : std::vector(entries)) {
                if (other != info && equalIgnoringCase(other->fullPath, info->fullPath)) takeOut(*other);
            }
        }
    } else {
        takeOut(*info);
    }
    // As in removeItem: by now another item may have the old name.
    if (!info->isSpecial && services.probe.exists(oldPath)) addShellItem(oldItem);
}

// False for an item that has left the desktop. Only the private desktop counts as staying: a move to the
// public one takes the item out, and the next rebuild finds it there.
bool DesktopOrganizer::refillRenamed(DesktopFileInfo& info, const ItemIdList& newItem) {
    if (const auto path = services.shell.fileSystemPath(newItem)) {
        const auto folder = folderOf(*path);
        if (!folder || services.desktopFolder.empty() ||
            !equalIgnoringCase(*folder, services.desktopFolder)) {
            return false;
        }
        info.pidl = newItem;
        reader.fillFromPath(*path, info);
        return true;
    }
    if (!services.shell.isImmediateParent(desktopRoot, newItem)) return false;
    info.pidl = newItem;
    if (const auto name = services.shell.displayName(newItem)) {
        info.fileName = *name;
        info.fullPath = *name;
    }
    return true;
}

void DesktopOrganizer::recheck() {
    const std::vector<DesktopFileInfo*> known = entries;
    enumerate();
    for (DesktopFileInfo* info : known) {
        if (isGone(*info)) takeOut(*info);
    }
}

bool DesktopOrganizer::isGone(const DesktopFileInfo& info) const {
    if (info.isSpecial) return !services.shell.displayName(info.pidl);
    return !info.fullPath.empty() && !services.probe.exists(info.fullPath);
}

}  // namespace varnelo
