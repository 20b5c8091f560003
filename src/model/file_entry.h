#pragma once

// What every view shows: a small value object, copied freely. It owns its item id list; the metadata object
// behind it stays with the organiser that made it and is valid only while that organiser keeps it.

#include <optional>
#include <string>
#include <vector>

#include "model/file_metadata.h"
#include "model/group_key.h"
#include "model/shell_namespace.h"
#include "platform/item_id_list.h"

namespace varnelo {

struct FileEntry {
    std::optional<GroupKey> group;
    std::wstring displayName;  // empty until name() was asked first
    ItemIdList pidl;           // may be empty
    FileMetaData* metaData = nullptr;

    FileEntry() = default;
    explicit FileEntry(DesktopFileInfo& info) : group(info.group), pidl(info.pidl), metaData(&info) {}
    explicit FileEntry(SystemFileInfo& info) : group(info.group), pidl(info.pidl), metaData(&info) {}
    FileEntry(const FileEntry&) = default;
    FileEntry& operator=(const FileEntry&) = default;
    FileEntry(FileEntry&& other) noexcept;  // the source keeps neither list nor metadata
    FileEntry& operator=(FileEntry&& other) noexcept;

    // Asked of the shell once and kept. Empty, and asked again the next time, when the shell has no name.
    const std::wstring& name(const ShellNamespace& shell);

    // Asked of the shell every time; empty for a virtual item.
    std::wstring path(const ShellNamespace& shell) const;
};

// What an organiser hands to a view, and the folder that the entries lie in (empty when unknown).
struct EntryList {
    std::vector<FileEntry> entries;
    ItemIdList folder;
};

}  // namespace varnelo
