// The shell and the watcher tell of the same changes, each in order but late, in any mixture.

#include <gtest/gtest.h>

#include <atomic>
#include <deque>
#include <iterator>
#include <random>
#include <thread>

#include "support/organizer_fixture.h"

namespace varnelo {
namespace {

using Event = DesktopOrganizer::ShellEvent;

struct ShellNote {
    Event event;
    std::wstring first;
    std::wstring second;
};

class InterleavingTest : public OrganizerTest {
protected:
    // Changes the desktop in one of all ways that are possible, and notes what both sources will tell of it.
    void changeSomething() {
        const std::wstring a = anyName();
        const std::wstring b = anyName();
        const bool exists = desktop.has(a);
        switch (random() % 4) {
            case 0:
                if (exists) return;
                desktop.put(a, written());
                shellNotes.push_back({Event::Create, a, L""});
                folderNotes.push_back(added(a));
                if (random() % 2 == 0) folderNotes.push_back(modified(a));
                return;
            case 1:
                if (!exists) return;
                desktop.remove(a);
                shellNotes.push_back({Event::Delete, a, L""});
                folderNotes.push_back(removed(a));
                return;
            case 2:
                if (!exists || a == b) return;
                if (desktop.has(b)) {
                    shellNotes.push_back({Event::Delete, b, L""});
                    folderNotes.push_back(removed(b));
                }
                desktop.rename(a, b);
                shellNotes.push_back({Event::RenameItem, a, b});
                folderNotes.push_back(renamedFrom(a));
                folderNotes.push_back(renamedTo(b));
                return;
            case 3:
                if (!exists) return;
                desktop.file(a) = written();
                shellNotes.push_back({Event::UpdateItem, a, L""});
                folderNotes.push_back(modified(a));
                return;
        }
    }

    std::wstring anyName() {
        static const wchar_t* const kNames[] = {L"IMG_1.jpg",      L"IMG_2.jpg", L"plan.txt",
                                                L"plan final.txt", L"pack.zip",  L"folder"};
        return kNames[random() % std::size(kNames)];
    }
    ScriptedFile written() {
        ScriptedFile file;
        file.times.lastWrite = fileTimeOf(kNoon - static_cast<std::int64_t>(random() % 100) * 86400);
        return file;
    }

    void tellOneShellNote() {
        if (shellNotes.empty()) return;
        const ShellNote note = shellNotes.front();
        shellNotes.pop_front();
        shellTells(note.event, note.first, note.second);
    }
    void tellSomeFolderNotes() {
        if (folderNotes.empty()) return;
        const std::size_t count = 1 + random() % folderNotes.size();
        std::vector<FolderChange> batch(folderNotes.begin(),
                                        folderNotes.begin() + static_cast<std::ptrdiff_t>(count));
        folderNotes.erase(folderNotes.begin(), folderNotes.begin() + static_cast<std::ptrdiff_t>(count));
        organizer().onFolderChanges(batch);
        if (random() % 2 == 0 && organizer().pendingChanged()) organizer().flushPending();
    }

    // Changes and notes in any order until all is told.
    void playAStory(unsigned seed, bool shellTellsToo) {
        random.seed(seed);
        for (int step = 0; step < 40; ++step) {
            switch (random() % 3) {
                case 0:
                    changeSomething();
                    if (!shellTellsToo) shellNotes.clear();
                    break;
                case 1:
                    tellOneShellNote();
                    break;
                case 2:
                    tellSomeFolderNotes();
                    break;
            }
        }
        while (!shellNotes.empty() || !folderNotes.empty()) {
            random() % 2 == 0 ? tellOneShellNote() : tellSomeFolderNotes();
        }
    }

    // What a view that followed every change shows, against what a rebuild finds.
    void expectTheListOfARebuild(unsigned seed) {
        organizer().flushPending();
        const auto followed = names();
        rebuild();
        ASSERT_EQ(followed, names()) << "seed " << seed;
    }

    void expectAllStoriesToEndWell(bool shellTellsToo) {
        for (unsigned seed = 0; seed < 300; ++seed) {
            playAStory(seed, shellTellsToo);
            expectTheListOfARebuild(seed);
            if (HasFailure()) return;
        }
    }

    std::mt19937 random;
    std::deque<ShellNote> shellNotes;
    std::deque<FolderChange> folderNotes;
};

TEST_F(InterleavingTest, BothSourcesInAnyMixtureEndInTheListOfARebuild) { expectAllStoriesToEndWell(true); }

TEST_F(InterleavingTest, TheWatcherAloneEndsInTheListOfARebuild) { expectAllStoriesToEndWell(false); }

// A late shell alone can lose an item: of one that was made and renamed it tells a name that is gone, and
// then the new name of an item that it never added. The watcher finds such an item.
TEST_F(InterleavingTest, ThePromptShellAloneEndsInTheListOfARebuild) {
    for (unsigned seed = 0; seed < 300; ++seed) {
        random.seed(seed);
        for (int step = 0; step < 30; ++step) {
            changeSomething();
            folderNotes.clear();
            // A replaced file's deletion and the rename over it are two notes of one change.
            while (!shellNotes.empty()) tellOneShellNote();
        }
        expectTheListOfARebuild(seed);
        if (HasFailure()) return;
    }
}

// After a batch of the watcher the groups are those of a rebuild too, not only the names.
TEST_F(InterleavingTest, TheGroupsThatTheWatcherLeavesAreThoseOfARebuild) {
    for (unsigned seed = 0; seed < 300; ++seed) {
        random.seed(seed);
        for (int step = 0; step < 30; ++step) {
            changeSomething();
            shellNotes.clear();
            while (!folderNotes.empty()) tellSomeFolderNotes();
        }
        organizer().flushPending();
        std::vector<std::wstring> followed;
        for (const std::wstring& name : names()) followed.push_back(name + L": " + groupOf(name));
        rebuild();
        std::vector<std::wstring> rebuilt;
        for (const std::wstring& name : names()) rebuilt.push_back(name + L": " + groupOf(name));
        ASSERT_EQ(followed, rebuilt) << "seed " << seed;
    }
}

TEST_F(InterleavingTest, AWatcherThreadAndAViewThreadWorkAtTheSameTime) {
    for (int i = 0; i < 20; ++i) desktop.put(L"fixed " + std::to_wstring(i) + L".txt");
    rebuild();
    std::atomic<bool> done{false};
    std::thread watcher([this, &done] {
        std::mt19937 dice(3);
        for (int round = 0; round < 200; ++round) {
            const std::wstring name = L"moving " + std::to_wstring(dice() % 8) + L".txt";
            if (dice() % 3 != 0) {
                const bool isNew = !desktop.has(name);
                desktop.put(name);
                const FolderChange changes[] = {isNew ? added(name) : modified(name), modified(name)};
                organizer().onFolderChanges(changes);
            } else if (desktop.has(name)) {
                desktop.remove(name);
                const FolderChange changes[] = {removed(name)};
                organizer().onFolderChanges(changes);
            }
            if (round % 40 == 39) organizer().onFolderOverflow();
        }
        done.store(true);
    });
    for (int frame = 0; !done.load(); ++frame) {
        if (organizer().pendingChanged()) organizer().flushPending();
        for (FileEntry& entry : shown) {  // what a pane does while it lays out
            entry.metaData->slot = static_cast<std::int32_t>(entry.metaData->timestamp % 7);
        }
        if (frame % 50 == 49) shellTells(Event::UpdateDirectory, L"fixed 1.txt");
        if (frame % 80 == 79) organizer().saveCache();
        if (frame % 400 == 399) rebuild();
        std::this_thread::yield();
    }
    watcher.join();
    expectTheListOfARebuild(0);
}

}  // namespace
}  // namespace varnelo
