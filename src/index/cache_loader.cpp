#include <algorithm>
#include <array>
#include <cstring>

#include "app/logger.h"
#include "index/cache_format.h"
#include "index/cache_input.h"
#include "index/ntfs_index.h"
#include "platform/input_file.h"
#include "platform/known_folders.h"

namespace varnelo {

namespace {

std::wstring text(std::uint64_t number) { return std::to_wstring(number); }

}  // namespace

// One load. Every count is tested against the size of the whole file, and what is allocated for it against
// the bytes that are left.
//
// A file in memory is used where it lies and passed through without a word: what takes a pass over all
// records or all entries of lists waits until somebody asks.
class CacheLoader {
public:
    CacheLoader(NTFSIndex& target, const NTFSIndex::ReadBytes& read) : index(target), in(read) {}
    CacheLoader(NTFSIndex& target, std::span<std::uint8_t> file) : index(target), in(file), inPlace(true) {}

    bool load(std::int64_t size) {
        if (!inPlace && index.shownFile.isOpen()) index.clearIndex();
        info(L"loadCache: file size = " + std::to_wstring(size) + L" bytes");
        if (size <= 0) {
            warn(L"loadCache: file is empty or unreadable (size=" + std::to_wstring(size));
            return false;
        }
        fileSize = static_cast<std::uint64_t>(size);
        if (!readHeader() || !readVolumes()) return false;

        // Nobody finds a record by its key before all have been read.
        index.keys.clear();
        index.keysEntered = true;
        index.lists = NTFSIndex::Lists::Doubtful;
        const bool complete = readRecords() && readPool() && readExtensions() && readLists();
        if (inPlace) {
            index.column.clear();
        } else {
            index.column.rebuild(index.records(), index.pool);
        }
        index.columnsTold = !inPlace;
        index.pathCache.clear();
        if (!complete) return false;
        index.keysEntered = false;
        if (!inPlace) index.enterKeys();
        index.lists = NTFSIndex::Lists::Claimed;
        info(L"loadCache: success \u2013 " + text(index.table.size()) + L" files, " +
             text(index.extensionTable.size()) + L" extensions");
        return true;
    }

private:
    void info(const std::wstring& line) {
        if (!inPlace) logInfo(line);
    }
    void warn(const std::wstring& line) {
        if (!inPlace) logWarn(line);
    }
    bool refuse(const std::wstring& what, bool good) {
        warn(L"loadCache: " + what + L", good=" + (good ? L"1" : L"0"));
        return false;
    }
    bool refuse(const std::wstring& what) { return refuse(what, in.good()); }
    std::uint64_t left() const { return fileSize - in.position(); }

    bool readHeader() {
        const std::uint32_t magic = in.u32();
        const std::uint32_t version = in.u32();
        if (magic == cache::kMagic && version == cache::kVersion) return true;
        // The numbers are decimal, also those behind "0x".
        warn(L"loadCache: magic/version mismatch \u2013 magic=0x" + text(magic) + L" version=" +
             text(version) + L" (expected magic=0x" + text(cache::kMagic) + L" version=" +
             text(cache::kVersion) + L")");
        return false;
    }

    bool readVolumes() {
        const std::uint64_t count = in.u64();
        if (!in.good() || count > NTFSIndex::kMostVolumes || 2 * count > fileSize) {
            return refuse(L"volumeCount invalid (" + text(count) + L")");
        }
        index.volumes.resize(count);
        index.volumes.resize(in.read(index.volumes.data(), 2 * count) / 2);
        return true;
    }

    bool readRecords() {
        const std::uint64_t count = in.u64();
        if (!in.good() || count > fileSize / sizeof(FileRecord)) {
            // The product is one of 64 bits.
            return refuse(L"fileCount invalid (" + text(count) + L"), dataSize=" +
                          text(sizeof(FileRecord) * count) + L", fileSize=" + text(fileSize));
        }
        const std::uint64_t whole = std::min(count, left() / sizeof(FileRecord));
        index.table.clear();
        if (inPlace) {
            index.table.borrow(pass<FileRecord>(whole));
        } else {
            index.table.resizeUnwritten(whole);
            const std::size_t got = in.read(index.table.data(), sizeof(FileRecord) * whole);
            index.table.resizeUnwritten(got / sizeof(FileRecord));
        }
        if (index.table.size() < count) exhaust();
        return true;
    }

    bool readPool() {
        const std::uint64_t count = in.u64();
        if (!in.good() || count > fileSize / 2) return refuse(L"poolSize invalid (" + text(count) + L")");
        const std::uint64_t units = std::min(count, left() / 2);
        if (inPlace) {
            index.pool.borrow(pass<std::uint16_t>(units));
            // What a reader may read behind the names must be there too; so small a file is read in no time.
            if (left() < 2 * NamePool::kReadableBeyond) return false;
        } else {
            std::uint16_t* pool = index.pool.beginStored(units);
            index.pool.cut(in.read(pool, 2 * units) / 2);
        }
        if (index.pool.size() < count) exhaust();
        return true;
    }

    bool readExtensions() {
        const std::uint64_t count = in.u64();
        if (!in.good() || count > cache::kMostExtensions)
            return refuse(L"extCount invalid (" + text(count) + L")");
        index.extensionTable.clear();
        std::array<std::uint16_t, cache::kLongestExtension> units;
        for (std::uint64_t i = 0; i < count; ++i) {
            const std::uint64_t length = in.u64();
            if (!in.good() || length > units.size()) {
                return refuse(L"extension[" + text(i) + L"] len invalid (" + text(length) + L")");
            }
            in.read(units.data(), 2 * length);
            if (in.good())
                index.extensionTable.addStored(std::wstring(units.begin(), units.begin() + length));
        }
        if (in.good()) return true;
        warn(L"loadCache: stream bad after extensions");
        return false;
    }

    // The rest of the file: its lists stay where they are read to.
    bool readLists() {
        for (PostingMap* map : {&index.unigramIndex, &index.bigramIndex, &index.trigramIndex}) map->clear();
        const std::span<std::uint8_t> image = restOfFile();
        CacheInput lists(image);
        return readMap(0, index.unigramIndex, 2, image, lists) &&
               readMap(1, index.bigramIndex, 4, image, lists) &&
               readMap(2, index.trigramIndex, 8, image, lists);
    }

    std::span<std::uint8_t> restOfFile() {
        if (inPlace) return in.pass(left());
        const std::size_t wanted = static_cast<std::size_t>(left());
        index.storedLists = std::make_unique_for_overwrite<std::uint8_t[]>(wanted);
        return {index.storedLists.get(), in.read(index.storedLists.get(), wanted)};
    }

    bool readMap(std::uint64_t number, PostingMap& map, std::size_t keyBytes, std::span<std::uint8_t> image,
                 CacheInput& lists) {
        const std::wstring name = L"map[" + text(number) + L"] ";
        const std::uint64_t count = lists.u64();
        if (!lists.good() || count > fileSize)
            return refuse(name + L"size invalid (" + text(count) + L")", lists.good());
        // So many lists at most that are not empty: there are no more keys, and no more fit into the file.
        const std::uint64_t keys = keyBytes == 2 ? 0x10000 : count;
        const std::uint64_t fitting = (image.size() - lists.position()) / (keyBytes + 8 + 4);
        map.beginStored(image, std::min({count, keys, fitting}));
        const bool complete = readStoredLists(map, name, keyBytes, count, lists);
        map.endStored();
        return complete;
    }

    bool readStoredLists(PostingMap& map, const std::wstring& name, std::size_t keyBytes, std::uint64_t count,
                         CacheInput& lists) {
        const auto order = inPlace ? PostingMap::Order::FoundWhenAsked : PostingMap::Order::FoundNow;
        for (std::uint64_t i = 0; i < count; ++i) {
            const std::uint64_t begin = lists.position();
            lists.pass(keyBytes);
            const std::uint64_t entries = lists.u64();
            if (!lists.good() || entries > fileSize / 4) {
                return refuse(name + L"entry " + text(i) + L"/" + text(count) + L" vsize invalid (" +
                                  text(entries) + L")",
                              lists.good());
            }
            // The file may end inside of the very last list without a test behind it.
            lists.pass(4 * entries);
            map.addStored(begin, order);
        }
        return true;
    }

    template <class T>
    std::span<T> pass(std::uint64_t count) {
        return {reinterpret_cast<T*>(in.pass(count * sizeof(T)).data()), static_cast<std::size_t>(count)};
    }

    // The file ended inside of an array: the next test must see that, whatever bytes remain.
    void exhaust() {
        std::array<std::uint8_t, sizeof(FileRecord)> rest;
        while (in.good()) in.read(rest.data(), rest.size());
    }

    NTFSIndex& index;
    CacheInput in;
    const bool inPlace = false;
    std::uint64_t fileSize = 0;
};

bool NTFSIndex::loadCache(std::wstring_view folderName, std::wstring_view fileName) {
    const std::wstring path = machineDataPath(folderName, fileName);
    InputFile file;
    if (!file.open(path.c_str())) {
        logWarn(L"loadCache: failed to open file: " + path);
        return false;
    }
    return readCache(file.size(), [&](std::uint8_t* to, std::size_t count) { return file.read(to, count); });
}

bool NTFSIndex::readCache(std::int64_t size, const ReadBytes& read) {
    return CacheLoader(*this, read).load(size);
}

bool NTFSIndex::showCache(std::wstring_view folderName, std::wstring_view fileName) {
    clearIndex();
    const std::wstring path = machineDataPath(folderName, fileName);
    return shownFile.open(path.c_str()) && showCache(shownFile.bytes());
}

bool NTFSIndex::showCache(std::span<std::uint8_t> file) {
    if (CacheLoader(*this, file).load(static_cast<std::int64_t>(file.size()))) return true;
    clearIndex();
    return false;
}

}  // namespace varnelo
