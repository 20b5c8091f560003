#include "index/file_change_monitor.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "app/crash_guard.h"
#include "index/mft_record.h"
#include "index/usn_record.h"
#include "index/volume_data.h"

namespace varnelo {
namespace {

constexpr std::uint32_t kPollIntervalMs = 500;
constexpr std::size_t kJournalBytes = 0x10000;
constexpr std::size_t kFileRecordBytes = 0x1010;
constexpr std::uint32_t kReasons = usn::kClose | usn::kBasicInfoChange | usn::kRenameNewName |
                                   usn::kFileDelete | usn::kFileCreate | usn::kDataTruncation |
                                   usn::kDataExtend | usn::kDataOverwrite;
static_assert(kReasons == 0x8000A307);

// Long enough for whoever waits for the index to get it.
constexpr std::chrono::milliseconds kBreath{1};

}  // namespace

FileChangeMonitor::FileChangeMonitor(NTFSIndex& followedIndex, VolumeSource& volumeSource, Pause pauseOfTests)
    : index(followedIndex), source(volumeSource), pause(std::move(pauseOfTests)) {
    if (pause) return;
    pause = [this](std::chrono::milliseconds time) {
        std::unique_lock lock(mutex);
        stopRequested.wait_for(lock, time, [this] { return stopping.load(); });
    };
}

FileChangeMonitor::~FileChangeMonitor() { stop(); }

bool FileChangeMonitor::start(Callback callback) {
    if (onOwnThread()) return false;
    const std::lock_guard owner(lifecycle);
    endThread();
    if (!findJournals(std::move(callback))) return false;
    {
        const std::lock_guard lock(mutex);
        alive = true;
    }
    try {
        thread = std::thread([this] { run(); });
    } catch (const std::system_error&) {
        const std::lock_guard lock(mutex);
        alive = false;
    }
    return thread.joinable();
}

void FileChangeMonitor::requestStop() {
    {
        const std::lock_guard lock(mutex);
        stopping = true;
    }
    stopRequested.notify_all();
}

void FileChangeMonitor::stop() {
    requestStop();
    if (onOwnThread()) return;
    const std::lock_guard owner(lifecycle);
    endThread();
}

bool FileChangeMonitor::running() const {
    const std::lock_guard lock(mutex);
    return alive;
}

bool FileChangeMonitor::onOwnThread() const {
    const std::lock_guard lock(mutex);
    return ownId == std::this_thread::get_id();
}

void FileChangeMonitor::endThread() {
    requestStop();
    if (thread.joinable()) thread.join();
    const std::lock_guard lock(mutex);
    stopping = false;
}

bool FileChangeMonitor::findJournals(Callback callback) {
    pollIntervalMs = kPollIntervalMs;
    journals.clear();
    std::vector<std::uint16_t> letters;
    {
        const std::lock_guard lock(index.mutex);
        letters = index.volumes;
    }
    for (std::size_t i = 0; i < letters.size(); ++i) {
        const std::wstring name = {static_cast<wchar_t>(letters[i]), L':'};
        const auto volume = source.open(name);
        if (!volume) continue;
        if (const auto state = queryJournal(*volume)) {
            journals.push_back({name, static_cast<std::uint8_t>(i), state->nextUsn, state->id});
        }
    }
    if (journals.empty()) return false;
    onChange = std::move(callback);
    buffer.resize(kJournalBytes);
    recordBuffer.resize(kFileRecordBytes);
    return true;
}

void FileChangeMonitor::run() {
    installThreadCrashGuard();
    {
        const std::lock_guard lock(mutex);
        ownId = std::this_thread::get_id();
    }
    while (!stopping) {
        runRound();
        pauseBetweenRounds();
    }
    const std::lock_guard lock(mutex);
    ownId = {};
    alive = false;
}

void FileChangeMonitor::pauseBetweenRounds() {
    const std::chrono::milliseconds whole{pollIntervalMs};
    for (std::chrono::milliseconds passed{0}; passed < whole && !stopping; passed += kStep) pause(kStep);
}

void FileChangeMonitor::runRound() {
    for (VolumeJournal& journal : journals) {
        if (stopping) return;
        readVolume(journal);
    }
}

void FileChangeMonitor::readVolume(VolumeJournal& journal) {
    const auto volume = source.open(journal.volume);
    if (!volume) return;
    if (const auto state = queryJournal(*volume); state && state->id != journal.journalId) {
        journal.nextUsn = state->firstUsn;
        journal.journalId = state->id;
    }
    {
        const std::lock_guard lock(index.mutex);
        index.currentVolume = journal.volumeIndex;
    }
    readChanges(*volume, journal);
}

// A burst is read to its end. A read that fails leaves the position where it is: the next round tries again.
void FileChangeMonitor::readChanges(Volume& volume, VolumeJournal& journal) {
    for (;;) {
        const auto request = journalRequest(journal.nextUsn, kReasons, journal.journalId);
        const auto count = volume.readJournal(request, buffer);
        if (!count || *count <= UsnRecordWalk::kHeaderBytes) return;
        const auto answer = std::span<const std::uint8_t>(buffer).first(std::min(*count, buffer.size()));
        gather(volume, answer);
        if (!pending.empty()) {
            applyBatch(journal.volumeIndex);
            for (const FileChange& change : applied) {
                if (onChange) onChange(change);
            }
        }
        const std::uint64_t next = UsnRecordWalk(answer).nextPosition().value_or(journal.nextUsn);
        const bool progress = next > journal.nextUsn;
        journal.nextUsn = next;
        // Without progress the same answer would come for ever.
        if (!progress || stopping) return;
    }
}

// Asks the volume without any lock.
void FileChangeMonitor::gather(Volume& volume, std::span<const std::uint8_t> answer) {
    pending.clear();
    UsnRecordWalk walk(answer);
    UsnRecord record;
    while (walk.next(record)) {
        // While a file is open its records are for nobody: the one of its closing has all their reasons.
        if ((record.reason & (usn::kClose | usn::kFileDelete)) == 0) continue;
        PendingChange& change = pending.emplace_back();
        record.nameInto(change.name);
        change.frn = record.frn & kFrnMask;
        change.parentFrn = record.parentFrn & kFrnMask;
        change.reason = record.reason;
        change.fileAttributes = record.attributes;
        change.attributes = record.attributes;
        if (!change.has(usn::kFileDelete)) complete(volume, record.frn, change);
    }
}

// A file that is gone meanwhile fails, or answers with the record of another: its own end follows.
void FileChangeMonitor::complete(Volume& volume, std::uint64_t fullFrn, PendingChange& change) {
    const auto count = volume.fileRecord(fullFrn, recordBuffer);
    if (!count) return;
    const auto bytes =
        std::span<const std::uint8_t>(recordBuffer).first(std::min(*count, recordBuffer.size()));
    const auto answer = fileRecordAnswer(bytes);
    if (!answer || (answer->frn & kFrnMask) != change.frn || !hasFileSignature(answer->record)) return;
    const MftRecordFacts facts = readMftRecord(answer->record, RecordTime::RecordChange);
    change.size = facts.size;
    change.modified = facts.modified;
    change.attributes = facts.attributes.value_or(0);
}

void FileChangeMonitor::applyBatch(std::uint8_t volumeIndex) {
    using Clock = std::chrono::steady_clock;
    applied.clear();
    std::unique_lock lock(index.mutex);
    auto since = Clock::now();
    for (const PendingChange& change : pending) {
        if (Clock::now() - since > longestHold) {
            // A mutex goes to whoever comes first; the others need a moment to come.
            lock.unlock();
            pause(kBreath);
            lock.lock();
            since = Clock::now();
        }
        applyChange(index, change, volumeIndex, applied);
    }
}

}  // namespace varnelo
