// What DesktopOrganizer makes of the watcher's changes.

#include <gtest/gtest.h>

#include "support/organizer_fixture.h"

namespace varnelo {
namespace {

using Event = DesktopOrganizer::ShellEvent;
using Names = std::vector<std::wstring>;

class DesktopOrganizerFolderTest : public OrganizerTest {
protected:
    void fileAdded(const std::wstring& name) { organizer().onFileAdded(ScriptedShell::pathOf(name), name); }
    void fileRemoved(const std::wstring& name) { organizer().onFileRemoved(ScriptedShell::pathOf(name)); }
    void fileModified(const std::wstring& name) { organizer().onFileModified(ScriptedShell::pathOf(name)); }
    void write(const std::wstring& name, std::int64_t unixSeconds) {
        desktop.file(name).times.lastWrite = fileTimeOf(unixSeconds);
    }
    static ScriptedFile aged(std::int64_t days) {
        ScriptedFile file;
        file.times.lastWrite = fileTimeOf(kNoon - days * 86400);
        return file;
    }
    // Two photographs, which are a family, and a file that has nothing to do with them.
    void givenAFamilyAndAStranger() {
        desktop.put(L"IMG_0001.jpg");
        desktop.put(L"IMG_0002.jpg");
        desktop.put(L"zebra.txt", aged(40));
        rebuild();
    }
};

TEST_F(DesktopOrganizerFolderTest, AnAddedFileWaitsForTheNextFlush) {
    rebuild();
    desktop.put(L"a.txt");
    fileAdded(L"a.txt");
    EXPECT_TRUE(told().empty());
    EXPECT_TRUE(organizer().pendingChanged());
    organizer().flushPending();
    EXPECT_EQ(told(), (Told{{Action::Added, L"a.txt"}}));
    EXPECT_FALSE(organizer().pendingChanged());
    EXPECT_EQ(info(L"a.txt").pidl, ScriptedShell::list(L"a.txt"));
}

TEST_F(DesktopOrganizerFolderTest, AFileThatTheShellCannotNameIsAddedByItsPath) {
    rebuild();
    desktop.parses = false;
    desktop.put(L"a.txt");
    fileAdded(L"a.txt");
    organizer().flushPending();
    EXPECT_EQ(names(), Names{L"a.txt"});
    EXPECT_TRUE(info(L"a.txt").pidl.empty());
}

TEST_F(DesktopOrganizerFolderTest, AFileAddedByItsPathStandsThereOnce) {
    rebuild();
    desktop.parses = false;
    desktop.put(L"a.txt");
    shellTells(Event::Create, L"a.txt");
    fileAdded(L"a.txt");
    fileAdded(L"a.txt");
    organizer().flushPending();
    EXPECT_EQ(names(), Names{L"a.txt"});
}

TEST_F(DesktopOrganizerFolderTest, ANameOfThePublicDesktopToTheShellStillMeansThePrivateFile) {
    desktop.put(L"X:\\public\\same.txt");
    rebuild();
    desktop.put(L"same.txt");
    fileAdded(L"same.txt");
    organizer().flushPending();
    EXPECT_EQ(names(), (Names{L"same.txt", L"same.txt"}));
}

TEST_F(DesktopOrganizerFolderTest, ARemovedFileIsFoundByItsPathInAnyCase) {
    desktop.put(L"Plan.txt");
    rebuild();
    desktop.remove(L"Plan.txt");
    fileRemoved(L"PLAN.TXT");
    organizer().flushPending();
    EXPECT_EQ(told(), (Told{{Action::Removed, L"Plan.txt"}}));
}

TEST_F(DesktopOrganizerFolderTest, AWrittenFileGetsItsTimesAndItsAge) {
    desktop.put(L"old.txt", aged(40));
    rebuild();
    write(L"old.txt", kNoon - 5);
    desktop.file(L"old.txt").sizeBytes = 999;
    fileModified(L"old.txt");
    EXPECT_EQ(info(L"old.txt").lastWriteTime, fileTimeOf(kNoon - 5));
    EXPECT_EQ(info(L"old.txt").timestamp, kNoon - 40 * 86400) << "views read it without a lock";
    organizer().flushPending();
    EXPECT_EQ(told(), (Told{{Action::Updated, L"old.txt"}}));
    EXPECT_EQ(info(L"old.txt").timestamp, kNoon - 5);
    EXPECT_EQ(groupOf(L"old.txt"), L"Special-Last 7 Days");
}

TEST_F(DesktopOrganizerFolderTest, ASavedTimestampIsThatOfTheLastWrite) {
    desktop.put(L"old.txt", aged(40));
    rebuild();
    write(L"old.txt", kNoon - 5);
    fileModified(L"old.txt");
    ASSERT_TRUE(organizer().saveCache());
    restart();
    rebuild();
    EXPECT_EQ(info(L"old.txt").timestamp, kNoon - 5);
}

TEST_F(DesktopOrganizerFolderTest, AWrittenFileThatCannotBeOpenedIsStillUpdated) {
    desktop.put(L"old.txt", aged(40));
    rebuild();
    desktop.file(L"old.txt").readable = false;
    fileModified(L"old.txt");
    organizer().flushPending();
    EXPECT_EQ(told(), (Told{{Action::Updated, L"old.txt"}}));
    EXPECT_EQ(groupOf(L"old.txt"), L"Special-Last 90 Days");
}

TEST_F(DesktopOrganizerFolderTest, AWrittenFileThatIsUnknownChangesNothing) {
    rebuild();
    desktop.put(L"a.txt");
    fileModified(L"a.txt");
    EXPECT_FALSE(organizer().pendingChanged());
    organizer().flushPending();
    EXPECT_TRUE(told().empty());
}

TEST_F(DesktopOrganizerFolderTest, AnUnknownWrittenFileStillAsksForAFlushOfWhatWaits) {
    rebuild();
    desktop.put(L"a.txt");
    fileAdded(L"a.txt");
    fileModified(L"unknown.txt");
    EXPECT_TRUE(organizer().pendingChanged());
}

TEST_F(DesktopOrganizerFolderTest, AWriteAloneFindsADownloadedFileOut) {
    desktop.put(L"paper.pdf");
    rebuild();
    desktop.file(L"paper.pdf").downloaded = true;
    fileModified(L"paper.pdf");
    organizer().flushPending();
    EXPECT_EQ(groupOf(L"paper.pdf"), L"Special-Downloads");
}

TEST_F(DesktopOrganizerFolderTest, ARebuildForgetsAWriteThatNobodyWasTold) {
    desktop.put(L"old.txt", aged(40));
    rebuild();
    const DesktopFileInfo& retired = info(L"old.txt");
    write(L"old.txt", kNoon);
    fileModified(L"old.txt");
    rebuild();
    organizer().flushPending();
    EXPECT_EQ(retired.timestamp, kNoon - 40 * 86400) << "a view may still read it";
    EXPECT_EQ(info(L"old.txt").timestamp, kNoon);
}

TEST_F(DesktopOrganizerFolderTest, AFileThatIsGoneAgainOnceItWasReadIsNotAdded) {
    rebuild();
    desktop.put(L"a.txt");
    desktop.afterFacts = [this] { desktop.remove(L"a.txt"); };
    fileAdded(L"a.txt");
    organizer().flushPending();
    EXPECT_TRUE(told().empty());
}

TEST_F(DesktopOrganizerFolderTest, AnAdditionAloneLetsTheDesktopBeAFamily) {
    givenAFamilyAndAStranger();
    desktop.put(L"quartz.txt", aged(40));
    fileAdded(L"quartz.txt");
    organizer().flushPending();
    EXPECT_EQ(groupOf(L"quartz.txt"), L"Files-IMG");
    EXPECT_EQ(groupKeyName(info(L"zebra.txt").group.value()), L"Files-IMG");

    // The next notification puts it right, and tells it.
    organizer().onShellChange(0, ItemIdList(), ItemIdList());
    EXPECT_EQ(groupOf(L"quartz.txt"), L"Special-Last 90 Days");
    EXPECT_EQ(groupOf(L"zebra.txt"), L"Special-Last 90 Days");
}

TEST_F(DesktopOrganizerFolderTest, ARemovalAloneLetsTheDesktopBeAFamilyToo) {
    givenAFamilyAndAStranger();
    fileRemoved(L"unknown.txt");
    EXPECT_EQ(groupKeyName(info(L"zebra.txt").group.value()), L"Files-IMG");
}

TEST_F(DesktopOrganizerFolderTest, AWriteExceptsTheDesktopFromFamilies) {
    givenAFamilyAndAStranger();
    fileRemoved(L"unknown.txt");
    fileModified(L"zebra.txt");
    EXPECT_EQ(groupKeyName(info(L"zebra.txt").group.value()), L"Special-Last 90 Days");
}

TEST_F(DesktopOrganizerFolderTest, ABatchLeavesEveryItemInTheGroupOfARebuild) {
    givenAFamilyAndAStranger();
    desktop.put(L"quartz.txt", aged(40));
    watcherTells({added(L"quartz.txt")});
    EXPECT_EQ(told(), (Told{{Action::Added, L"quartz.txt"}}));
    EXPECT_EQ(groupOf(L"quartz.txt"), L"Special-Last 90 Days");
    EXPECT_EQ(groupOf(L"zebra.txt"), L"Special-Last 90 Days");
}

TEST_F(DesktopOrganizerFolderTest, ABatchTellsWhoMovedByItAfterItsOwnChanges) {
    desktop.put(L"IMG_0001.jpg");
    rebuild();
    desktop.put(L"IMG_0002.jpg");
    watcherTells({added(L"IMG_0002.jpg")});
    EXPECT_EQ(told(), (Told{{Action::Added, L"IMG_0002.jpg"}, {Action::Updated, L"IMG_0001.jpg"}}));
    EXPECT_EQ(groupOf(L"IMG_0001.jpg"), L"Files-IMG");
}

TEST_F(DesktopOrganizerFolderTest, ABatchWakesTheViewOnceAndOnlyForAChange) {
    rebuild();
    desktop.put(L"a.txt");
    desktop.put(L"b.txt");
    watcherTells({added(L"a.txt"), added(L"b.txt"), modified(L"a.txt")});
    EXPECT_EQ(wakes, 1);
    watcherTells({removed(L"unknown.txt"), added(L"vanished.txt")});
    EXPECT_EQ(wakes, 1);
    EXPECT_EQ(names(), (Names{L"a.txt", L"b.txt"}));
}

TEST_F(DesktopOrganizerFolderTest, ABatchFindsADownloadedFileOut) {
    rebuild();
    ScriptedFile file;
    file.downloaded = true;
    desktop.put(L"paper.pdf", file);
    watcherTells({added(L"paper.pdf")});
    EXPECT_EQ(groupOf(L"paper.pdf"), L"Special-Downloads");
}

TEST_F(DesktopOrganizerFolderTest, AFileThatCameAndWentLeavesNothing) {
    rebuild();
    watcherTells({added(L"a.tmp"), modified(L"a.tmp"), removed(L"a.tmp")});
    EXPECT_TRUE(told().empty());
    EXPECT_EQ(wakes, 0);
}

TEST_F(DesktopOrganizerFolderTest, ARenameByTheWatcherAloneLosesThePlace) {
    desktop.put(L"a.txt");
    rebuild();
    info(L"a.txt").slot = 5;
    desktop.rename(L"a.txt", L"b.txt");
    watcherTells({renamedFrom(L"a.txt"), renamedTo(L"b.txt")});
    EXPECT_EQ(told(), (Told{{Action::Removed, L"a.txt"}, {Action::Added, L"b.txt"}}));
    EXPECT_EQ(info(L"b.txt").slot, -1);
}

TEST_F(DesktopOrganizerFolderTest, ARenameThatTheShellToldFirstKeepsThePlace) {
    desktop.put(L"a.txt");
    rebuild();
    info(L"a.txt").slot = 5;
    desktop.rename(L"a.txt", L"b.txt");
    shellTells(Event::RenameItem, L"a.txt", L"b.txt");
    told();
    watcherTells({renamedFrom(L"a.txt"), renamedTo(L"B.txt")});
    EXPECT_TRUE(told().empty());
    EXPECT_EQ(info(L"b.txt").slot, 5);
}

TEST_F(DesktopOrganizerFolderTest, AnOldNameThatIsTakenAgainStays) {
    desktop.put(L"a.txt");
    rebuild();
    watcherTells({renamedFrom(L"a.txt")});
    EXPECT_TRUE(told().empty());
    desktop.put(L"b.txt");  // a.txt was renamed to it, and a new a.txt was made
    watcherTells({renamedFrom(L"a.txt"), renamedTo(L"b.txt"), added(L"a.txt")});
    EXPECT_EQ(names(), (Names{L"a.txt", L"b.txt"}));
}

TEST_F(DesktopOrganizerFolderTest, AFileReplacedByARenameStandsThereOnce) {
    desktop.put(L"a.txt");
    desktop.put(L"a.tmp");
    rebuild();
    desktop.rename(L"a.tmp", L"a.txt");
    watcherTells({removed(L"a.txt"), renamedFrom(L"a.tmp"), renamedTo(L"a.txt")});
    EXPECT_EQ(names(), Names{L"a.txt"});
}

TEST_F(DesktopOrganizerFolderTest, AFileThatItsWriterKeptToItselfAppearsWhenItIsDone) {
    rebuild();
    ScriptedFile file;
    file.readable = false;
    desktop.put(L"big.iso", file);
    watcherTells({added(L"big.iso")});
    EXPECT_TRUE(shown.empty());
    desktop.file(L"big.iso").readable = true;
    watcherTells({modified(L"big.iso")});
    EXPECT_EQ(names(), Names{L"big.iso"});
}

TEST_F(DesktopOrganizerFolderTest, LostChangesAreFoundByLookingAtTheDesktop) {
    desktop.putVirtual(L"Recycle Bin");
    desktop.put(L"stays.txt");
    desktop.put(L"goes.txt");
    desktop.put(L"written.txt", aged(40));
    rebuild();
    desktop.remove(L"goes.txt");
    desktop.put(L"comes.txt");
    write(L"written.txt", kNoon);
    organizer().onFolderOverflow();
    EXPECT_EQ(wakes, 1);
    EXPECT_TRUE(organizer().pendingChanged());
    organizer().flushPending();
    EXPECT_EQ(told(), (Told{{Action::Added, L"comes.txt"},
                            {Action::Updated, L"written.txt"},
                            {Action::Removed, L"goes.txt"},
                            {Action::Updated, L"written.txt"}}));
    EXPECT_EQ(names(), (Names{L"Recycle Bin", L"comes.txt", L"stays.txt", L"written.txt"}));
    EXPECT_EQ(groupOf(L"written.txt"), L"Special-Last 7 Days");
}

TEST_F(DesktopOrganizerFolderTest, LostChangesOfADesktopThatVanishedRemoveItsItems) {
    desktop.put(L"a.txt");
    rebuild();
    desktop.remove(L"a.txt");
    desktop.enumerates = false;
    organizer().onFolderOverflow();
    organizer().flushPending();
    EXPECT_TRUE(shown.empty());
}

TEST_F(DesktopOrganizerFolderTest, FiveHundredFilesAtOnceAreGroupedOnce) {
    rebuild();
    std::vector<FolderChange> changes;
    for (int i = 0; i < 500; ++i) {
        const std::wstring name = L"note " + std::to_wstring(i) + L".txt";
        desktop.put(name);
        changes.push_back(added(name));
        changes.push_back(modified(name));
    }
    const int before = desktop.zoneQuestions();
    watcherTells(changes);
    EXPECT_EQ(shown.size(), 500u);
    EXPECT_EQ(groupOf(L"note 77.txt"), L"Files-note");
    EXPECT_EQ(desktop.zoneQuestions() - before, 500) << "each grouping asks every file once";
    EXPECT_EQ(wakes, 1);
}

TEST_F(DesktopOrganizerFolderTest, TheGroupingOfABatchIsNotLeftToTheViewsThread) {
    desktop.put(L"a.txt");
    rebuild();
    desktop.put(L"b.txt");
    const FolderChange changes[] = {added(L"b.txt")};
    organizer().onFolderChanges(changes);
    const int asked = desktop.zoneQuestions();
    organizer().flushPending();
    EXPECT_EQ(desktop.zoneQuestions(), asked);
    EXPECT_EQ(names(), (Names{L"a.txt", L"b.txt"}));
}

TEST_F(DesktopOrganizerFolderTest, AFlushInTheMiddleOfABatchTellsItsItemsWithTheirGroups) {
    rebuild();
    desktop.put(L"a.txt");
    desktop.put(L"b.zip");
    std::wstring groupInTheMiddle;
    int parsed = 0;
    desktop.beforeParse = [this, &parsed, &groupInTheMiddle] {
        if (++parsed != 2) return;
        organizer().flushPending();
        groupInTheMiddle = groupOf(L"a.txt");
    };
    watcherTells({added(L"a.txt"), added(L"b.zip")});
    EXPECT_EQ(groupInTheMiddle, L"Special-Last 7 Days");
    EXPECT_EQ(told(), (Told{{Action::Added, L"a.txt"}, {Action::Added, L"b.zip"}}));
}

}  // namespace
}  // namespace varnelo
