#include "model/desktop_organizer.h"

#include <gtest/gtest.h>

#include <fstream>

#include "model/entry_cache.h"
#include "platform/file_bytes.h"
#include "support/organizer_fixture.h"

namespace varnelo {
namespace {

constexpr std::int64_t kDay = 86400;

class DesktopOrganizerTest : public OrganizerTest {
protected:
    static ScriptedFile writtenAt(std::int64_t unixSeconds) {
        ScriptedFile file;
        file.times = {fileTimeOf(unixSeconds), fileTimeOf(unixSeconds), fileTimeOf(unixSeconds)};
        return file;
    }
    static ScriptedFile aged(std::int64_t seconds) { return writtenAt(kNoon - seconds); }
};

TEST_F(DesktopOrganizerTest, AllItemsAreListedInTheShellsOrder) {
    desktop.putVirtual(L"Recycle Bin");
    desktop.put(L"b.txt");
    desktop.put(L"a.txt");
    desktop.put(L"X:\\public\\shared.pdf");
    desktop.put(L"X:\\elsewhere\\hidden.txt");
    const EntryList list = organizer().rebuild();
    std::vector<std::wstring> names;
    for (const FileEntry& entry : list.entries) {
        names.push_back(dynamic_cast<DesktopFileInfo*>(entry.metaData)->fileName);
    }
    EXPECT_EQ(names, (std::vector<std::wstring>{L"Recycle Bin", L"a.txt", L"b.txt", L"shared.pdf"}));
    EXPECT_EQ(list.folder, ScriptedShell::root());
    EXPECT_EQ(list.entries[1].pidl, ScriptedShell::list(L"a.txt"));
}

TEST_F(DesktopOrganizerTest, ADesktopThatCannotBeEnumeratedIsEmpty) {
    desktop.put(L"a.txt");
    desktop.enumerates = false;
    const EntryList list = organizer().rebuild();
    EXPECT_TRUE(list.entries.empty());
    EXPECT_TRUE(list.folder.empty());
    desktop.enumerates = true;
    EXPECT_EQ(organizer().rebuild().folder, ScriptedShell::root());
    desktop.enumerates = false;
    EXPECT_TRUE(organizer().rebuild().folder.empty()) << "nothing is left of the time before";
}

TEST_F(DesktopOrganizerTest, TheSameNameOnBothDesktopsGivesTwoItems) {
    desktop.put(L"same.txt");
    desktop.put(L"X:\\public\\same.txt");
    rebuild();
    EXPECT_EQ(names(), (std::vector<std::wstring>{L"same.txt", L"same.txt"}));
}

TEST_F(DesktopOrganizerTest, SpecialItemsOfOneNameAreOne) {
    desktop.putVirtual(L"Network");
    desktop.putVirtual(L"NETWORK");
    rebuild();
    EXPECT_EQ(names(), (std::vector<std::wstring>{L"Network"}));
}

TEST_F(DesktopOrganizerTest, ASpecialItemIsNeverComparedByPath) {
    desktop.put(L"me");        // the profile folder: special, with a path
    desktop.putVirtual(L"X");  // its name is no path of the desktop
    desktop.putVirtual(L"me");
    rebuild();
    EXPECT_EQ(names(), (std::vector<std::wstring>{L"X", L"me"}));
}

struct AgeCase {
    std::int64_t ageSeconds;
    const wchar_t* group;
};

TEST_F(DesktopOrganizerTest, TheAgeGroupsReachADayFurtherThanTheirNames) {
    const AgeCase cases[] = {
        {0, L"Special-Last 7 Days"},
        {8 * kDay - 1, L"Special-Last 7 Days"},
        {8 * kDay, L"Special-Last 30 Days"},
        {31 * kDay - 1, L"Special-Last 30 Days"},
        {31 * kDay, L"Special-Last 90 Days"},
        {91 * kDay - 1, L"Special-Last 90 Days"},
        {91 * kDay, L"Special-Older"},
        {20000 * kDay, L"Special-Older"},
        {-1, L"Special-Older"},
        {-400 * kDay, L"Special-Older"},
    };
    for (const AgeCase& row : cases) {
        desktop.put(L"report.txt", aged(row.ageSeconds));
        rebuild();
        EXPECT_EQ(groupOf(L"report.txt"), row.group) << row.ageSeconds;
    }
}

TEST_F(DesktopOrganizerTest, TheAgeCountsInWholeSeconds) {
    ScriptedFile file = aged(8 * kDay);
    file.times.lastWrite += kTicksPerSecond - 1;  // still the same second
    desktop.put(L"report.txt", file);
    rebuild();
    EXPECT_EQ(groupOf(L"report.txt"), L"Special-Last 30 Days");
}

TEST_F(DesktopOrganizerTest, AVirtualItemIsASystemItem) {
    desktop.putVirtual(L"Recycle Bin");
    rebuild();
    EXPECT_EQ(groupOf(L"Recycle Bin"), L"Special-System");
}

TEST_F(DesktopOrganizerTest, AShortcutToAProgramIsSoftwareWhateverItsAge) {
    desktop.put(L"X:\\programs\\editor.exe", aged(4000 * kDay));
    ScriptedFile link;
    link.linkTarget = L"X:\\programs\\editor.exe";
    desktop.put(L"Editor.lnk", link);
    rebuild();
    EXPECT_EQ(groupOf(L"Editor.lnk"), L"Special-Software");
}

TEST_F(DesktopOrganizerTest, ADownloadedArchiveIsADownload) {
    desktop.put(L"pack.zip");
    ScriptedFile file;
    file.downloaded = true;
    desktop.put(L"setup.7z", file);
    rebuild();
    EXPECT_EQ(groupOf(L"pack.zip"), L"Special-Archives");
    EXPECT_EQ(groupOf(L"setup.7z"), L"Special-Downloads");
}

TEST_F(DesktopOrganizerTest, SoftwareComesBeforeDownloads) {
    ScriptedFile file;
    file.downloaded = true;
    desktop.put(L"tool.exe", file);
    rebuild();
    EXPECT_EQ(groupOf(L"tool.exe"), L"Special-Software");
}

TEST_F(DesktopOrganizerTest, AllArchiveExtensionsAreArchives) {
    // Names far apart, so that none of them are a family.
    const std::wstring names[] = {L"apple.zip", L"brick.RAR", L"cloud.7z", L"delta.tar", L"eagle.gz"};
    for (const std::wstring& name : names) desktop.put(name);
    desktop.put(L"fence.cab", aged(kDay));
    rebuild();
    for (const std::wstring& name : names) EXPECT_EQ(groupOf(name), L"Special-Archives") << name.c_str();
    EXPECT_EQ(groupOf(L"fence.cab"), L"Special-Last 7 Days");
}

TEST_F(DesktopOrganizerTest, AFamilyComesBeforeEveryFixedGroup) {
    ScriptedFile file;
    file.downloaded = true;
    desktop.put(L"IMG_0001.zip", file);
    desktop.put(L"IMG_0002.jpg");
    rebuild();
    EXPECT_EQ(groupOf(L"IMG_0001.zip"), L"Files-IMG");
    EXPECT_EQ(groupOf(L"IMG_0002.jpg"), L"Files-IMG");
}

TEST_F(DesktopOrganizerTest, ItemsThatMerelyLieOnTheDesktopAreNoFamily) {
    desktop.put(L"IMG_0001.jpg");
    desktop.put(L"IMG_0002.jpg");
    desktop.put(L"zebra.txt", aged(40 * kDay));
    rebuild();
    EXPECT_EQ(groupOf(L"zebra.txt"), L"Special-Last 90 Days");
}

TEST_F(DesktopOrganizerTest, AnEmptyDesktopSavesAHeaderOnly) {
    rebuild();
    ASSERT_TRUE(organizer().saveCache());
    const auto bytes = readWholeFile(cacheFile.wstring());
    EXPECT_EQ(bytes, (std::vector<std::uint8_t>{1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST_F(DesktopOrganizerTest, RememberedPlacesComeBackAfterARestart) {
    desktop.putVirtual(L"Recycle Bin");
    desktop.put(L"a.txt");
    rebuild();
    for (const wchar_t* name : {L"a.txt", L"Recycle Bin"}) {
        info(name).slot = name[0] == L'a' ? 4 : 2;
        info(name).slotTime = kNoon - 5;
        info(name).timestamp = kNoon - 7;
    }
    ASSERT_TRUE(organizer().saveCache());

    restart();
    rebuild();
    EXPECT_EQ(info(L"a.txt").slot, 4);
    EXPECT_EQ(info(L"a.txt").slotTime, kNoon - 5);
    EXPECT_EQ(info(L"a.txt").timestamp, kNoon - 7) << "the last use, not the last write";
    EXPECT_EQ(info(L"Recycle Bin").slot, 2);
}

TEST_F(DesktopOrganizerTest, ACacheOfAnotherVersionIsIgnored) {
    desktop.put(L"a.txt");
    rebuild();
    info(L"a.txt").slot = 4;
    ASSERT_TRUE(organizer().saveCache());
    auto bytes = readWholeFile(cacheFile.wstring()).value();
    bytes[0] = 2;
    std::ofstream(cacheFile, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));

    restart();
    rebuild();
    EXPECT_EQ(info(L"a.txt").slot, -1);
    EXPECT_EQ(info(L"a.txt").timestamp, kNoon);
}

TEST_F(DesktopOrganizerTest, ADamagedCacheLeavesTheListWhole) {
    desktop.put(L"a.txt");
    std::ofstream(cacheFile, std::ios::binary)
        << std::string("\x01\0\0\0\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\x09", 13);
    rebuild();
    EXPECT_EQ(names(), (std::vector<std::wstring>{L"a.txt"}));
    EXPECT_EQ(info(L"a.txt").slot, -1);
}

TEST_F(DesktopOrganizerTest, ARebuildDropsPendingChangesSinceItsListHasThem) {
    desktop.put(L"a.txt");
    rebuild();
    desktop.put(L"b.txt");
    organizer().onFileAdded(ScriptedShell::pathOf(L"b.txt"), L"b.txt");
    EXPECT_TRUE(organizer().pendingChanged());
    rebuild();
    EXPECT_FALSE(organizer().pendingChanged());
    organizer().flushPending();
    EXPECT_TRUE(told().empty());
    EXPECT_EQ(names(), (std::vector<std::wstring>{L"a.txt", L"b.txt"}));
}

TEST_F(DesktopOrganizerTest, AViewMayReadTheOldListUntilItHasTheNewOne) {
    desktop.put(L"a.txt");
    desktop.put(L"b.txt");
    rebuild();
    desktop.remove(L"b.txt");
    shellTells(DesktopOrganizer::Delete, L"b.txt");
    const std::vector<FileEntry> old = shown;
    rebuild();
    // Read after the rebuild: an address sanitizer sees it if the object were freed.
    EXPECT_EQ(dynamic_cast<DesktopFileInfo*>(old[0].metaData)->fileName, L"a.txt");
}

TEST_F(DesktopOrganizerTest, TheFirstListIsReadAndTheNextOnesAreNot) {
    desktop.put(L"a.txt");
    shown = organizer().list().entries;
    EXPECT_EQ(names(), (std::vector<std::wstring>{L"a.txt"}));
    desktop.put(L"b.txt");  // nobody tells
    const EntryList again = organizer().list();
    shown = again.entries;
    EXPECT_EQ(names(), (std::vector<std::wstring>{L"a.txt"}));
    EXPECT_EQ(again.folder, ScriptedShell::root());
    shellTells(DesktopOrganizer::Create, L"b.txt");
    shown = organizer().list().entries;
    EXPECT_EQ(names(), (std::vector<std::wstring>{L"a.txt", L"b.txt"}));
}

TEST_F(DesktopOrganizerTest, AListHasWhatWasPending) {
    desktop.put(L"a.txt");
    rebuild();
    desktop.put(L"b.txt");
    organizer().onFolderChanges(std::vector<FolderChange>{{FolderChange::Kind::Added, L"b.txt"}});
    EXPECT_TRUE(organizer().pendingChanged());
    shown = organizer().list().entries;
    EXPECT_EQ(names(), (std::vector<std::wstring>{L"a.txt", L"b.txt"}));
    EXPECT_FALSE(groupOf(L"b.txt").empty());
    EXPECT_FALSE(organizer().pendingChanged());
    organizer().flushPending();
    EXPECT_TRUE(told().empty());
}

// Each read comes after the list: an address sanitizer sees it if the object were freed.
TEST_F(DesktopOrganizerTest, AListKeepsWhatItShowsAndForOneListMoreWhatItDoesNot) {
    desktop.put(L"a.txt");
    desktop.put(L"b.txt");
    rebuild();
    const std::vector<FileEntry> old = shown;
    desktop.remove(L"b.txt");
    shellTells(DesktopOrganizer::Delete, L"b.txt");
    shown = organizer().list().entries;
    EXPECT_EQ(dynamic_cast<DesktopFileInfo*>(old[1].metaData)->fileName, L"b.txt");
    shown = organizer().list().entries;
    EXPECT_EQ(old[0].metaData, shown[0].metaData);
    EXPECT_EQ(dynamic_cast<DesktopFileInfo*>(old[0].metaData)->fileName, L"a.txt");
}

TEST_F(DesktopOrganizerTest, ARebuildForgetsThatAFileWasDownloaded) {
    ScriptedFile file;
    file.downloaded = true;
    desktop.put(L"pack.zip", file);
    rebuild();
    desktop.file(L"pack.zip").downloaded = false;
    shellTells(DesktopOrganizer::UpdateItem, L"pack.zip");
    EXPECT_EQ(groupOf(L"pack.zip"), L"Special-Downloads") << "the mark is only ever set";
    rebuild();
    EXPECT_EQ(groupOf(L"pack.zip"), L"Special-Archives");
}

TEST_F(DesktopOrganizerTest, EveryListenerIsToldEveryChangeInOrder) {
    std::vector<std::wstring> heard;
    for (const wchar_t* who : {L"1", L"2"}) {
        organizer().addListener([&heard, who](const FileEntry& entry, Action) {
            heard.push_back(who + dynamic_cast<DesktopFileInfo*>(entry.metaData)->fileName);
        });
    }
    rebuild();
    desktop.put(L"a");
    desktop.put(L"b");
    organizer().onFileAdded(ScriptedShell::pathOf(L"a"), L"a");
    organizer().onFileAdded(ScriptedShell::pathOf(L"b"), L"b");
    EXPECT_TRUE(heard.empty());
    organizer().flushPending();
    EXPECT_EQ(heard, (std::vector<std::wstring>{L"1a", L"2a", L"1b", L"2b"}));
    organizer().flushPending();
    EXPECT_EQ(heard.size(), 4u) << "told once";
}

TEST_F(DesktopOrganizerTest, AListenerMayCallTheOrganizer) {
    rebuild();
    organizer().addListener([this](const FileEntry&, Action) { organizer().saveCache(); });
    desktop.put(L"a.txt");
    shellTells(DesktopOrganizer::Create, L"a.txt");
    EXPECT_TRUE(std::filesystem::exists(cacheFile));
}

TEST_F(DesktopOrganizerTest, WithoutAKnownFolderNoFileIsShown) {
    desktop.put(L"a.txt");
    desktop.put(L"X:\\public\\b.txt");
    desktop.putVirtual(L"Recycle Bin");
    DesktopOrganizer lost({desktop, desktop, clock, L"", L"", L"", cacheFile.wstring(), {}});
    const auto entries = lost.rebuild().entries;
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_TRUE(dynamic_cast<DesktopFileInfo*>(entries[0].metaData)->isSpecial);
}

}  // namespace
}  // namespace varnelo
