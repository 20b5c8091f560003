// DesktopOrganizer on a real desktop: the shell, files, links, streams, and other processes.

#include "model/desktop_organizer.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <map>

#include "model/desktop_watcher_win.h"
#include "platform/text.h"
#include "support/real_desktop_win.h"

namespace varnelo {
namespace {

constexpr std::uint64_t kTicksPerDay = 864000000000;

class RealDesktopOrganizerTest : public RealDesktopTest {
protected:
    using Action = DesktopOrganizer::Action;

    RealDesktopOrganizerTest() : organizer(services(desktopFolder)) { follow(organizer); }

    DesktopOrganizer::Dependencies services(const std::wstring& folder) {
        return {shell,
                probe,
                systemClock(),
                folder,
                L"",
                L"",
                work.path() + L"\\desktop.cache",
                [this] { ++wakes; }};
    }
    void follow(DesktopOrganizer& followed) {
        followed.addListener([this](const FileEntry& entry, Action action) {
            const auto same = [&entry](const FileEntry& known) { return known.metaData == entry.metaData; };
            const auto known = std::find_if(shown.begin(), shown.end(), same);
            if (action == Action::Added) return shown.push_back(entry);
            ASSERT_NE(known, shown.end());
            if (action == Action::Removed) return void(shown.erase(known));
            *known = entry;
        });
    }
    void rebuild() { shown = organizer.rebuild().entries; }

    // The shown files of the test, in order.
    std::vector<std::wstring> names() const {
        std::vector<std::wstring> result;
        for (const FileEntry& entry : shown) {
            const auto& info = *dynamic_cast<DesktopFileInfo*>(entry.metaData);
            if (info.fileName.starts_with(L"00 ")) result.push_back(info.fileName);
        }
        std::sort(result.begin(), result.end());
        return result;
    }
    DesktopFileInfo& info(const std::wstring& name) const {
        for (const FileEntry& entry : shown) {
            auto& found = *dynamic_cast<DesktopFileInfo*>(entry.metaData);
            if (found.fileName == name) return found;
        }
        throw std::runtime_error("not shown");
    }
    std::wstring groupOf(const std::wstring& name) const {
        for (const FileEntry& entry : shown) {
            if (dynamic_cast<DesktopFileInfo*>(entry.metaData)->fileName != name) continue;
            return entry.group ? groupKeyName(*entry.group) : L"none";
        }
        return L"not shown";
    }
    std::vector<std::wstring> filesOnDisk() const {
        std::vector<std::wstring> result;
        for (const std::wstring& name : namesIn(desktopFolder)) {
            if (name.starts_with(L"00 ")) result.push_back(name);
        }
        return result;
    }
    void agedFile(const std::wstring& name, std::uint64_t days) {
        writeFile(pathOf(name));
        setWriteTime(pathOf(name), systemClock().fileTime() - days * kTicksPerDay);
    }

    // As the frame does it: flush when the watcher says so, then look.
    ::testing::AssertionResult frameComesTo(const std::function<bool()>& question) {
        return becomesTrue([this, &question] {
            if (organizer.pendingChanged()) organizer.flushPending();
            return question();
        });
    }
    ::testing::AssertionResult frameShowsTheDisk() {
        return frameComesTo([this] { return names() == filesOnDisk(); });
    }
    std::wstring quoted(const std::wstring& name) const { return L" \"" + pathOf(name) + L"\""; }

    TemporaryFolder work{L"organizer"};
    std::atomic<int> wakes{0};
    std::vector<FileEntry> shown;
    DesktopOrganizer organizer;
};

TEST_F(RealDesktopOrganizerTest, EveryItemStandsThereOnceInItsGroup) {
    writeFile(work.path() + L"\\program.exe");
    writeFile(work.path() + L"\\Letter to Ada.odt");
    setWriteTime(work.path() + L"\\Letter to Ada.odt", systemClock().fileTime() - 60 * kTicksPerDay);
    agedFile(L"00 quark.txt", 0);
    agedFile(L"00 muon.dat", 20);
    agedFile(L"00 \u65E5\u672C\u8A9E \u00FC.pdf", 50);
    agedFile(L"00 \U0001F600.bmp", 500);
    agedFile(L"00 " + std::wstring(193, L'n') + L".log", 500);
    writeFile(pathOf(L"00 bundle.zip"));
    makeLink(pathOf(L"00 Editor.lnk"), work.path() + L"\\program.exe");
    makeLink(pathOf(L"00 Ada.lnk"), work.path() + L"\\Letter to Ada.odt");
    makeLink(pathOf(L"00 Workplace.lnk"), work.path());
    makeLink(pathOf(L"00 Dangling.lnk"), work.path() + L"\\gone.txt");
    writeFile(pathOf(L"00 News.url"), "[InternetShortcut]\r\nURL=https://news.example/\r\n");
    ASSERT_TRUE(CreateDirectoryW(pathOf(L"00 album").c_str(), nullptr));
    agedFile(L"00 IMG_0001.jpg", 3);
    agedFile(L"00 IMG_0002.jpg", 40);
    rebuild();

    std::vector<std::wstring> expected = filesOnDisk();
    std::erase(expected, L"00 Dangling.lnk");
    EXPECT_EQ(names(), expected);
    EXPECT_EQ(groupOf(L"00 quark.txt"), L"Special-Last 7 Days");
    EXPECT_EQ(groupOf(L"00 muon.dat"), L"Special-Last 30 Days");
    EXPECT_EQ(groupOf(L"00 \u65E5\u672C\u8A9E \u00FC.pdf"), L"Special-Last 90 Days");
    EXPECT_EQ(groupOf(L"00 \U0001F600.bmp"), L"Special-Older");
    EXPECT_EQ(groupOf(L"00 bundle.zip"), L"Special-Archives");
    EXPECT_EQ(groupOf(L"00 Editor.lnk"), L"Special-Software");
    EXPECT_EQ(groupOf(L"00 IMG_0001.jpg"), L"Files-IMG");
    EXPECT_EQ(groupOf(L"00 IMG_0002.jpg"), L"Files-IMG");

    EXPECT_EQ(info(L"00 Ada.lnk").extension, L"odt");
    EXPECT_EQ(info(L"00 Ada.lnk").parentFolder, work.path());
    EXPECT_TRUE(info(L"00 Workplace.lnk").isDirectory);
    EXPECT_EQ(info(L"00 Workplace.lnk").fileSize, 0u);
    EXPECT_EQ(info(L"00 Workplace.lnk").extension, L"lnk");
    EXPECT_EQ(info(L"00 News.url").targetPath, L"https://news.example/");
    EXPECT_TRUE(info(L"00 album").isDirectory);
}

TEST_F(RealDesktopOrganizerTest, PlacesComeBackThroughTheCacheFile) {
    writeFile(pathOf(L"00 quark.txt"));
    writeFile(pathOf(L"00 muon.dat"));
    rebuild();
    info(L"00 muon.dat").slot = 7;
    info(L"00 muon.dat").slotTime = 1234567;
    ASSERT_TRUE(organizer.saveCache());
    rebuild();
    EXPECT_EQ(info(L"00 muon.dat").slot, 7);
    EXPECT_EQ(info(L"00 muon.dat").slotTime, 1234567);
    EXPECT_EQ(info(L"00 quark.txt").slot, -1);
}

TEST_F(RealDesktopOrganizerTest, ChangesOfAnotherProcessAppearWithoutTheShell) {
    DesktopWatcher watcher(organizer, desktopFolder);
    ASSERT_TRUE(watcher.start());
    rebuild();
    anotherProcess(L"create" + quoted(L"00 new \u65E5.txt"));
    EXPECT_TRUE(frameShowsTheDisk());
    EXPECT_EQ(names().size(), 1u);
    EXPECT_FALSE(info(L"00 new \u65E5.txt").pidl.empty());

    anotherProcess(L"rename" + quoted(L"00 new \u65E5.txt") + quoted(L"00 other.txt"));
    EXPECT_TRUE(frameComesTo([this] { return names() == std::vector<std::wstring>{L"00 other.txt"}; }));

    setWriteTime(pathOf(L"00 other.txt"), systemClock().fileTime() - 50 * kTicksPerDay);
    EXPECT_TRUE(frameComesTo([this] { return groupOf(L"00 other.txt") == L"Special-Last 90 Days"; }));
    anotherProcess(L"write" + quoted(L"00 other.txt"));
    EXPECT_TRUE(frameComesTo([this] { return groupOf(L"00 other.txt") == L"Special-Last 7 Days"; }));

    anotherProcess(L"folder" + quoted(L"00 folder"));
    EXPECT_TRUE(frameShowsTheDisk());
    EXPECT_EQ(names().size(), 2u);
    anotherProcess(L"delete" + quoted(L"00 other.txt"));
    EXPECT_TRUE(frameComesTo([this] { return names() == std::vector<std::wstring>{L"00 folder"}; }));
    EXPECT_GT(wakes, 0);
}

TEST_F(RealDesktopOrganizerTest, AReplacedFileStandsThereOnce) {
    writeFile(pathOf(L"00 plan.txt"), "old");
    DesktopWatcher watcher(organizer, desktopFolder);
    ASSERT_TRUE(watcher.start());
    rebuild();
    writeFile(pathOf(L"00 plan.tmp"), "new");
    EXPECT_TRUE(frameShowsTheDisk());
    anotherProcess(L"rename" + quoted(L"00 plan.tmp") + quoted(L"00 plan.txt"));
    EXPECT_TRUE(frameComesTo([this] { return names() == std::vector<std::wstring>{L"00 plan.txt"}; }));
}

TEST_F(RealDesktopOrganizerTest, FiveHundredFilesAtOnceAllAppearOnceAndGoAgain) {
    DesktopWatcher watcher(organizer, desktopFolder);
    ASSERT_TRUE(watcher.start());
    rebuild();
    anotherProcess(L"many \"" + desktopFolder + L"\" \"00 burst \" 500");
    EXPECT_TRUE(frameShowsTheDisk());
    EXPECT_EQ(names().size(), 500u);
    for (int i = 0; i < 500; ++i) DeleteFileW(pathOf(L"00 burst " + std::to_wstring(i) + L".txt").c_str());
    EXPECT_TRUE(frameComesTo([this] { return names().empty(); }));
}

// VARNELO_STREAMS_DIR names a folder on an NTFS volume with streams.
TEST_F(RealDesktopOrganizerTest, ADownloadIsFoundOutByARealStream) {
    const wchar_t* const streams = _wgetenv(L"VARNELO_STREAMS_DIR");
    ASSERT_TRUE(streams && *streams) << "VARNELO_STREAMS_DIR must name a folder on a volume with streams";
    std::wstring folder = streams;
    while (folder.ends_with(L'\\')) folder.pop_back();  // of a drive's root
    const std::wstring path = folder + L"\\00 paper.zip";
    DeleteFileW(path.c_str());
    writeFile(path);
    DesktopOrganizer there(services(folder));
    follow(there);
    const FolderChange isAdded[] = {{FolderChange::Kind::Added, L"00 paper.zip"}};
    there.onFolderChanges(isAdded);
    there.flushPending();
    EXPECT_EQ(groupOf(L"00 paper.zip"), L"Special-Archives");

    writeFile(path + L":Zone.Identifier", "[ZoneTransfer]\r\nZoneId=3\r\n");
    const auto names = namesIn(folder + L"\\");
    EXPECT_EQ(std::count_if(names.begin(), names.end(),
                            [](const std::wstring& name) { return name.find(L"Zone") != name.npos; }),
              0)
        << "the stream is a file of its own here: this volume has no streams";
    const FolderChange isModified[] = {{FolderChange::Kind::Modified, L"00 paper.zip"}};
    there.onFolderChanges(isModified);
    there.flushPending();
    EXPECT_EQ(groupOf(L"00 paper.zip"), L"Special-Downloads");
    DeleteFileW(path.c_str());
    shown.clear();
}

}  // namespace
}  // namespace varnelo
