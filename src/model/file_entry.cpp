#include "model/file_entry.h"

#include <utility>

namespace varnelo {

FileEntry::FileEntry(FileEntry&& other) noexcept
    : group(std::move(other.group)),
      displayName(std::move(other.displayName)),
      pidl(std::exchange(other.pidl, ItemIdList())),
      metaData(std::exchange(other.metaData, nullptr)) {}

FileEntry& FileEntry::operator=(FileEntry&& other) noexcept {
    if (this == &other) return *this;
    group = std::move(other.group);
    displayName = std::move(other.displayName);
    pidl = std::exchange(other.pidl, ItemIdList());
    metaData = std::exchange(other.metaData, nullptr);
    return *this;
}

const std::wstring& FileEntry::name(const ShellNamespace& shell) {
    if (displayName.empty() && !pidl.empty()) displayName = shell.displayName(pidl).value_or(std::wstring());
    return displayName;
}

std::wstring FileEntry::path(const ShellNamespace& shell) const {
    if (pidl.empty()) return {};
    return shell.fileSystemPath(pidl).value_or(std::wstring());
}

}  // namespace varnelo
