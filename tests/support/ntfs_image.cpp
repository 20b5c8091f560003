#include "support/ntfs_image.h"

#include <algorithm>
#include <fstream>
#include <map>
#include <mutex>
#include <stdexcept>

#include "support/project_files.h"

namespace varnelo::test {
namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::uint64_t kFileSignature = 0x454C4946;  // "FILE"
constexpr std::uint64_t kInUse = 1;
constexpr std::uint64_t kNumberMask = 0xFFFFFFFFFFFF;
// A value is protected in steps of this, whatever the sectors of the device are.
constexpr std::size_t kFixUpStep = 512;
// More than any image of a test has: what claims to be larger is not read.
constexpr std::uint64_t kMostBytes = std::uint64_t{1} << 30;

struct ListEntry {
    std::uint64_t type, firstVcn, record, instance;
};

std::vector<ListEntry> listEntries(Bytes list) {
    std::vector<ListEntry> result;
    while (list.size() >= 26) {
        result.push_back({littleEndian(list, 0, 4), littleEndian(list, 8, 8),
                          littleEndian(list, 16, 8) & kNumberMask, littleEndian(list, 24, 2)});
        const auto length = static_cast<std::size_t>(littleEndian(list, 4, 2));
        if (length < 26 || length > list.size()) break;
        list = list.subspan(length);
    }
    return result;
}

const NtfsAttribute* find(const std::vector<NtfsAttribute>& attributes, std::uint64_t type,
                          std::uint64_t firstVcn) {
    const auto found = std::find_if(attributes.begin(), attributes.end(), [&](const NtfsAttribute& each) {
        return each.type == type && !each.named && each.firstVcn == firstVcn;
    });
    return found == attributes.end() ? nullptr : &*found;
}

// Puts the last two bytes of each step back; false when they are not those that the record speaks of.
bool undo(std::span<std::uint8_t> record) {
    if (littleEndian(record, 0, 4) != kFileSignature) return false;
    const auto at = static_cast<std::size_t>(littleEndian(record, 4, 2));
    const auto count = static_cast<std::size_t>(littleEndian(record, 6, 2));
    if (count != record.size() / kFixUpStep + 1 || at + 2 * count > record.size()) return false;
    for (std::size_t step = 1; step < count; ++step) {
        std::uint8_t* const end = record.data() + step * kFixUpStep - 2;
        if (end[0] != record[at] || end[1] != record[at + 1]) return false;
        end[0] = record[at + 2 * step];
        end[1] = record[at + 2 * step + 1];
    }
    return true;
}

}  // namespace

std::shared_ptr<const NtfsImage> NtfsImage::made(const std::string& name) {
    static std::mutex mutex;
    static std::map<std::string, std::shared_ptr<const NtfsImage>> opened;
    const std::lock_guard lock(mutex);
    auto& image = opened[name];
    if (!image) image = open(projectPath("build/ntfs-images/" + name + ".img"));
    if (!image) throw std::runtime_error("no image " + name + ": tools/ntfs_images.sh makes it");
    return image;
}

std::shared_ptr<const NtfsImage> NtfsImage::open(const std::string& path) {
    const std::shared_ptr<NtfsImage> image(new NtfsImage);
    image->path = path;
    if (!image->readBootSector() || !image->readTable()) return nullptr;
    return image;
}

std::vector<std::uint8_t> NtfsImage::bytesAt(std::uint64_t offset, std::uint64_t count) const {
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(std::min(count, kMostBytes)));
    std::ifstream file(path, std::ios::binary);
    file.seekg(static_cast<std::streamoff>(offset));
    file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    return bytes;
}

bool NtfsImage::readBootSector() {
    const std::vector<std::uint8_t> boot = bytesAt(0, 512);
    constexpr std::string_view kMark = "NTFS    ";
    if (boot.size() != 512 || !std::equal(kMark.begin(), kMark.end(), boot.begin() + 3)) return false;
    shape.sectorBytes = static_cast<std::uint32_t>(littleEndian(boot, 11, 2));
    shape.clusterBytes = shape.sectorBytes * static_cast<std::uint32_t>(littleEndian(boot, 13, 1));
    shape.sectors = littleEndian(boot, 40, 8);
    shape.tableCluster = littleEndian(boot, 48, 8);
    shape.mirrorCluster = littleEndian(boot, 56, 8);
    shape.serialNumber = littleEndian(boot, 72, 8);
    // Clusters, or as a negative number the logarithm of the bytes.
    const std::uint64_t size = littleEndian(boot, 64, 1);
    shape.recordBytes = size < 128 ? shape.clusterBytes * static_cast<std::uint32_t>(size)
                                   : std::uint32_t{1} << std::min<std::uint64_t>(256 - size, 31);
    const std::uint32_t bytes = shape.recordBytes;
    return shape.clusterBytes != 0 && bytes >= kFixUpStep && bytes <= 0x10000 && bytes % kFixUpStep == 0;
}

void NtfsImage::appendClusters(const NtfsAttribute& piece, std::vector<std::uint8_t>& to) const {
    for (const ClusterRun& run : piece.runs()) {
        if (run.count > kMostBytes / shape.clusterBytes) return;
        const std::uint64_t count = run.count * shape.clusterBytes;
        std::vector<std::uint8_t> bytes;
        if (run.first) bytes = bytesAt(*run.first * shape.clusterBytes, count);
        bytes.resize(static_cast<std::size_t>(count));
        to.insert(to.end(), bytes.begin(), bytes.end());
    }
}

// The table says itself where it lies: its first record holds the first piece of the answer, and where
// further records are needed for it, these lie in the pieces before.
bool NtfsImage::readTable() {
    rawTable = bytesAt(shape.tableCluster * shape.clusterBytes, shape.recordBytes);
    undoFixUps();
    const auto own = attributesOf(record(0));
    const NtfsAttribute* first = find(own, NtfsAttribute::kData, 0);
    if (first == nullptr || first->resident || first->validSize > kMostBytes) return false;
    std::vector<std::uint8_t> all;
    appendClusters(*first, all);
    const auto validSize = static_cast<std::size_t>(first->validSize);

    std::vector<ListEntry> entries;
    if (const NtfsAttribute* list = find(own, NtfsAttribute::kAttributeList, 0))
        entries = listEntries(contentOf(*list));
    std::erase_if(entries, [](const ListEntry& entry) {
        return entry.type != NtfsAttribute::kData || entry.firstVcn == 0;
    });
    for (const ListEntry& entry : entries) {
        rawTable = all;
        undoFixUps();
        const auto attributes = attributesOf(record(entry.record));
        const NtfsAttribute* piece = find(attributes, NtfsAttribute::kData, entry.firstVcn);
        if (piece == nullptr || all.size() > kMostBytes) return false;
        appendClusters(*piece, all);
    }
    if (validSize > all.size()) return false;
    all.resize(validSize);
    rawTable = std::move(all);
    undoFixUps();
    const auto attributes = allAttributes(0);
    const NtfsAttribute* used = find(attributes, NtfsAttribute::kBitmap, 0);
    if (used == nullptr) return false;
    bitmap = contentOf(*used);
    return true;
}

void NtfsImage::undoFixUps() {
    table = rawTable;
    sound.assign(static_cast<std::size_t>(recordCount()), false);
    for (std::size_t i = 0; i < sound.size(); ++i)
        sound[i] = undo(std::span(table).subspan(i * shape.recordBytes, shape.recordBytes));
}

Bytes NtfsImage::record(std::uint64_t number, FixUps fixUps) const {
    if (number >= recordCount()) return {};
    const auto at = static_cast<std::size_t>(number);
    if (fixUps == FixUps::Undone && !sound[at]) return {};
    const std::vector<std::uint8_t>& from = fixUps == FixUps::Undone ? table : rawTable;
    return Bytes(from).subspan(at * shape.recordBytes, shape.recordBytes);
}

bool NtfsImage::inUse(std::uint64_t number) const {
    return (littleEndian(record(number), 22, 2) & kInUse) != 0;
}

bool NtfsImage::markedInUse(std::uint64_t number) const {
    return (littleEndian(bitmap, static_cast<std::size_t>(number / 8), 1) >> (number % 8) & 1) != 0;
}

bool NtfsImage::isFile(std::uint64_t number) const {
    return inUse(number) && littleEndian(record(number), 32, 8) == 0;
}

std::uint64_t NtfsImage::reference(std::uint64_t number) const {
    return number | littleEndian(record(number), 16, 2) << 48;
}

std::vector<NtfsAttribute> NtfsImage::allAttributes(std::uint64_t number) const {
    std::vector<NtfsAttribute> own = attributesOf(record(number));
    const NtfsAttribute* list = find(own, NtfsAttribute::kAttributeList, 0);
    if (list == nullptr) return own;
    std::vector<NtfsAttribute> result;
    for (const ListEntry& entry : listEntries(contentOf(*list)))
        for (const NtfsAttribute& each : attributesOf(record(entry.record)))
            if (each.type == entry.type && each.instance == entry.instance) result.push_back(each);
    return result;
}

std::uint64_t NtfsImage::dataSize(std::uint64_t number) const {
    const auto attributes = allAttributes(number);
    const NtfsAttribute* data = find(attributes, NtfsAttribute::kData, 0);
    return data == nullptr ? 0 : data->dataSize;
}

std::vector<std::uint8_t> NtfsImage::contentOf(const NtfsAttribute& attribute) const {
    if (attribute.resident) return {attribute.value.begin(), attribute.value.end()};
    std::vector<std::uint8_t> content;
    appendClusters(attribute, content);
    content.resize(static_cast<std::size_t>(std::min<std::uint64_t>(attribute.dataSize, content.size())));
    return content;
}

}  // namespace varnelo::test
