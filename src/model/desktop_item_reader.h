#pragma once

// How a shell item or a path becomes a DesktopFileInfo: what a link or an Internet shortcut points at, the
// attributes, times and size of what is behind it, its words. Only reads, so every thread may use it; the
// thread needs COM, as the shell does.

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "model/file_metadata.h"
#include "model/file_probe.h"
#include "model/shell_namespace.h"

namespace varnelo {

class DesktopItemReader {
public:
    // A folder that is not known is empty and matches nothing.
    struct Folders {
        std::wstring desktop;
        std::wstring publicDesktop;
        std::wstring profile;
    };

    // The referenced objects outlive the reader.
    DesktopItemReader(const ShellNamespace& shellNamespace, const FileProbe& fileProbe, Folders knownFolders);

    // Fills `info` from a file-system path. False when the item cannot be shown: it is gone, it cannot be
    // opened, or it is a link whose target is. `info` is then partly filled.
    // Everything is read from the target of a link, but `fullPath` and `fileName` stay those of the link.
    bool fillFromPath(const std::wstring& path, DesktopFileInfo& info) const;

    // The item of the desktop behind an absolute list; null when it lies elsewhere or cannot be shown.
    // `desktopRoot` may be empty: then every virtual item is taken.
    std::unique_ptr<DesktopFileInfo> read(const ItemIdList& item, const ItemIdList& desktopRoot) const;

    // The item behind a path, without a list.
    std::unique_ptr<DesktopFileInfo> read(const std::wstring& path) const;

private:
    std::wstring resolveLink(const std::wstring& path, DesktopFileInfo& info) const;

    const ShellNamespace& shell;
    const FileProbe& probe;
    const Folders folders;
};

// The text before the last separator of a path; nothing without one.
std::optional<std::wstring_view> folderOf(std::wstring_view path);

}  // namespace varnelo
