#include "support/organizer_fixture.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <stdexcept>

#include "platform/text.h"

namespace varnelo {
namespace {

std::filesystem::path newFolder() {
    static std::atomic<int> count{0};
    const auto ticks = std::chrono::steady_clock::now().time_since_epoch().count();
    return std::filesystem::temp_directory_path() /
           ("varnelo_organizer_" + std::to_string(ticks) + "_" + std::to_string(++count));
}

const DesktopFileInfo& infoOf(const FileEntry& entry) {
    return *dynamic_cast<const DesktopFileInfo*>(entry.metaData);
}

std::wstring textOf(const std::optional<GroupKey>& group) { return group ? groupKeyName(*group) : L"none"; }

}  // namespace

OrganizerTest::OrganizerTest() : ownFolder(newFolder()), cacheFile(ownFolder / "desktop.cache") {
    std::filesystem::create_directories(ownFolder);
    restart();
}

OrganizerTest::~OrganizerTest() {
    std::error_code ignored;
    std::filesystem::remove_all(ownFolder, ignored);
}

void OrganizerTest::restart() {
    shown.clear();
    organizerObject = std::make_unique<DesktopOrganizer>(DesktopOrganizer::Dependencies{
        desktop, desktop, clock, ScriptedShell::kDesktop, ScriptedShell::kPublicDesktop,
        ScriptedShell::pathOf(L"me"), cacheFile.wstring(), [this] { ++wakes; }});
    organizerObject->addListener([this](const FileEntry& entry, Action action) { onChange(entry, action); });
}

void OrganizerTest::rebuild() { shown = organizer().rebuild().entries; }

// What a pane does with a change; a second Added of the same item would stand there twice.
void OrganizerTest::onChange(const FileEntry& entry, Action action) {
    toldSinceLast.emplace_back(action, infoOf(entry).fileName);
    const auto same = [&entry](const FileEntry& known) { return known.metaData == entry.metaData; };
    const auto known = std::find_if(shown.begin(), shown.end(), same);
    if (action == Action::Added) {
        shown.push_back(entry);
    } else if (known == shown.end()) {
        ADD_FAILURE() << "a change of an item that was never added";
    } else if (action == Action::Removed) {
        shown.erase(known);
    } else {
        *known = entry;
    }
}

std::vector<std::wstring> OrganizerTest::names() const {
    std::vector<std::wstring> result;
    for (const FileEntry& entry : shown) result.push_back(infoOf(entry).fileName);
    std::sort(result.begin(), result.end());
    return result;
}

std::wstring OrganizerTest::groupOf(const std::wstring& name) const {
    for (const FileEntry& entry : shown) {
        if (infoOf(entry).fileName == name) return textOf(entry.group);
    }
    return L"not shown";
}

DesktopFileInfo& OrganizerTest::info(const std::wstring& name) const {
    for (const FileEntry& entry : shown) {
        if (infoOf(entry).fileName == name) return *dynamic_cast<DesktopFileInfo*>(entry.metaData);
    }
    throw std::logic_error("the test asks for an item that is not shown");
}

bool OrganizerTest::shows(const std::wstring& name) const { return groupOf(name) != L"not shown"; }

void OrganizerTest::shellTells(DesktopOrganizer::ShellEvent event, const std::wstring& name,
                               const std::wstring& newName) {
    organizer().onShellChange(event, ScriptedShell::list(name),
                              newName.empty() ? ItemIdList() : ScriptedShell::list(newName));
}

void OrganizerTest::watcherTells(std::vector<FolderChange> changes) {
    organizer().onFolderChanges(changes);
    if (organizer().pendingChanged()) organizer().flushPending();
}

}  // namespace varnelo
