#pragma once

// Owns what the desktop tab shows: one DesktopFileInfo for each item of the shell's desktop, its group, and
// its remembered position across runs. It follows two sources of change, the shell's notifications and a
// DesktopWatcher on the user's desktop folder, and tells its listeners what became of each item.
//
// Threads. The watcher's thread calls the operations of FolderChangeSink and onFile...; the user-interface
// thread calls everything else and is the thread that makes and destroys the organiser. `mutex` guards all
// state. Lock order: a view's pane lock first, then `mutex`. So neither a listener nor `wake` is ever called
// with `mutex` held, and flushPending() may be called with the pane lock held. The files of a watcher's
// change are read before `mutex` is taken, so a slow disk does not stop the views.
//
// Lifetime. An item that left the desktop stays alive, since pending changes and views may still point to it.
// rebuild() retires all objects, shown or removed, list() the removed ones, and each frees what was retired
// before: a view may read the old list until it has taken over the new one.

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "model/desktop_item_reader.h"
#include "model/file_clusterer.h"
#include "model/file_entry.h"
#include "model/file_metadata.h"
#include "model/file_probe.h"
#include "model/folder_changes.h"
#include "model/shell_namespace.h"
#include "platform/clock.h"
#include "platform/com_apartment.h"

namespace varnelo {

class DesktopOrganizer final : public FolderChangeSink {
public:
    enum class Action { Added = 0, Removed = 1, Renamed = 2, Updated = 3 };

    // The SHCNE_ values that are handled. Any other event still groups anew and flushes.
    enum ShellEvent : std::uint32_t {
        RenameItem = 1,
        Create = 2,
        Delete = 4,
        MakeDirectory = 8,
        RemoveDirectory = 16,
        UpdateDirectory = 4096,
        UpdateItem = 8192,
        UpdateImage = 32768,
    };

    using Listener = std::function<void(const FileEntry&, Action)>;

    // The referenced objects outlive the organiser. A folder that is not known is empty.
    struct Dependencies {
        const ShellNamespace& shell;
        const FileProbe& probe;
        const Clock& clock;
        std::wstring desktopFolder;
        std::wstring publicDesktopFolder;
        std::wstring profileFolder;
        std::wstring cacheFileName;  // the whole path
        std::function<void()>
            wake;  // on the watcher's thread, after pendingChanged() became true; may be empty
    };

    explicit DesktopOrganizer(Dependencies dependencies);
    DesktopOrganizer(const DesktopOrganizer&) = delete;
    DesktopOrganizer& operator=(const DesktopOrganizer&) = delete;

    // Forgets everything and reads the desktop anew. Pending changes are dropped: the list has them.
    EntryList rebuild();
    // What is known by now, for a view that shows it anew; the first time as rebuild(). Reads no item again.
    // Pending changes are dropped here too.
    EntryList list();

    // A shell notification; either list may be empty. Ends with flushPending().
    void onShellChange(std::uint32_t event, const ItemIdList& first, const ItemIdList& second);

    // One change in the desktop folder. What it leads to waits for the next flush. Outside onFolderChanges
    // each groups all items at once; an addition or a removal then lets the items of the desktop folder be a
    // family.
    void onFileAdded(const std::wstring& path, const std::wstring& name);
    void onFileRemoved(const std::wstring& path);
    void onFileModified(const std::wstring& path);

    // As if a shell notification had followed the changes at once: all is grouped once, and what moved to
    // another group by it is reported too.
    void onFolderChanges(std::span<const FolderChange> changes) override;
    void onFolderOverflow() override;

    // True from a watcher's change until the next flush. Takes no lock.
    bool pendingChanged() const { return changedByWatcher.load(std::memory_order_acquire); }

    // Tells the listeners every pending change, in order.
    void flushPending();

    void addListener(Listener listener);

    // Writes the remembered positions; false, and the old file untouched, when that fails.
    bool saveCache();

private:
    struct Change {
        DesktopFileInfo* info;
        Action action;
    };
    using InfoPtr = std::unique_ptr<DesktopFileInfo>;
    using GroupOf = std::unordered_map<const DesktopFileInfo*, std::optional<GroupKey>>;

    // All of these expect `mutex` to be held. The shell may run messages of its own while it is asked, so no
    // list is walked by iterators around a call to it.
    void enumerate();
    EntryList takeList();
    void retireRemoved();
    void addShellItem(const ItemIdList& item);
    bool insertUnique(InfoPtr info);
    DesktopFileInfo* duplicateOf(const DesktopFileInfo& info) const;
    DesktopFileInfo* findByPath(std::wstring_view path) const;
    DesktopFileInfo* findByList(const ItemIdList& item) const;
    void takeOut(DesktopFileInfo& info);
    void record(DesktopFileInfo& info, Action action) { pending.push_back({&info, action}); }
    void publishTimestamps();

    // Groups (desktop_organizer_groups.cpp).
    void markZoneIdentifiers();
    void groupAll(const std::wstring& rootFolder);
    GroupKey fixedGroup(const DesktopFileInfo& info, std::uint64_t nowSeconds) const;
    GroupOf currentGroups() const;
    void recordMoved(const GroupOf& before);
    void settle();

    // The shell's changes (desktop_organizer_shell.cpp).
    void handleShellEvent(std::uint32_t event, const ItemIdList& first, const ItemIdList& second);
    void removeItem(const ItemIdList& item);
    void updateItem(const ItemIdList& item);
    void renameItem(const ItemIdList& oldItem, const ItemIdList& newItem);
    bool refillRenamed(DesktopFileInfo& info, const ItemIdList& newItem);
    void recheck();
    bool isGone(const DesktopFileInfo& info) const;

    // The watcher's changes (desktop_organizer_folder.cpp); these take `mutex` themselves.
    void onFolderChange(const FolderChange& change);
    InfoPtr readAdded(const std::wstring& path, const std::wstring& name) const;
    bool isListed(const std::wstring& path) const;
    void endFolderChange(const std::wstring& rootFolder);
    void endFolderChanges();

    const Dependencies services;
    const DesktopItemReader reader;
    const FileClusterer clusterer;
    const ComApartment apartment{ComApartment::Kind::Single};

    std::atomic<bool> changedByWatcher{false};
    bool inBatch = false;  // of the watcher's thread alone

    mutable std::recursive_mutex mutex;
    // Guarded by `mutex`:
    std::vector<DesktopFileInfo*> entries;  // the shown items in enumeration order; owned by `alive`
    std::vector<InfoPtr> alive;             // those, and what was removed since the last list
    std::vector<InfoPtr> retired;           // those that no list since shows
    std::vector<DesktopFileInfo*> retimed;  // their `timestamp` follows at the next flush
    std::vector<Change> pending;
    std::vector<Listener> listeners;
    ItemIdList desktopRoot;  // empty until enumerated
    bool wasBuilt = false;
    bool unsettled = false;  // a batch of the watcher has changed `entries` and nothing was grouped since
};

}  // namespace varnelo
