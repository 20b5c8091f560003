#include "index/index_service.h"

#include <filesystem>
#include <memory>
#include <utility>

#include "app/logger.h"
#include "index/volume_data.h"
#include "index/volume_scan.h"
#include "platform/input_file.h"
#include "platform/known_folders.h"
#include "platform/plain_file.h"

namespace varnelo {
namespace {

// What is done with the cache fails as a whole when its folder cannot be made.
template <class Work>
bool withCacheFolder(Work work) {
    try {
        return work();
    } catch (const std::filesystem::filesystem_error&) {
        return false;
    }
}

}  // namespace

// The lines of one task in the log. Null: no line.
struct IndexService::Texts {
    const wchar_t* scanned;
    const wchar_t* needsElevation;
    const wchar_t* loadedFromHelper;
    const wchar_t* missingFromHelper;
    const wchar_t* declined;
    const wchar_t* skipped;
    const wchar_t* monitoring;
    const wchar_t* notMonitoring;
    // What a failed scan has left is not wanted beside what the helper found.
    bool clearBeforeHelper;

    static const Texts kStart;
    static const Texts kRebuild;
};

const IndexService::Texts IndexService::Texts::kStart = {
    L"NTFS scan completed with admin rights",
    L"NTFS scan requires elevation, launching helper...",
    L"NTFS cache loaded after elevated scan",
    L"NTFS cache still missing after elevated scan",
    L"User declined elevation for NTFS scan",
    L"Non-admin user \u2013 NTFS scan skipped (no elevation possible)",
    L"NTFS live monitoring started",
    L"NTFS data loaded from cache \u2013 live monitoring disabled (no admin rights)",
    false};

const IndexService::Texts IndexService::Texts::kRebuild = {
    L"NTFS index rebuild completed with admin rights",
    L"NTFS rebuild requires elevation, launching helper...",
    L"NTFS cache loaded after elevated rebuild",
    L"NTFS cache still missing after elevated rebuild",
    L"User declined elevation for NTFS rebuild",
    L"Non-admin user \u2013 NTFS rebuild skipped (no elevation possible)",
    L"NTFS live monitoring restarted after rebuild",
    nullptr,
    true};

IndexService::IndexService(NTFSIndex& served, VolumeSource& volumeSource, ElevatedRun& elevation,
                           IndexHooks callbacks, std::wstring cacheFolder)
    : index(served),
      source(volumeSource),
      elevated(elevation),
      hooks(std::move(callbacks)),
      folder(std::move(cacheFolder)),
      monitor(served, volumeSource) {
    index.stopMonitor = [this] { monitor.stop(); };
}

IndexService::~IndexService() {
    stop();
    index.stopMonitor = nullptr;
}

void IndexService::start() {
    {
        const std::lock_guard lock(task);
        if (!stopping) fill(Texts::kStart, true);
    }
    if (hooks.onIndexReady) hooks.onIndexReady();
}

void IndexService::rebuild() {
    {
        const std::lock_guard lock(task);
        if (!stopping) {
            index.clearIndex();
            deleteCache();
            fill(Texts::kRebuild, false);
        }
    }
    if (hooks.onIndexReady) hooks.onIndexReady();
    if (hooks.onRebuilt) hooks.onRebuilt();
}

void IndexService::stop() {
    requestStop();
    const std::lock_guard lock(task);
    monitor.stop();
}

bool IndexService::save() {
    const std::lock_guard lock(task);
    if (!whole) return false;
    const std::lock_guard indexLock(index.mutex);
    if (index.records().empty() && cacheExists()) return false;
    return write(index);
}

void IndexService::fill(const Texts& texts, bool loadFirst) {
    whole = false;
    const auto fresh = std::make_unique<NTFSIndex>();
    Scan scanned = Scan::Failed;
    if (!loadFirst || !loadWhileShown(*fresh)) scanned = scan(*fresh, texts);
    if (scanned == Scan::BrokenOff) return;
    whole = true;

    const bool hasRecords = !fresh->records().empty();
    const auto volumes = fresh->volumes;
    if (!stopping) fresh->prepareSearches();
    publish(*fresh);
    if (!hasRecords || stopping) return;
    const bool readable =
        scanned == Scan::Done || (!volumes.empty() && journalReadable(static_cast<wchar_t>(volumes.front())));
    if (readable) {
        monitor.start(hooks.onFileChange);
        logInfo(texts.monitoring);
    } else if (texts.notMonitoring != nullptr) {
        logInfo(texts.notMonitoring);
    }
}

IndexService::Scan IndexService::scan(NTFSIndex& fresh, const Texts& texts) {
    const auto stopRequested = [this] { return stopping.load(); };
    if (scanAllVolumes(fresh, source, stopRequested)) {
        write(fresh);
        logInfo(texts.scanned);
        return Scan::Done;
    }
    if (stopping) return Scan::BrokenOff;
    if (!elevated.isUserAdmin()) {
        logInfo(texts.skipped);
        return Scan::Failed;
    }
    logInfo(texts.needsElevation);
    if (!elevated.runElevated(kScanSwitch, kElevatedTimeoutMs, stopRequested)) {
        logWarn(texts.declined);
        return Scan::Failed;
    }
    if (stopping) return Scan::BrokenOff;
    // The helper may not have finished: then this is the cache that was there before, or none.
    if (texts.clearBeforeHelper) fresh.clearIndex();
    if (load(fresh)) {
        logInfo(texts.loadedFromHelper);
    } else {
        logWarn(texts.missingFromHelper);
    }
    return Scan::Failed;
}

// When it fails, the file is shown no longer: what follows may replace it.
bool IndexService::loadWhileShown(NTFSIndex& fresh) {
    NTFSIndex shown;
    const bool shows = show(shown);
    if (shows) {
        publish(shown);
        if (hooks.onCacheShown) hooks.onCacheShown();
        const std::lock_guard lock(index.mutex);
        index.trimShownCache();
    }
    if (load(fresh)) return true;
    NTFSIndex nothing;
    if (shows) publish(nothing);
    return false;
}

// What was there before ends here, a file that was shown included.
void IndexService::publish(NTFSIndex& fresh) {
    monitor.stop();
    {
        const std::lock_guard lock(index.mutex);
        index.swapContent(fresh);
    }
    fresh.clearIndex();
}

bool IndexService::journalReadable(wchar_t letter) {
    const auto volume = source.open({letter, L':'});
    return volume && queryJournal(*volume);
}

void IndexService::deleteCache() const {
    withCacheFolder([this] { return removeFile(machineDataPath(folder, kFile).c_str()); });
}

bool IndexService::cacheExists() const {
    return withCacheFolder([this] { return InputFile().open(machineDataPath(folder, kFile).c_str()); });
}

bool IndexService::show(NTFSIndex& in) const {
    return withCacheFolder([&] { return in.showCache(folder, kFile); });
}

bool IndexService::load(NTFSIndex& into) const {
    return withCacheFolder([&] { return into.loadCache(folder, kFile); });
}

bool IndexService::write(const NTFSIndex& from) const {
    return withCacheFolder([&] { return from.saveCache(folder, kFile); });
}

bool scanAndSave(VolumeSource& source, const std::wstring& cacheFolder) {
    NTFSIndex index;
    return scanAllVolumes(index, source) &&
           withCacheFolder([&] { return index.saveCache(cacheFolder, IndexService::kFile); });
}

}  // namespace varnelo
