#include "model/desktop_watcher_win.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <span>
#include <utility>
#include <vector>

#include "app/crash_guard.h"
#include "platform/com_apartment.h"

namespace varnelo {
namespace {

constexpr DWORD kBufferBytes = 8192;
constexpr DWORD kChangesOfInterest =
    FILE_NOTIFY_CHANGE_FILE_NAME | FILE_NOTIFY_CHANGE_DIR_NAME | FILE_NOTIFY_CHANGE_LAST_WRITE;

// A folder that is gone fails every read at once, and is looked for this often.
constexpr DWORD kRetryMilliseconds = 1000;

FileHandle openFolder(const std::wstring& folder) {
    return FileHandle(CreateFileW(folder.c_str(), FILE_LIST_DIRECTORY,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OVERLAPPED, nullptr));
}

}  // namespace

// A read under way. The system writes into it until it is done, so its end waits for that.
class DesktopWatcher::PendingRead {
public:
    enum class State { Failed, Overflow, Changes };

    explicit PendingRead(HANDLE watchedDirectory) : directory(watchedDirectory) {
        done.reset(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    }
    ~PendingRead() { cancel(); }
    PendingRead(const PendingRead&) = delete;
    PendingRead& operator=(const PendingRead&) = delete;

    HANDLE finished() const { return done.get(); }

    void start() {
        ResetEvent(done.get());
        overlapped = {};
        overlapped.hEvent = done.get();
        running = ReadDirectoryChangesW(directory, buffer.data(), kBufferBytes, FALSE, kChangesOfInterest,
                                        nullptr, &overlapped, nullptr) != FALSE;
        error = running ? ERROR_SUCCESS : GetLastError();
        if (!running) SetEvent(done.get());
    }

    // After finished() was signalled.
    State take(std::vector<FolderChange>& changes) {
        DWORD length = 0;
        if (std::exchange(running, false)) {
            error =
                GetOverlappedResult(directory, &overlapped, &length, TRUE) ? ERROR_SUCCESS : GetLastError();
        }
        // More changes than fit are told by no bytes at all, or by this error.
        if (error == ERROR_NOTIFY_ENUM_DIR || (error == ERROR_SUCCESS && length == 0)) return State::Overflow;
        if (error != ERROR_SUCCESS) return State::Failed;
        const auto* bytes = reinterpret_cast<const std::uint8_t*>(buffer.data());
        changes = decodeFolderChanges({bytes, std::min(length, kBufferBytes)});
        return State::Changes;
    }

private:
    void cancel() {
        if (!running) return;
        CancelIoEx(directory, &overlapped);
        DWORD length = 0;
        GetOverlappedResult(directory, &overlapped, &length, TRUE);
    }

    const HANDLE directory;
    EventHandle done;
    OVERLAPPED overlapped = {};
    std::array<DWORD, kBufferBytes / sizeof(DWORD)> buffer = {};  // records begin at multiples of a DWORD
    bool running = false;
    DWORD error = ERROR_SUCCESS;
};

DesktopWatcher::DesktopWatcher(FolderChangeSink& changeSink, std::wstring watchedFolder)
    : sink(changeSink), folder(std::move(watchedFolder)) {}

DesktopWatcher::~DesktopWatcher() { stop(); }

bool DesktopWatcher::start() {
    directory = openFolder(folder);
    if (!directory) return false;
    stopRequested.reset(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    watching.reset(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    if (!stopRequested || !watching) return false;
    thread = std::thread([this] { run(); });
    WaitForSingleObject(watching.get(), INFINITE);
    return true;
}

void DesktopWatcher::stop() {
    if (!thread.joinable()) return;
    SetEvent(stopRequested.get());
    thread.join();
    directory.reset();
}

// True when the stop was requested within that time.
bool DesktopWatcher::waitFor(DWORD milliseconds) const {
    return WaitForSingleObject(stopRequested.get(), milliseconds) == WAIT_OBJECT_0;
}

// Each time the folder had to be opened anew, what happened meanwhile is unknown.
void DesktopWatcher::run() {
    installThreadCrashGuard();
    const ComApartment apartment(ComApartment::Kind::Single);
    for (bool missedSome = false;; missedSome = true) {
        PendingRead read(directory.get());
        read.start();
        SetEvent(watching.get());
        if (missedSome) sink.onFolderOverflow();
        for (;;) {
            const HANDLE events[] = {stopRequested.get(), read.finished()};
            if (WaitForMultipleObjects(2, events, FALSE, INFINITE) != WAIT_OBJECT_0 + 1) return;
            std::vector<FolderChange> changes;
            const PendingRead::State state = read.take(changes);
            if (state == PendingRead::State::Failed) break;
            // The next read runs while this one's changes are worked on, so that nothing falls between.
            read.start();
            const bool overflow = state == PendingRead::State::Overflow;
            const auto isAdded = [](const FolderChange& change) {
                return change.kind == FolderChange::Kind::Added;
            };
            const bool young = overflow || std::any_of(changes.begin(), changes.end(), isAdded);
            if (young && waitFor(FolderChangeSink::kSettleMilliseconds)) return;
            if (overflow) {
                sink.onFolderOverflow();
            } else {
                sink.onFolderChanges(changes);
            }
        }
        if (!reopen()) return;
    }
}

// Waits until the folder can be opened again; false when the stop was requested.
bool DesktopWatcher::reopen() {
    directory.reset();
    for (;;) {
        if (waitFor(kRetryMilliseconds)) return false;
        directory = openFolder(folder);
        if (directory) return true;
    }
}

}  // namespace varnelo
