#include "model/file_entry.h"

#include <gtest/gtest.h>

#include <limits>

#include "support/scripted_shell.h"

namespace varnelo {
namespace {

TEST(FileEntryTest, TheNameIsAskedOnceAndKept) {
    ScriptedShell shell;
    shell.putVirtual(L"Computer");
    FileEntry entry;
    entry.pidl = ScriptedShell::virtualList(L"Computer");
    EXPECT_EQ(entry.name(shell), L"Computer");
    shell.removeVirtual(L"Computer");
    EXPECT_EQ(entry.name(shell), L"Computer");
}

TEST(FileEntryTest, ANameThatCannotBeReadIsEmptyAndAskedForAgain) {
    ScriptedShell shell;
    FileEntry entry;
    entry.pidl = ScriptedShell::virtualList(L"Computer");
    EXPECT_EQ(entry.name(shell), L"");
    EXPECT_EQ(entry.displayName, L"");
    shell.putVirtual(L"Computer");
    EXPECT_EQ(entry.name(shell), L"Computer");
}

TEST(FileEntryTest, WithoutAListThereIsNeitherNameNorPath) {
    ScriptedShell shell;
    FileEntry entry;
    EXPECT_EQ(entry.name(shell), L"");
    EXPECT_EQ(entry.path(shell), L"");
}

TEST(FileEntryTest, ThePathOfAVirtualItemIsEmpty) {
    ScriptedShell shell;
    shell.putVirtual(L"Computer");
    FileEntry entry;
    entry.pidl = ScriptedShell::virtualList(L"Computer");
    EXPECT_EQ(entry.path(shell), L"");
    entry.pidl = ScriptedShell::list(L"a.txt");
    EXPECT_EQ(entry.path(shell), L"X:\\desk\\a.txt");
}

TEST(FileEntryTest, AnEntryTakesGroupListAndObjectFromItsInfo) {
    DesktopFileInfo info;
    info.group = GroupKey{GroupCategory::Special, SpecialGroup::Older};
    info.pidl = ScriptedShell::list(L"a.txt");
    const FileEntry entry(info);
    EXPECT_EQ(entry.group, info.group);
    EXPECT_EQ(entry.pidl, info.pidl);
    EXPECT_EQ(entry.metaData, &info);
    EXPECT_EQ(entry.displayName, L"");

    SystemFileInfo item;
    item.pidl = ScriptedShell::virtualList(L"Sound");
    const FileEntry systemEntry(item);
    EXPECT_EQ(systemEntry.metaData, &item);
    EXPECT_EQ(systemEntry.pidl, item.pidl);
    EXPECT_TRUE(item.enabled);
}

TEST(FileEntryTest, ACopyOwnsItsListAndAMoveLeavesNothing) {
    DesktopFileInfo info;
    info.pidl = ScriptedShell::list(L"a.txt");
    FileEntry entry(info);
    const FileEntry copy = entry;
    const FileEntry moved = std::move(entry);
    EXPECT_TRUE(entry.pidl.empty());
    EXPECT_EQ(entry.metaData, nullptr);
    EXPECT_EQ(moved.pidl, copy.pidl);
    EXPECT_EQ(moved.metaData, &info);

    FileEntry assigned;
    FileEntry source = copy;
    assigned = std::move(source);
    EXPECT_TRUE(source.pidl.empty());
    EXPECT_EQ(source.metaData, nullptr);
    EXPECT_EQ(assigned.pidl, copy.pidl);
}

TEST(FileMetaDataTest, AFreshObjectHasNoPlaceAndNothingThatUninstallsIt) {
    const DesktopFileInfo info;
    EXPECT_EQ(info.timestamp, 0);
    EXPECT_EQ(info.slot, -1);
    EXPECT_EQ(info.slotTime, 0);
    EXPECT_EQ(info.uninstallPath(), L"");
}

TEST(FileMetaDataTest, AViewReachesTheConcreteTypeThroughTheBase) {
    SearchFileInfo found;
    FileMetaData* const base = &found;
    EXPECT_EQ(dynamic_cast<SearchFileInfo*>(base), &found);
    EXPECT_EQ(dynamic_cast<OverviewFileInfo*>(base), nullptr);
}

TEST(FileMetaDataTest, ATimeBefore1970IsZero) {
    constexpr std::uint64_t kEpoch = 116444736000000000;
    EXPECT_EQ(unixFromFileTime(0), 0);
    EXPECT_EQ(unixFromFileTime(kEpoch - 1), 0);
    EXPECT_EQ(unixFromFileTime(kEpoch), 0);
    EXPECT_EQ(unixFromFileTime(kEpoch + 9999999), 0);
    EXPECT_EQ(unixFromFileTime(kEpoch + 10000000), 1);
    EXPECT_EQ(unixFromFileTime(fileTimeOf(kNoon)), kNoon);
    EXPECT_EQ(unixFromFileTime(std::numeric_limits<std::uint64_t>::max()), 1833029933770);
}

}  // namespace
}  // namespace varnelo
