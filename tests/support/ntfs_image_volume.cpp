#include "support/ntfs_image_volume.h"

#include <algorithm>
#include <cwctype>
#include <vector>

#include "platform/binary_stream.h"

namespace varnelo::test {
namespace {

constexpr std::uint64_t kNumberMask = 0xFFFFFFFFFFFF;
constexpr std::uint64_t kRoot = 5;
constexpr std::uint64_t kDirectoryFlag = 2;  // of a record
constexpr std::uint32_t kDirectory = 0x10;   // as an attribute of the file
constexpr std::uint32_t kNormal = 0x80;

Volume::Answer answerWith(const Bytes& bytes, std::span<std::uint8_t> answer) {
    if (answer.size() < bytes.size()) return std::nullopt;
    std::copy(bytes.begin(), bytes.end(), answer.begin());
    return bytes.size();
}

// What Windows keeps in memory of the standard information, and of the kind of the record.
std::uint32_t fileAttributes(std::uint64_t stored, bool directory) {
    const std::uint32_t attributes = static_cast<std::uint32_t>(stored) | (directory ? kDirectory : 0);
    return attributes == 0 ? kNormal : attributes;
}

}  // namespace

Volume::Answer NtfsImageVolume::volumeData(std::span<std::uint8_t> answer) {
    const NtfsImage::Geometry& shape = drive.image->geometry();
    const std::uint64_t clusters = shape.sectors * shape.sectorBytes / shape.clusterBytes;
    BinaryWriter out;
    out.u64(shape.serialNumber);
    out.u64(shape.sectors);
    out.u64(clusters);
    out.u64(clusters / 2);  // free: nobody looks
    out.u64(0);
    out.u32(shape.sectorBytes);
    out.u32(shape.clusterBytes);
    out.u32(shape.recordBytes);
    out.u32(shape.recordBytes / shape.clusterBytes);
    out.u64(drive.image->recordCount() * shape.recordBytes);
    out.u64(shape.tableCluster);
    out.u64(shape.mirrorCluster);
    out.u64(0);
    out.u64(0);
    return answerWith(out.bytes(), answer);
}

Volume::Answer NtfsImageVolume::journalData(std::span<std::uint8_t> answer) {
    return drive.journal ? drive.journal->query(answer) : std::nullopt;
}

Volume::Answer NtfsImageVolume::readJournal(std::span<const std::uint8_t> request,
                                            std::span<std::uint8_t> answer) {
    return drive.journal ? drive.journal->read(request, answer) : std::nullopt;
}

Bytes NtfsImageVolume::usnRecordsOf(std::uint64_t number, std::uint64_t lowUsn, std::uint64_t highUsn) {
    const NtfsImage& image = *drive.image;
    if (!image.isFile(number)) return {};
    UsnFields fields{image.reference(number), 0, L"", 0, 0, 0};
    std::vector<NtfsFileName> names;
    for (const NtfsAttribute& each : image.allAttributes(number)) {
        if (each.type == NtfsAttribute::kStandardInformation) {
            const bool directory = (littleEndian(image.record(number), 22, 2) & kDirectoryFlag) != 0;
            fields.attributes = fileAttributes(littleEndian(each.value, 32, 4), directory);
            fields.usn = littleEndian(each.value, 64, 8);
        }
        auto name = fileNameOf(each);
        if (name && !name->dosOnly) names.push_back(std::move(*name));
    }
    if (names.empty() && drive.tellsNameless) names.emplace_back();
    if (names.size() > 1 && !drive.tellsEveryName) names.resize(1);
    if (fields.usn < lowUsn || fields.usn > highUsn) return {};
    Bytes records;
    for (const NtfsFileName& name : names) {
        fields.name = name.name;
        fields.parentFrn = name.parent;
        const Bytes record = usnRecord(fields);
        records.insert(records.end(), record.begin(), record.end());
    }
    return records;
}

Volume::Answer NtfsImageVolume::enumerate(std::span<const std::uint8_t> request,
                                          std::span<std::uint8_t> answer) {
    constexpr std::size_t kRequestBytes = 24;
    if (request.size() != kRequestBytes || answer.size() < 8) return std::nullopt;
    const std::uint64_t lowUsn = littleEndian(request, 8, 8);
    const std::uint64_t highUsn = littleEndian(request, 16, 8);
    std::size_t used = 8;
    std::uint64_t number = littleEndian(request, 0, 8) & kNumberMask;
    for (; number < drive.image->recordCount(); ++number) {
        const Bytes records = usnRecordsOf(number, lowUsn, highUsn);
        if (records.size() > answer.size() - used) break;
        std::copy(records.begin(), records.end(), answer.begin() + static_cast<std::ptrdiff_t>(used));
        used += records.size();
    }
    if (used == 8) return std::nullopt;
    BinaryWriter out;
    out.u64(number);
    std::copy(out.bytes().begin(), out.bytes().end(), answer.begin());
    return used;
}

Volume::Answer NtfsImageVolume::fileRecord(std::uint64_t frn, std::span<std::uint8_t> answer) {
    const NtfsImage& image = *drive.image;
    std::uint64_t number = frn & kNumberMask;
    if (number >= image.recordCount()) return std::nullopt;
    // The table's own record is always used, so that this ends.
    while (number > 0 && !image.inUse(number)) --number;
    const auto record = image.record(number, drive.fixUps);
    BinaryWriter out;
    out.u64(image.reference(number));
    out.u32(static_cast<std::uint32_t>(record.size()));
    out.bytes(record);
    return answerWith(out.bytes(), answer);
}

std::uint32_t NtfsImageSource::drives() {
    std::uint32_t mask = 0;
    for (const auto& [letter, drive] : served) mask |= 1u << (letter - L'A');
    return mask;
}

bool NtfsImageSource::fixedDrive(wchar_t letter) {
    const auto found = served.find(letter);
    return found != served.end() && found->second.fixed;
}

std::unique_ptr<Volume> NtfsImageSource::open(const std::wstring& name) {
    if (name.size() != 2 || name[1] != L':') return nullptr;
    const auto found = served.find(static_cast<wchar_t>(std::towupper(name[0])));
    if (found == served.end() || !found->second.image) return nullptr;
    return std::make_unique<NtfsImageVolume>(found->second);
}

const NtfsImageSource::Paths& NtfsImageSource::pathsOf(wchar_t letter) {
    const std::lock_guard lock(mutex);
    const auto [place, isNew] = knownPaths.try_emplace(letter);
    if (!isNew) return place->second;
    const NtfsImage& image = *served.at(letter).image;
    std::map<std::uint64_t, std::vector<NtfsFileName>> names;
    for (std::uint64_t number = 0; number < image.recordCount(); ++number) {
        if (!image.isFile(number)) continue;
        for (const NtfsAttribute& each : image.allAttributes(number)) {
            auto name = fileNameOf(each);
            if (name && !name->dosOnly) names[number].push_back(std::move(*name));
        }
    }
    for (const auto& [number, all] : names) {
        for (const NtfsFileName& name : all) {
            std::wstring path = L"\\" + name.name;
            // Folders have one name. A chain that does not end is no path.
            std::size_t levels = 0;
            for (auto up = names.find(name.parent & kNumberMask);
                 up != names.end() && up->first != kRoot && levels < names.size(); ++levels) {
                path.insert(0, L"\\" + up->second.front().name);
                up = names.find(up->second.front().parent & kNumberMask);
            }
            if (levels < names.size()) place->second.emplace(std::move(path), number);
        }
    }
    return place->second;
}

std::optional<std::uint64_t> NtfsImageSource::fileSize(const std::wstring& path) {
    if (path.size() < 3 || path[1] != L':') return std::nullopt;
    const auto drive = served.find(path[0]);
    if (drive == served.end() || !drive->second.image) return std::nullopt;
    const Paths& paths = pathsOf(path[0]);
    const auto found = paths.find(path.substr(2));
    if (found == paths.end()) return std::nullopt;
    return drive->second.image->dataSize(found->second);
}

}  // namespace varnelo::test
