#pragma once

// The records that ReadDirectoryChangesW writes (FILE_NOTIFY_INFORMATION), as values.

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace varnelo {

struct FolderChange {
    enum class Kind : std::uint32_t {  // the FILE_ACTION_ values
        Added = 1,
        Removed = 2,
        Modified = 3,
        RenamedOldName = 4,
        RenamedNewName = 5,
    };

    Kind kind = Kind::Added;
    std::wstring name;  // inside the watched folder

    bool operator==(const FolderChange&) const = default;
};

// Takes what a watcher saw, on the watcher's thread.
class FolderChangeSink {
public:
    // A file is looked at only this long after it appeared, so that one that comes and goes at once is never
    // shown. The watcher waits before it hands on changes with an Added among them.
    static constexpr std::uint32_t kSettleMilliseconds = 100;

    // What one read gave, in order.
    virtual void onFolderChanges(std::span<const FolderChange> changes) = 0;

    // Changes were lost; the folder must be looked at as it is.
    virtual void onFolderOverflow() = 0;

protected:
    ~FolderChangeSink() = default;
};

// The chain of records in `bytes`, in order. Records of a kind not named above are left out. A record that
// does not lie inside `bytes` ends the chain; what stood before it is returned.
std::vector<FolderChange> decodeFolderChanges(std::span<const std::uint8_t> bytes);

}  // namespace varnelo
