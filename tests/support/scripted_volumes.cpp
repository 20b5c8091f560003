#include "support/scripted_volumes.h"

#include <algorithm>

#include "index/byte_fields.h"
#include "index/file_record.h"

namespace varnelo::test {
namespace {

using Answer = Volume::Answer;

Answer give(const Bytes& bytes, std::span<std::uint8_t> room) {
    if (bytes.empty() || bytes.size() > room.size()) return std::nullopt;
    std::copy(bytes.begin(), bytes.end(), room.begin());
    return bytes.size();
}

Answer enumerateFiles(const ScriptedVolume& volume, ScriptedVolume::Request request,
                      ScriptedVolume::Room room) {
    const auto start = knownField<std::uint64_t>(request, 0);
    std::vector<Bytes> records;
    std::uint64_t last = 0;
    for (const UsnFields& file : volume.files) {
        const std::uint64_t number = file.frn & kFrnMask;
        if (number < start) continue;
        // The names of one file come together.
        if (records.size() >= volume.filesPerAnswer && number != last) {
            return give(usnAnswer(number, records), room);
        }
        records.push_back(usnRecord(file));
        last = number;
    }
    if (records.empty()) return std::nullopt;
    return give(usnAnswer(last + 1, records), room);
}

Answer readRecords(const ScriptedVolume& volume, ScriptedVolume::Request request, ScriptedVolume::Room room) {
    const auto start = knownField<std::uint64_t>(request, 0);
    const auto reasons = knownField<std::uint32_t>(request, 8);
    if (knownField<std::uint64_t>(request, 32) != volume.journalId || start < volume.firstUsn)
        return std::nullopt;
    std::vector<Bytes> records;
    std::size_t size = 8;
    std::uint64_t next = volume.nextUsn;
    const auto first = std::find_if(volume.journal.begin(), volume.journal.end(),
                                    [start](const auto& record) { return record.first >= start; });
    for (auto record = first; record != volume.journal.end(); ++record) {
        const bool version2 = knownField<std::uint16_t>(record->second, 4) == 2;
        if (version2 && (knownField<std::uint32_t>(record->second, 40) & reasons) == 0) continue;
        if (size + record->second.size() > room.size()) {
            next = record->first;
            break;
        }
        size += record->second.size();
        records.push_back(record->second);
    }
    return give(usnAnswer(next, records), room);
}

}  // namespace

class ScriptedVolumes::Opened final : public Volume {
public:
    Opened(std::mutex& shared, ScriptedVolume& opened) : mutex(shared), volume(opened) {}
    Opened(const Opened&) = delete;
    Opened& operator=(const Opened&) = delete;
    ~Opened() override {
        const std::lock_guard lock(mutex);
        ++volume.closed;
    }

    Answer volumeData(std::span<std::uint8_t> answer) override {
        const std::lock_guard lock(mutex);
        return give(volume.volumeData, answer);
    }
    Answer journalData(std::span<std::uint8_t> answer) override {
        const std::lock_guard lock(mutex);
        if (!volume.hasJournal) return std::nullopt;
        return give(journalDataBytes(volume.journalId, volume.firstUsn, volume.nextUsn), answer);
    }
    // What a test puts in an answer's place runs without the mutex.
    Answer enumerate(std::span<const std::uint8_t> request, std::span<std::uint8_t> answer) override {
        std::unique_lock lock(mutex);
        volume.enumerations.emplace_back(request.begin(), request.end());
        if (!volume.enumerate) return enumerateFiles(volume, request, answer);
        lock.unlock();
        return volume.enumerate(request, answer);
    }
    Answer fileRecord(std::uint64_t frn, std::span<std::uint8_t> answer) override {
        std::unique_lock lock(mutex);
        volume.recordsAsked.push_back(frn);
        volume.recordRoom = answer.size();
        const std::uint64_t number = frn & kFrnMask;
        const std::uint64_t sequence = volume.sequence << 48;
        if (volume.recordOf) {
            lock.unlock();
            const Bytes record = volume.recordOf(number);
            return record.empty() ? std::nullopt : give(fileRecordOutput(sequence | number, record), answer);
        }
        auto above = volume.fileRecords.upper_bound(number);
        if (above == volume.fileRecords.begin()) return std::nullopt;
        --above;
        return give(fileRecordOutput(sequence | above->first, above->second), answer);
    }
    Answer readJournal(std::span<const std::uint8_t> request, std::span<std::uint8_t> answer) override {
        std::unique_lock lock(mutex);
        volume.journalReads.emplace_back(request.begin(), request.end());
        if (!volume.readJournal) return readRecords(volume, request, answer);
        lock.unlock();
        return volume.readJournal(request, answer);
    }

private:
    std::mutex& mutex;
    ScriptedVolume& volume;
};

void ScriptedVolume::add(const UsnFields& fields, const MftRecordBytes& record) {
    files.push_back(fields);
    fileRecords[fields.frn & kFrnMask] = record.ended();
}

void ScriptedVolume::happen(UsnFields change) {
    change.usn = nextUsn;
    happenRaw(usnRecord(change));
}

void ScriptedVolume::happenRaw(const Bytes& record) {
    journal.emplace_back(nextUsn, record);
    nextUsn += record.size();
}

void ScriptedVolume::wrap() {
    journal.clear();
    firstUsn = nextUsn;
}

void ScriptedVolume::recreateJournal(std::uint64_t id) {
    journal.clear();
    journalId = id;
    firstUsn = 64;
    nextUsn = 64;
}

std::uint32_t ScriptedVolumes::drives() {
    const std::lock_guard lock(mutex);
    std::uint32_t mask = 0;
    for (const auto& volume : volumes) mask |= std::uint32_t{1} << (volume.first - L'A');
    return mask;
}

bool ScriptedVolumes::fixedDrive(wchar_t letter) {
    const std::lock_guard lock(mutex);
    return volumes[letter].fixed;
}

std::unique_ptr<Volume> ScriptedVolumes::open(const std::wstring& name) {
    const std::lock_guard lock(mutex);
    const auto found = volumes.find(name.front());
    if (found == volumes.end() || !found->second.opens) return nullptr;
    ++found->second.opened;
    return std::make_unique<Opened>(mutex, found->second);
}

std::optional<std::uint64_t> ScriptedVolumes::fileSize(const std::wstring& path) {
    const std::lock_guard lock(mutex);
    sizesAsked.push_back(path);
    const auto found = fileSizes.find(path);
    if (found == fileSizes.end()) return std::nullopt;
    return found->second;
}

}  // namespace varnelo::test
