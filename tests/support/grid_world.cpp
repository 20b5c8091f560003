#include "support/grid_world.h"

#include "platform/text.h"

namespace varnelo {

bool WordShell::equal(const ItemIdList& a, const ItemIdList& b) const {
    return !a.empty() && !b.empty() && equalIgnoringCase(nameOf(a), nameOf(b));
}

void RecordedActions::recycle(const std::vector<FileEntry>& entries) {
    std::vector<ItemIdList> items;
    for (const FileEntry& entry : entries) items.push_back(entry.pidl);
    record(L"recycle" + words(items));
}

void RecordedActions::record(std::wstring what) {
    done.push_back(std::move(what));
    if (meanwhile) meanwhile();
}

std::wstring RecordedActions::words(const std::vector<ItemIdList>& items) {
    std::wstring result;
    for (const ItemIdList& item : items) result += L" " + nameOf(item);
    return result;
}

std::shared_ptr<IconTexture> someTexture() {
    const auto place = std::make_shared<int>(0);
    return {place, reinterpret_cast<IconTexture*>(place.get())};
}

FileEntry GridWorld::item(const std::wstring& name, std::optional<GroupKey> group, std::int64_t timestamp) {
    DesktopFileInfo& info = infos.emplace_back();
    info.pidl = idOf(name);
    info.group = std::move(group);
    info.timestamp = timestamp;
    return FileEntry(info);
}

}  // namespace varnelo
