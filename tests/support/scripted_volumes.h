#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "index/volume_source.h"
#include "support/ntfs_bytes.h"

namespace varnelo::test {

// A volume as a test wants it. Answers are those of the platform, unless one is put in their place.
struct ScriptedVolume {
    using Request = std::span<const std::uint8_t>;
    using Room = std::span<std::uint8_t>;

    bool fixed = true;
    bool opens = true;
    bool hasJournal = true;
    Bytes volumeData = volumeDataBytes(1024, 1024 * 100'000);  // empty: refused
    std::vector<UsnFields> files;                              // of the table, by rising number
    std::size_t filesPerAnswer = 1000;
    std::map<std::uint64_t, Bytes> fileRecords;  // by number; further ones may be asked by `recordOf`
    std::function<Bytes(std::uint64_t number)> recordOf;
    std::uint64_t sequence = 0;  // in the number that a file record comes with

    std::uint64_t journalId = 700;
    std::uint64_t firstUsn = 0;
    std::uint64_t nextUsn = 4096;
    std::vector<std::pair<std::uint64_t, Bytes>> journal;  // by rising USN

    std::function<Volume::Answer(Request, Room)> enumerate;
    std::function<Volume::Answer(Request, Room)> readJournal;

    // What was asked.
    int opened = 0;
    int closed = 0;
    std::vector<Bytes> enumerations;
    std::vector<Bytes> journalReads;
    std::vector<std::uint64_t> recordsAsked;
    std::size_t recordRoom = 0;  // of the last answer

    // A file with its record.
    void add(const UsnFields& fields, const MftRecordBytes& record);
    // Adds a record to the end of the journal.
    void happen(UsnFields change);
    void happenRaw(const Bytes& record);
    // The records so far are gone, as in a journal that is full.
    void wrap();
    // Another journal, with nothing in it.
    void recreateJournal(std::uint64_t id);
};

// Tests that run a monitor's thread change volumes with the mutex held.
class ScriptedVolumes final : public VolumeSource {
public:
    ScriptedVolume& operator[](wchar_t letter) { return volumes[letter]; }
    template <class Change>
    void locked(Change change) {
        const std::lock_guard lock(mutex);
        change();
    }
    std::map<std::wstring, std::uint64_t> fileSizes;
    std::vector<std::wstring> sizesAsked;

    std::uint32_t drives() override;
    bool fixedDrive(wchar_t letter) override;
    std::unique_ptr<Volume> open(const std::wstring& name) override;
    std::optional<std::uint64_t> fileSize(const std::wstring& path) override;

private:
    class Opened;

    std::mutex mutex;
    std::map<wchar_t, ScriptedVolume> volumes;
};

}  // namespace varnelo::test
