// What DesktopOrganizer makes of the shell's notifications.

#include <gtest/gtest.h>

#include "support/organizer_fixture.h"

namespace varnelo {
namespace {

using Event = DesktopOrganizer::ShellEvent;
using Names = std::vector<std::wstring>;

class DesktopOrganizerShellTest : public OrganizerTest {};

TEST_F(DesktopOrganizerShellTest, ACreatedFileIsAddedOnce) {
    rebuild();
    desktop.put(L"a.txt");
    shellTells(Event::Create, L"a.txt");
    EXPECT_EQ(told(), (Told{{Action::Added, L"a.txt"}}));
    EXPECT_EQ(groupOf(L"a.txt"), L"Special-Last 7 Days");
    shellTells(Event::Create, L"A.TXT");
    EXPECT_TRUE(told().empty());
}

TEST_F(DesktopOrganizerShellTest, AMadeDirectoryIsAdded) {
    rebuild();
    ScriptedFile folder;
    folder.isDirectory = true;
    desktop.put(L"New folder", folder);
    shellTells(Event::MakeDirectory, L"New folder");
    EXPECT_TRUE(info(L"New folder").isDirectory);
}

TEST_F(DesktopOrganizerShellTest, AFileCreatedElsewhereIsNotAdded) {
    rebuild();
    desktop.put(L"X:\\work\\a.txt");
    shellTells(Event::Create, L"X:\\work\\a.txt");
    EXPECT_TRUE(told().empty());
}

TEST_F(DesktopOrganizerShellTest, ADeletedItemIsRemoved) {
    for (const Event event : {Event::Delete, Event::RemoveDirectory}) {
        desktop.put(L"a.txt");
        desktop.put(L"b.txt");
        rebuild();
        desktop.remove(L"a.txt");
        organizer().onShellChange(event, ScriptedShell::list(L"a.txt", 9), ItemIdList());
        EXPECT_EQ(told(), (Told{{Action::Removed, L"a.txt"}}));
        EXPECT_EQ(names(), Names{L"b.txt"});
    }
}

TEST_F(DesktopOrganizerShellTest, AnObjectThatWasRemovedCanStillBeRead) {
    desktop.put(L"a.txt");
    rebuild();
    DesktopFileInfo& removedInfo = info(L"a.txt");
    desktop.remove(L"a.txt");
    shellTells(Event::Delete, L"a.txt");
    EXPECT_EQ(removedInfo.fileName, L"a.txt");
}

TEST_F(DesktopOrganizerShellTest, ALateDeletionReadsTheItemThatHasTheNameNow) {
    desktop.put(L"a.txt");
    rebuild();
    desktop.file(L"a.txt").sizeBytes = 5;  // deleted and made anew
    shellTells(Event::Delete, L"a.txt");
    EXPECT_EQ(told(), (Told{{Action::Removed, L"a.txt"}, {Action::Added, L"a.txt"}}));
    EXPECT_EQ(info(L"a.txt").fileSize, 5u);
}

TEST_F(DesktopOrganizerShellTest, ARenamedItemKeepsItsObjectAndItsPlace) {
    desktop.put(L"a.txt");
    rebuild();
    DesktopFileInfo& item = info(L"a.txt");
    item.slot = 3;
    item.slotTime = kNoon;
    desktop.rename(L"a.txt", L"b.zip");
    shellTells(Event::RenameItem, L"a.txt", L"b.zip");
    EXPECT_EQ(told(), (Told{{Action::Renamed, L"b.zip"}, {Action::Updated, L"b.zip"}}));
    EXPECT_EQ(&info(L"b.zip"), &item);
    EXPECT_EQ(item.slot, 3);
    EXPECT_EQ(item.slotTime, kNoon);
    EXPECT_EQ(item.pidl, ScriptedShell::list(L"b.zip"));
    EXPECT_EQ(shown[0].pidl, ScriptedShell::list(L"b.zip"));
    EXPECT_EQ(groupOf(L"b.zip"), L"Special-Archives");
}

TEST_F(DesktopOrganizerShellTest, ARenamedItemStaysWhateverTheCaseOfItsFolder) {
    desktop.put(L"a.txt");
    rebuild();
    desktop.rename(L"a.txt", L"X:\\DESK\\b.txt");
    shellTells(Event::RenameItem, L"a.txt", L"X:\\DESK\\b.txt");
    EXPECT_EQ(told().front(), (std::pair{Action::Renamed, std::wstring(L"b.txt")}));
}

TEST_F(DesktopOrganizerShellTest, ARenamedItemThatCannotBeReadIsStillTold) {
    desktop.put(L"a.txt");
    rebuild();
    desktop.remove(L"a.txt");
    shellTells(Event::RenameItem, L"a.txt", L"b.txt");  // and b.txt is gone as well
    EXPECT_EQ(told(), (Told{{Action::Renamed, L"b.txt"}}));
}

TEST_F(DesktopOrganizerShellTest, AnItemMovedAwayIsRemoved) {
    desktop.put(L"a.txt");
    rebuild();
    desktop.rename(L"a.txt", L"X:\\work\\a.txt");
    shellTells(Event::RenameItem, L"a.txt", L"X:\\work\\a.txt");
    EXPECT_EQ(told(), (Told{{Action::Removed, L"a.txt"}}));
    EXPECT_TRUE(shown.empty());
}

TEST_F(DesktopOrganizerShellTest, AMoveToThePublicDesktopCountsAsLeaving) {
    desktop.put(L"a.txt");
    rebuild();
    desktop.rename(L"a.txt", L"X:\\public\\a.txt");
    shellTells(Event::RenameItem, L"a.txt", L"X:\\public\\a.txt");
    EXPECT_EQ(told(), (Told{{Action::Removed, L"a.txt"}}));
}

TEST_F(DesktopOrganizerShellTest, ARenameOfAnUnknownItemDoesNothing) {
    desktop.put(L"a.txt");
    rebuild();
    desktop.put(L"c.txt");
    shellTells(Event::RenameItem, L"b.txt", L"c.txt");
    EXPECT_TRUE(told().empty());
}

TEST_F(DesktopOrganizerShellTest, ARenameOverAnotherItemLeavesOne) {
    desktop.put(L"a.txt");
    desktop.put(L"b.txt");
    rebuild();
    desktop.rename(L"a.txt", L"b.txt");
    shellTells(Event::RenameItem, L"a.txt", L"b.txt");
    EXPECT_EQ(names(), Names{L"b.txt"});
}

TEST_F(DesktopOrganizerShellTest, ALateRenameKeepsTheItemThatTookTheOldName) {
    desktop.put(L"a.txt");
    desktop.put(L"c.txt");
    rebuild();
    desktop.rename(L"a.txt", L"b.txt");
    desktop.rename(L"c.txt", L"a.txt");
    shellTells(Event::RenameItem, L"a.txt", L"b.txt");
    EXPECT_TRUE(shows(L"b.txt"));
    EXPECT_TRUE(shows(L"a.txt"));
    shellTells(Event::RenameItem, L"c.txt", L"a.txt");
    EXPECT_EQ(names(), (Names{L"a.txt", L"b.txt"}));
}

TEST_F(DesktopOrganizerShellTest, AVirtualItemCanBeRenamed) {
    desktop.putVirtual(L"Recycle Bin");
    rebuild();
    desktop.removeVirtual(L"Recycle Bin");
    desktop.putVirtual(L"Old things");
    organizer().onShellChange(Event::RenameItem, ScriptedShell::virtualList(L"Recycle Bin"),
                              ScriptedShell::virtualList(L"Old things"));
    EXPECT_EQ(told(), (Told{{Action::Renamed, L"Old things"}}));
    EXPECT_EQ(info(L"Old things").fullPath, L"Old things");
}

TEST_F(DesktopOrganizerShellTest, AVirtualItemRenamedIntoAnotherFolderLeaves) {
    desktop.putVirtual(L"Recycle Bin");
    rebuild();
    organizer().onShellChange(Event::RenameItem, ScriptedShell::virtualList(L"Recycle Bin"),
                              ScriptedShell::virtualList(L"Panel/Bin"));
    EXPECT_EQ(told(), (Told{{Action::Removed, L"Recycle Bin"}}));
}

TEST_F(DesktopOrganizerShellTest, ARenamedVirtualItemWithoutANameIsStillTold) {
    desktop.putVirtual(L"Recycle Bin");
    rebuild();
    organizer().onShellChange(Event::RenameItem, ScriptedShell::virtualList(L"Recycle Bin"),
                              ScriptedShell::virtualList(L"Nameless"));
    EXPECT_EQ(told(), (Told{{Action::Renamed, L"Recycle Bin"}}));
}

TEST_F(DesktopOrganizerShellTest, AnUpdatedItemIsReadAnew) {
    desktop.put(L"a.txt");
    rebuild();
    desktop.file(L"a.txt").sizeBytes = 4711;
    shellTells(Event::UpdateItem, L"a.txt");
    EXPECT_EQ(told(), (Told{{Action::Updated, L"a.txt"}}));
    EXPECT_EQ(info(L"a.txt").fileSize, 4711u);
}

TEST_F(DesktopOrganizerShellTest, AnUpdatedItemThatCannotBeReadIsStillTold) {
    desktop.put(L"a.txt");
    rebuild();
    desktop.file(L"a.txt").readable = false;
    shellTells(Event::UpdateItem, L"a.txt");
    EXPECT_EQ(told(), (Told{{Action::Updated, L"a.txt"}}));
}

TEST_F(DesktopOrganizerShellTest, AnUpdateOfAnUnknownItemAddsIt) {
    rebuild();
    desktop.put(L"a.txt");
    shellTells(Event::UpdateItem, L"a.txt");
    EXPECT_EQ(told(), (Told{{Action::Added, L"a.txt"}}));
}

TEST_F(DesktopOrganizerShellTest, AnUpdatedVirtualItemIsToldAsItIs) {
    desktop.putVirtual(L"Recycle Bin");
    rebuild();
    organizer().onShellChange(Event::UpdateItem, ScriptedShell::virtualList(L"Recycle Bin"), ItemIdList());
    EXPECT_EQ(told(), (Told{{Action::Updated, L"Recycle Bin"}}));
}

TEST_F(DesktopOrganizerShellTest, ANewImageUpdatesEveryItem) {
    desktop.put(L"a.txt");
    desktop.put(L"b.txt");
    rebuild();
    organizer().onShellChange(Event::UpdateImage, ItemIdList(), ItemIdList());
    EXPECT_EQ(told(), (Told{{Action::Updated, L"a.txt"}, {Action::Updated, L"b.txt"}}));
}

TEST_F(DesktopOrganizerShellTest, AFolderUpdateFindsWhatCameAndWent) {
    desktop.putVirtual(L"Recycle Bin");
    desktop.putVirtual(L"Network");
    desktop.put(L"stays.txt");
    desktop.put(L"goes.txt");
    rebuild();
    desktop.remove(L"goes.txt");
    desktop.put(L"comes.txt");
    desktop.removeVirtual(L"Network");
    organizer().onShellChange(Event::UpdateDirectory, ItemIdList(), ItemIdList());
    EXPECT_EQ(
        told(),
        (Told{{Action::Added, L"comes.txt"}, {Action::Removed, L"Network"}, {Action::Removed, L"goes.txt"}}));
    EXPECT_EQ(names(), (Names{L"Recycle Bin", L"comes.txt", L"stays.txt"}));
}

TEST_F(DesktopOrganizerShellTest, AnyOtherEventGroupsAnewAndFlushes) {
    desktop.put(L"a.txt");
    rebuild();
    clock.now += 60 * 86400;
    organizer().onShellChange(0x20000, ItemIdList(), ItemIdList());
    EXPECT_EQ(told(), (Told{{Action::Updated, L"a.txt"}}));
    EXPECT_EQ(groupOf(L"a.txt"), L"Special-Last 90 Days");
    desktop.put(L"b.txt");
    organizer().onFileAdded(ScriptedShell::pathOf(L"b.txt"), L"b.txt");
    organizer().onShellChange(0x20000, ItemIdList(), ItemIdList());
    EXPECT_EQ(told().front(), (std::pair{Action::Added, std::wstring(L"b.txt")}));
}

TEST_F(DesktopOrganizerShellTest, ANewFileMovesItsRelativeIntoTheirFamily) {
    desktop.put(L"IMG_0001.jpg");
    rebuild();
    EXPECT_EQ(groupOf(L"IMG_0001.jpg"), L"Special-Last 7 Days");
    desktop.put(L"IMG_0002.jpg");
    shellTells(Event::Create, L"IMG_0002.jpg");
    EXPECT_EQ(told(), (Told{{Action::Added, L"IMG_0002.jpg"}, {Action::Updated, L"IMG_0001.jpg"}}));
    EXPECT_EQ(groupOf(L"IMG_0001.jpg"), L"Files-IMG");
    EXPECT_EQ(groupOf(L"IMG_0002.jpg"), L"Files-IMG");

    desktop.remove(L"IMG_0001.jpg");
    shellTells(Event::Delete, L"IMG_0001.jpg");
    EXPECT_EQ(groupOf(L"IMG_0002.jpg"), L"Special-Last 7 Days");
}

TEST_F(DesktopOrganizerShellTest, AFileThatGotItsStreamBecomesADownload) {
    desktop.put(L"report.pdf");
    rebuild();
    desktop.file(L"report.pdf").downloaded = true;
    shellTells(Event::UpdateItem, L"report.pdf");
    EXPECT_EQ(told(), (Told{{Action::Updated, L"report.pdf"}, {Action::Updated, L"report.pdf"}}));
    EXPECT_EQ(groupOf(L"report.pdf"), L"Special-Downloads");
}

TEST_F(DesktopOrganizerShellTest, AnEventWithoutItemsDoesNoHarm) {
    desktop.put(L"a.txt");
    rebuild();
    for (const std::uint32_t event : {1u, 2u, 4u, 8u, 16u, 8192u}) {
        organizer().onShellChange(event, ItemIdList(), ItemIdList());
    }
    EXPECT_EQ(names(), Names{L"a.txt"});
    EXPECT_TRUE(told().empty());
}

}  // namespace
}  // namespace varnelo
