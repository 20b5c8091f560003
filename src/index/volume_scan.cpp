#include "index/volume_scan.h"

#include <algorithm>
#include <cwctype>
#include <utility>
#include <vector>

#include "index/mft_record.h"
#include "index/usn_record.h"
#include "index/volume_data.h"

namespace varnelo {
namespace {

constexpr std::size_t kEnumerationBytes = 0x100000;
// The largest file record that is taken for one, with room for what stands before it in an answer.
constexpr std::size_t kFileRecordBytes = 0x400000;
constexpr std::size_t kFileRecordRoom = 16;
// Below lie NTFS's own files and the root.
constexpr std::uint64_t kFirstUserFrn = 24;

class VolumeScan {
public:
    VolumeScan(NTFSIndex& filled, VolumeSource& volumes, Volume& scanned, const StopRequested& stop)
        : index(filled), source(volumes), volume(scanned), stopRequested(stop) {}

    bool run() {
        const auto found = queryTable(volume);
        if (!found || found->recordBytes == 0 || found->recordBytes > kFileRecordBytes - kFileRecordRoom)
            return false;
        table = *found;
        const auto journal = queryJournal(volume);
        if (!journal) return false;
        if (!readNames(journal->nextUsn) || !readFileRecords() || !askForDeferredSizes()) return false;
        pruneMetadata(index);
        return true;
    }

private:
    bool stopped() const { return stopRequested && stopRequested(); }
    std::uint64_t keyOf(std::uint64_t frn) const { return recordKey(index.currentVolume, frn); }

    // Any failure of the call is taken for the end of the table.
    bool readNames(std::uint64_t highUsn) {
        std::vector<std::uint8_t> buffer(kEnumerationBytes);
        for (std::uint64_t start = 0;;) {
            if (stopped()) return false;
            const auto request = enumerationRequest(start, highUsn);
            const auto count = volume.enumerate(request, buffer);
            if (!count) return true;
            UsnRecordWalk walk{std::span(buffer).first(std::min(*count, buffer.size()))};
            UsnRecord record;
            while (walk.next(record)) enter(record);
            // Without progress the same answer would come for ever.
            const auto next = walk.nextPosition();
            if (!next || (*next & kFrnMask) <= (start & kFrnMask)) return true;
            start = *next;
        }
    }

    void enter(const UsnRecord& record) {
        const std::uint64_t frn = record.frn & kFrnMask;
        if (frn < kFirstUserFrn) return;
        // The further names of a file.
        if (record.nameBytes != 0 && index.recordByKey(keyOf(frn))) return;
        record.nameInto(name);
        const std::uint32_t flags =
            (record.attributes & kDirectoryAttribute) != 0 ? FileRecord::kDirectory : 0;
        index.addRecord({frn, record.parentFrn, flags, 0, 0, record.attributes}, name);
    }

    // The records of this volume that the table can hold, by their numbers. Only these are asked for, however
    // many numbers the volume claims to have.
    std::vector<std::uint32_t> numberedRecords() const {
        const std::uint64_t end = table.validDataSize / table.recordBytes;
        const auto records = index.records();
        std::vector<std::uint32_t> result;
        result.reserve(records.size());
        for (std::uint32_t i = 0; i < records.size(); ++i) {
            const FileRecord& record = records[i];
            if (record.volume == index.currentVolume && record.frn < end &&
                index.recordByKey(recordKey(record)) == i)
                result.push_back(i);
        }
        const auto lower = [records](std::uint32_t a, std::uint32_t b) {
            return records[a].frn < records[b].frn;
        };
        if (!std::is_sorted(result.begin(), result.end(), lower)) {
            std::sort(result.begin(), result.end(), lower);
        }
        return result;
    }

    bool readFileRecords() {
        std::vector<std::uint8_t> buffer(table.recordBytes + kFileRecordRoom);
        for (const std::uint32_t i : numberedRecords()) {
            if (stopped()) return false;
            const auto count = volume.fileRecord(index.records()[i].frn, buffer);
            if (count) fill(i, std::span(buffer).first(std::min(*count, buffer.size())));
        }
        return true;
    }

    void fill(std::uint32_t i, std::span<const std::uint8_t> bytes) {
        const FileRecord& record = index.records()[i];
        const auto answer = fileRecordAnswer(bytes);
        // Below an unused number the platform answers with the nearest used one.
        if (!answer || (answer->frn & kFrnMask) != record.frn || !hasFileSignature(answer->record)) return;
        const auto whole =
            answer->record.first(std::min<std::size_t>(answer->record.size(), table.recordBytes));
        const MftRecordFacts facts = readMftRecord(whole, RecordTime::LastWrite);
        index.fillRecord(i, facts.size, facts.modified, facts.attributes.value_or(record.attributes));
        const bool directory = (record.flags & FileRecord::kDirectory) != 0;
        if (facts.hasAttributeList && !facts.hasData && !directory) deferred.push_back(i);
    }

    // Their data attributes lie in further records.
    bool askForDeferredSizes() {
        for (const std::uint32_t i : deferred) {
            if (stopped()) return false;
            const std::wstring path = index.fullPath(index.records()[i]);
            if (path.empty()) continue;
            if (const auto size = source.fileSize(path)) index.setSize(i, *size);
        }
        return true;
    }

    NTFSIndex& index;
    VolumeSource& source;
    Volume& volume;
    const StopRequested& stopRequested;
    VolumeTable table;
    std::wstring name;
    std::vector<std::uint32_t> deferred;
};

}  // namespace

bool scanAllVolumes(NTFSIndex& index, VolumeSource& source, const StopRequested& stopRequested) {
    const std::uint32_t drives = source.drives();
    if (drives == 0) return false;
    bool all = true;
    for (wchar_t letter = L'A'; letter <= L'Z'; ++letter) {
        if ((drives >> (letter - L'A') & 1) == 0 || !source.fixedDrive(letter)) continue;
        if (!scanVolume(index, source, {letter, L':'}, stopRequested)) all = false;
    }
    return all;
}

bool scanVolume(NTFSIndex& index, VolumeSource& source, const std::wstring& volume,
                const StopRequested& stopRequested) {
    const auto opened = source.open(volume);
    if (!opened) return false;
    const auto isLetter = [](wchar_t unit) { return unit < 0x80 && std::iswalpha(unit) != 0; };
    const auto letter = std::find_if(volume.begin(), volume.end(), isLetter);
    if (letter == volume.end()) return false;
    const auto place = index.volumeIndexOf(static_cast<wchar_t>(std::towupper(*letter)));
    if (!place) return false;
    index.currentVolume = *place;
    return VolumeScan(index, source, *opened, stopRequested).run();
}

void pruneMetadata(NTFSIndex& index) {
    // By the folder that holds them.
    std::vector<std::pair<std::uint64_t, std::uint32_t>> candidates;
    std::vector<std::uint64_t> pruned;
    const auto prune = [&](std::uint32_t i) {
        index.pruneRecord(i);
        pruned.push_back(recordKey(index.records()[i]));
    };
    for (std::uint32_t i = 0; i < index.records().size(); ++i) {
        const FileRecord& record = index.records()[i];
        if (record.deleted()) continue;
        const NameUnits name = index.nameUnits(record);
        if (name.empty() || name.front() != L'$') continue;
        if ((record.parentFrn & kFrnMask) < kFirstUserFrn) {
            prune(i);
        } else {
            candidates.emplace_back(recordKey(record.volume, record.parentFrn), i);
        }
    }
    std::sort(candidates.begin(), candidates.end());
    while (!pruned.empty()) {
        const std::uint64_t folder = pruned.back();
        pruned.pop_back();
        auto child = std::lower_bound(candidates.begin(), candidates.end(), std::pair(folder, 0u));
        for (; child != candidates.end() && child->first == folder; ++child) {
            if (!index.records()[child->second].deleted()) prune(child->second);
        }
    }
}

}  // namespace varnelo
