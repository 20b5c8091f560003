#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <string>

#include "index/elevated_run.h"
#include "index/file_change_monitor.h"
#include "index/ntfs_index.h"
#include "index/volume_source.h"

namespace varnelo {

// What others do when the index has changed. Called without any lock of the service or the index.
struct IndexHooks {
    // On the monitor's thread, for each change.
    FileChangeMonitor::Callback onFileChange;
    // At the end of the start-up task and of a rebuild, whatever came of them, also after requestStop(): what
    // waits for the index waits no longer, and the query is run again.
    std::function<void()> onIndexReady;
    // After it, at the end of a rebuild: the overview is built again.
    std::function<void()> onRebuilt;
    // In the start-up task, when the cache can be searched although it is not loaded yet.
    std::function<void()> onCacheShown{};
};

// Fills the index at the start, rebuilds it when asked, and follows the changes of the volumes while journals
// can be read. Loads and scans go into an index of the service's own, so that the index others use can be
// searched at any time; it is empty until a task brings the new content over, all at once. While the start-up
// task loads the cache, what is searched is the file itself.
//
// The index's mutex must not be held around any call, nor a lock that a hook takes. What the constructor is
// given outlives the service, and the monitor's end is hooked into the index while the service lives.
class IndexService {
public:
    static constexpr const wchar_t* kFolder = L"Varnelo";
    static constexpr const wchar_t* kFile = L"ntfs.cache";
    static constexpr const wchar_t* kScanSwitch = L"--ntfs-scan";
    static constexpr std::uint32_t kElevatedTimeoutMs = 120'000;

    // `cacheFolder` names the folder of the cache as saveCache() takes it.
    IndexService(NTFSIndex& served, VolumeSource& volumeSource, ElevatedRun& elevation, IndexHooks callbacks,
                 std::wstring cacheFolder = kFolder);
    // As stop().
    ~IndexService();
    IndexService(const IndexService&) = delete;
    IndexService& operator=(const IndexService&) = delete;

    // The two tasks, for a worker thread: each lasts as long as it takes, and they run one at a time. A cache
    // whose folder cannot be made counts as missing.
    void start();
    void rebuild();

    // Lets a running task end soon, and further ones do nothing but call their hooks. Returns at once; any
    // thread; there is no way back.
    void requestStop() { stopping = true; }
    // The same, and waits for a running task, though not for its hooks, and for the end of the monitor.
    void stop();
    // At the program's end, behind stop(): writes the cache. False when that failed, and without a try when
    // no task has run to its end: the index is not whole then and would be taken for it at the next start.
    // Nor does an empty index replace a cache: a helper run may have needed longer than it was waited for.
    bool save();

    bool monitoring() const { return monitor.running(); }

private:
    struct Texts;
    enum class Scan { Done, Failed, BrokenOff };

    void fill(const Texts& texts, bool loadFirst);
    Scan scan(NTFSIndex& fresh, const Texts& texts);
    bool loadWhileShown(NTFSIndex& fresh);
    void publish(NTFSIndex& fresh);
    bool journalReadable(wchar_t letter);
    void deleteCache() const;
    bool cacheExists() const;
    bool show(NTFSIndex& in) const;
    bool load(NTFSIndex& into) const;
    bool write(const NTFSIndex& from) const;

    NTFSIndex& index;
    VolumeSource& source;
    ElevatedRun& elevated;
    const IndexHooks hooks;
    const std::wstring folder;

    std::atomic<bool> stopping{false};
    std::mutex task;     // held while one runs
    bool whole = false;  // guarded by task: the last one ran to its end
    FileChangeMonitor monitor;
};

// The elevated run of the program: scans all volumes and saves what was found, or nothing when one failed.
bool scanAndSave(VolumeSource& source, const std::wstring& cacheFolder = IndexService::kFolder);

}  // namespace varnelo
