#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <span>
#include <string>
#include <thread>
#include <vector>

#include "index/file_change.h"
#include "index/ntfs_index.h"
#include "index/volume_source.h"

namespace varnelo {

// Where the journal of an indexed volume is read on.
struct VolumeJournal {
    std::wstring volume;           // "C:"
    std::uint8_t volumeIndex = 0;  // place in NTFSIndex::volumes
    std::uint64_t nextUsn = 0;
    std::uint64_t journalId = 0;
};

// Keeps an index current: one thread asks the change journals of all its volumes twice a second and applies
// what they tell. It begins with the present and never scans: what happened while it did not run, or was lost
// when a journal wrapped, stays unknown. A volume whose journal wrapped is not followed any more until the
// next start; one whose journal was made anew is read from that one's beginning. Nothing is logged.
//
// start(), stop() and the destructor wait for the thread, so whoever calls them holds neither the index mutex
// nor a lock that the callback takes. The index and the source outlive the monitor.
class FileChangeMonitor {
public:
    using FileChange = varnelo::FileChange;
    // Called on the monitor's thread, without the index mutex, once for each change in its order. It may ask
    // for the end by stop().
    using Callback = std::function<void(const FileChange&)>;
    // Lets so much time pass, or less.
    using Pause = std::function<void(std::chrono::milliseconds)>;

    static constexpr std::chrono::milliseconds kStep{50};
    // A batch gives the index up between two changes when it has kept it for so long.
    static constexpr std::chrono::milliseconds kLongestHold{8};

    // `pauseOfTests` takes the place of waiting.
    FileChangeMonitor(NTFSIndex& followedIndex, VolumeSource& volumeSource, Pause pauseOfTests = {});
    // As stop(); not on the monitor's own thread.
    ~FileChangeMonitor();
    FileChangeMonitor(const FileChangeMonitor&) = delete;
    FileChangeMonitor& operator=(const FileChangeMonitor&) = delete;

    // Begins at the present ends of the journals; a running thread is stopped before. False, without a
    // thread, when no volume has a journal that can be read, and on the monitor's own thread.
    bool start(Callback callback);
    // Returns when the thread has ended; a batch that it has begun is applied and told as a whole. On that
    // thread it only asks for the end.
    void stop();
    // Asks for the end and returns at once.
    void requestStop();
    bool running() const;

    // start() without the thread, and what the thread does twice a second.
    bool findJournals(Callback callback);
    void runRound();

    // Not while the thread runs.
    std::span<const VolumeJournal> volumeJournals() const { return journals; }
    void setLongestHold(std::chrono::milliseconds longest) { longestHold = longest; }

private:
    bool onOwnThread() const;
    void endThread();
    void run();
    void pauseBetweenRounds();
    void readVolume(VolumeJournal& journal);
    void readChanges(Volume& volume, VolumeJournal& journal);
    void gather(Volume& volume, std::span<const std::uint8_t> answer);
    void complete(Volume& volume, std::uint64_t fullFrn, PendingChange& change);
    void applyBatch(std::uint8_t volumeIndex);

    NTFSIndex& index;
    VolumeSource& source;
    Pause pause;
    std::uint32_t pollIntervalMs = 0;
    std::chrono::milliseconds longestHold = kLongestHold;

    // Of the thread while it runs.
    std::vector<VolumeJournal> journals;
    Callback onChange;
    std::vector<std::uint8_t> buffer;
    std::vector<std::uint8_t> recordBuffer;
    std::vector<PendingChange> pending;
    std::vector<FileChange> applied;

    std::mutex lifecycle;  // held to start or join the thread; never taken on it
    std::thread thread;    // guarded by lifecycle

    mutable std::mutex mutex;
    std::condition_variable stopRequested;
    std::atomic<bool> stopping{false};  // written under mutex
    std::thread::id ownId;              // guarded by mutex; while the thread runs
    bool alive = false;                 // guarded by mutex
};

}  // namespace varnelo
