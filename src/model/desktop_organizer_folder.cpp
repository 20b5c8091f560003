// DesktopOrganizer: what the watcher on the desktop folder tells. Files are read before `mutex` is taken.

#include <utility>

#include "model/desktop_organizer.h"
#include "platform/text.h"

namespace varnelo {

void DesktopOrganizer::onFileAdded(const std::wstring& path, const std::wstring& name) {
    InfoPtr item = readAdded(path, name);
    const std::lock_guard lock(mutex);
    // The shell may have told of the item already, or of its end since it was read.
    if (item && services.probe.exists(path)) insertUnique(std::move(item));
    endFolderChange(L"");
}

void DesktopOrganizer::onFileRemoved(const std::wstring& path) {
    const std::lock_guard lock(mutex);
    while (DesktopFileInfo* const info = findByPath(path)) takeOut(*info);
    endFolderChange(L"");
}

void DesktopOrganizer::onFileModified(const std::wstring& path) {
    const auto times = services.probe.fileTimes(path);
    const std::lock_guard lock(mutex);
    if (DesktopFileInfo* const info = findByPath(path)) {
        if (times) {
            info->setTimes(*times);
            retimed.push_back(info);
        }
        if (!inBatch) markZoneIdentifiers();
        record(*info, Action::Updated);
        endFolderChange(services.desktopFolder);
    } else if (!inBatch && !pending.empty()) {
        changedByWatcher.store(true, std::memory_order_release);
    }
}

void DesktopOrganizer::onFolderChanges(std::span<const FolderChange> changes) {
    inBatch = true;
    for (const FolderChange& change : changes) onFolderChange(change);
    inBatch = false;
    endFolderChanges();
}

void DesktopOrganizer::onFolderChange(const FolderChange& change) {
    const std::wstring path = services.desktopFolder + L"\\" + change.name;
    switch (change.kind) {
        case FolderChange::Kind::Added:
            if (services.probe.exists(path)) onFileAdded(path, change.name);
            return;
        case FolderChange::Kind::Removed:
            return onFileRemoved(path);
        case FolderChange::Kind::Modified:
            // A file that its writer kept to itself could not be read when it appeared; now it may.
            if (!isListed(path) && services.probe.exists(path)) return onFileAdded(path, change.name);
            return onFileModified(path);
        case FolderChange::Kind::RenamedOldName:
            if (!services.probe.exists(path)) onFileRemoved(path);
            return;
        case FolderChange::Kind::RenamedNewName:
            if (!isListed(path)) onFileAdded(path, change.name);
            return;
    }
}

void DesktopOrganizer::onFolderOverflow() {
    ItemIdList root;
    std::vector<ItemIdList> children;
    std::vector<InfoPtr> found;
    if (services.shell.enumerateDesktop(root, children)) {
        for (const ItemIdList& child : children) {
            if (auto info = reader.read(child, root)) found.push_back(std::move(info));
        }
    }
    {
        const std::lock_guard lock(mutex);
        if (!root.empty()) desktopRoot = std::move(root);
        const std::vector<DesktopFileInfo*> known = entries;
        for (InfoPtr& item : found) {
            DesktopFileInfo* const listed = duplicateOf(*item);
            if (!listed) {
                if (!isGone(*item)) insertUnique(std::move(item));
            } else if (listed->times() != item->times()) {
                listed->setTimes(item->times());
                retimed.push_back(listed);
                record(*listed, Action::Updated);
            }
        }
        for (DesktopFileInfo* info : known) {
            if (isGone(*info)) takeOut(*info);
        }
        unsettled = true;
    }
    endFolderChanges();
}

// Null when the item cannot be shown. The shell knows an item of the public desktop by the same name too;
// then the path alone is meant.
DesktopOrganizer::InfoPtr DesktopOrganizer::readAdded(const std::wstring& path,
                                                      const std::wstring& name) const {
    if (const auto item = services.shell.parseDesktopName(name)) {
        const auto itemPath = services.shell.fileSystemPath(*item);
        if (itemPath && equalIgnoringCase(*itemPath, path)) return reader.read(*item, ItemIdList());
    }
    return reader.read(path);
}

bool DesktopOrganizer::isListed(const std::wstring& path) const {
    const std::lock_guard lock(mutex);
    return findByPath(path) != nullptr;
}

// An item that came or went may have made a family of items that merely lie on the desktop: no folder is
// excepted. The next notification of the shell, or the end of the batch, excepts the desktop again.
void DesktopOrganizer::endFolderChange(const std::wstring& rootFolder) {
    if (inBatch) {
        unsettled = unsettled || !pending.empty();
        return;
    }
    groupAll(rootFolder);
    if (!pending.empty()) changedByWatcher.store(true, std::memory_order_release);
}

void DesktopOrganizer::endFolderChanges() {
    {
        const std::lock_guard lock(mutex);
        if (unsettled) settle();
        if (pending.empty()) return;
        changedByWatcher.store(true, std::memory_order_release);
    }
    if (services.wake) services.wake();
}

}  // namespace varnelo
