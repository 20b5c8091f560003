#pragma once

// A DesktopOrganizer over a scripted desktop, and the words to tell a story about it.

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "model/desktop_organizer.h"
#include "support/scripted_shell.h"

namespace varnelo {

class OrganizerTest : public ::testing::Test {
protected:
    using Action = DesktopOrganizer::Action;
    using Told = std::vector<std::pair<Action, std::wstring>>;

    OrganizerTest();
    ~OrganizerTest() override;

    DesktopOrganizer& organizer() { return *organizerObject; }
    void restart();  // a new organiser over the same desktop and cache

    // rebuild(), with the list kept in `shown`.
    void rebuild();

    // The list that a view has after the changes told so far, by path or name, each with its group.
    std::vector<std::wstring> names() const;
    std::wstring groupOf(const std::wstring& name) const;
    DesktopFileInfo& info(const std::wstring& name) const;
    bool shows(const std::wstring& name) const;

    // A shell notification about a file of the desktop.
    void shellTells(DesktopOrganizer::ShellEvent event, const std::wstring& name,
                    const std::wstring& newName = L"");

    // One batch of the watcher, and the frame after it.
    void watcherTells(std::vector<FolderChange> changes);

    // Everything that listeners were told since the last call, in order.
    Told told() { return std::exchange(toldSinceLast, {}); }

    ScriptedShell desktop;
    ScriptedClock clock;
    std::filesystem::path ownFolder;  // of this test, real
    std::filesystem::path cacheFile;
    std::vector<FileEntry> shown;  // a view's list
    int wakes = 0;

private:
    void onChange(const FileEntry& entry, Action action);

    std::unique_ptr<DesktopOrganizer> organizerObject;
    Told toldSinceLast;
};

inline FolderChange added(std::wstring name) { return {FolderChange::Kind::Added, std::move(name)}; }
inline FolderChange removed(std::wstring name) { return {FolderChange::Kind::Removed, std::move(name)}; }
inline FolderChange modified(std::wstring name) { return {FolderChange::Kind::Modified, std::move(name)}; }
inline FolderChange renamedFrom(std::wstring name) {
    return {FolderChange::Kind::RenamedOldName, std::move(name)};
}
inline FolderChange renamedTo(std::wstring name) {
    return {FolderChange::Kind::RenamedNewName, std::move(name)};
}

}  // namespace varnelo
