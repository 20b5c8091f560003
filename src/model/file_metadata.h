#pragma once

// What an organiser knows about an item that it shows. The objects belong to the organiser that made them;
// a view holds a FileEntry that points to one and reaches the concrete type by a dynamic cast.
//
// Strings hold UTF-16 units. A FILETIME is 100-nanosecond ticks since 1601-01-01 UTC, a Unix time seconds
// since 1970-01-01 UTC.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "model/group_key.h"
#include "platform/item_id_list.h"

namespace varnelo {

// Once an object was handed to a view these three fields are read and written on the user-interface thread
// alone, so the views need no lock for them.
struct FileMetaData {
    std::int64_t timestamp = 0;  // Unix; for a file its last write, 0 before 1970
    std::int32_t slot = -1;      // remembered position inside the group, -1 for none
    std::int64_t slotTime = 0;   // Unix; when `slot` was stored, 0 for never

    // What uninstalls the item, empty when nothing does. Only installed programs have one.
    virtual std::wstring uninstallPath() const;

protected:
    // Every owner destroys its objects as what they are, never through the base.
    ~FileMetaData() = default;
};

struct FileTimes {
    std::uint64_t creation = 0;  // FILETIME each
    std::uint64_t lastAccess = 0;
    std::uint64_t lastWrite = 0;

    bool operator==(const FileTimes&) const = default;
};

// One item on the desktop. Guarded by the mutex of DesktopOrganizer, but for the fields of the base.
struct DesktopFileInfo final : FileMetaData {
    ItemIdList pidl;                 // absolute; empty for an item that was added by its path alone
    std::wstring fullPath;           // the display name for a virtual item
    std::wstring fileName;           // behind the last separator, with the extension
    std::wstring extension;          // lower case, no dot; of the target for a resolved .lnk
    std::wstring parentFolder;       // the target's folder for a resolved .lnk
    std::wstring targetPath;         // target of a .lnk or address of a .url
    std::uint64_t creationTime = 0;  // FILETIME each
    std::uint64_t lastAccessTime = 0;
    std::uint64_t lastWriteTime = 0;
    std::vector<std::wstring> tokens;  // lower-cased words of `fileName`
    std::uint64_t fileSize = 0;        // 0 for a directory
    bool isDirectory = false;
    bool hasZoneIdentifier = false;  // downloaded; only ever set
    bool grouped = false;            // the running pass of the organiser has given the item its group
    bool isSpecial = false;          // a virtual item, or the user's profile folder
    std::optional<GroupKey> group;

    FileTimes times() const { return {creationTime, lastAccessTime, lastWriteTime}; }
    void setTimes(const FileTimes& times);  // not `timestamp`
};

// An item of the system tab.
struct SystemFileInfo final : FileMetaData {
    ItemIdList pidl;
    std::wstring displayName;
    bool enabled = true;
    std::optional<GroupKey> group;
};

// An item found in the file index; the overview and the search show the same fields.
struct IndexedFileFields {
    ItemIdList pidl;
    std::wstring fullPath;
    std::uint64_t fileSize = 0;
    std::uint64_t lastWriteTime = 0;  // FILETIME
};
struct OverviewFileInfo final : FileMetaData, IndexedFileFields {};
struct SearchFileInfo final : FileMetaData, IndexedFileFields {};

// Unix seconds of a FILETIME; 0 for a time before 1970.
std::int64_t unixFromFileTime(std::uint64_t fileTime);

}  // namespace varnelo
