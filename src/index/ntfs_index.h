#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "index/extension_table.h"
#include "index/file_record.h"
#include "index/name_pool.h"
#include "index/posting_map.h"
#include "index/record_columns.h"
#include "index/record_stamps.h"
#include "index/slot_table.h"
#include "platform/mapped_file.h"

namespace varnelo {

// What is new about a file that the index knows or gets to know.
struct FileFacts {
    std::uint64_t frn = 0;        // the sequence number may be in it
    std::uint64_t parentFrn = 0;  // likewise
    std::uint32_t flags = 0;      // of FileRecord
    std::uint64_t size = 0;
    std::uint64_t modified = 0;
    std::uint32_t attributes = 0;
};

// A row of the list of hits. The record stays where it is until one is added or the content is another one.
struct IndexRow {
    const FileRecord* record = nullptr;
    std::wstring path;
    std::uint64_t size = 0;
    std::uint64_t modified = 0;
    std::uint32_t attributes = 0;
};

// The table of all files and directories of the fixed NTFS volumes. A record's index is its identity
// everywhere. Everything lies in a few flat arrays: no file has memory of its own.
//
// The caller holds `mutex` around every call, with these exceptions: clearIndex() takes it itself; a scan,
// saveCache() and loadCache() run while nothing else uses the index. IndexService sees to that: it scans and
// loads into an index of its own and takes the mutex to bring the content over, and to save.
class NTFSIndex {
public:
    static constexpr std::size_t kMostVolumes = 26;
    enum SortColumn : std::uint32_t { kSortByName, kSortByPath, kSortBySize, kSortByModified };

    std::mutex mutex;
    // Ends the thread that follows the journals, if it runs; set by whoever owns that thread. clearIndex()
    // calls it without the mutex, which that thread may want before it ends.
    std::function<void()> stopMonitor;

    std::vector<std::uint16_t> volumes;  // drive letters, upper case, in the order of their first scan
    std::uint8_t currentVolume = 0;      // where addRecord() and createRecord() put a file

    // The letter's place in `volumes`, entered when it is new; nothing when all places are taken.
    std::optional<std::uint8_t> volumeIndexOf(wchar_t letter);

    // Reading. An index that is none of a record gives an empty name.
    std::span<const FileRecord> records() const { return {table.data(), table.size()}; }
    NameUnits nameUnits(std::uint32_t index) const;
    NameUnits nameUnits(const FileRecord& record) const { return pool.at(record.nameOffset); }
    std::wstring nameOf(std::uint32_t index) const { return wideFromUnits(nameUnits(index)); }
    const ExtensionTable& extensions() const { return extensionTable; }
    const NamePool& names() const { return pool; }
    // None while a file is shown, before a search has needed them.
    const RecordColumns& columns() const { return column; }
    const PostingMap& unigrams() const { return unigramIndex; }
    const PostingMap& bigrams() const { return bigramIndex; }
    const PostingMap& trigrams() const { return trigramIndex; }
    std::span<const std::uint32_t> freeRecords() const { return freeSlots; }
    // The record of a recordKey(). A tombstone that came from a file or from pruneRecord() is found too.
    std::optional<std::uint32_t> recordByKey(std::uint64_t key) const;
    // "C:\folder\name"; the lowest 256 levels. Remembered for the record until it is changed, so that a path
    // below a directory that is renamed later stays as it was.
    std::wstring fullPath(const FileRecord& record);

    // Changing. Those that take an index do nothing when it is none of a record.
    std::uint32_t addName(std::wstring_view name) { return pool.add(name); }
    std::uint16_t extensionIdOf(std::wstring_view name) { return extensionTable.idOf(name); }
    // At the end, whether or not a place is free. Answers the index.
    std::uint32_t addRecord(const FileFacts& facts, std::wstring_view name);
    // In the place of the record removed last, or at the end.
    std::uint32_t createRecord(const FileFacts& facts, std::wstring_view name);
    // A new name or folder. The flags too are those of `facts`; the reference number is not looked at.
    void renameRecord(std::uint32_t index, const FileFacts& facts, std::wstring_view name);
    // The parent, size, time and attributes; the name and what is searched stay.
    void updateRecord(std::uint32_t index, std::uint64_t parentFrn, std::uint64_t size,
                      std::uint64_t modified, std::uint32_t attributes);
    // As updateRecord(), for a record that nobody has asked the path of yet.
    void fillRecord(std::uint32_t index, std::uint64_t size, std::uint64_t modified,
                    std::uint32_t attributes);
    void setSize(std::uint32_t index, std::uint64_t size);
    // Makes it a tombstone whose place will be used again.
    void removeRecord(std::uint32_t index);
    // Makes it a tombstone that is still known by its key and keeps its place.
    void pruneRecord(std::uint32_t index);
    // One entry for each gram of the name, and all of them away again. The operations above do this
    // themselves; behind a call from elsewhere a search trusts the lists less, and is slower.
    void addPostings(std::uint32_t index, std::wstring_view name);
    void removePostings(std::uint32_t index, std::wstring_view name);
    void clearIndex();
    // Everything but the mutex and `stopMonitor` changes places with that of an index that nobody else uses:
    // a scan or a load fills that one, which may take its time.
    void swapContent(NTFSIndex& other);

    // ntfs.cache, in a folder of the machine-wide application data, which is made. Both throw
    // std::filesystem::filesystem_error when it cannot be made.
    bool saveCache(std::wstring_view folderName, std::wstring_view fileName) const;
    // What was read before a fault stays in the index.
    bool loadCache(std::wstring_view folderName, std::wstring_view fileName);
    // The same from elsewhere than a file: `read` hands over the next bytes and answers how many there were.
    using ReadBytes = std::function<std::size_t(std::uint8_t* to, std::size_t count)>;
    bool readCache(std::int64_t size, const ReadBytes& read);

    // For the time that a load into another index takes: what the file holds can be searched at once, where
    // it lies. What takes a pass over all records is done when it is first asked for. False, with an empty
    // index and without a word in the log, whenever that is not possible. The file cannot be replaced before
    // the index is cleared or destroyed, and saveCache() fails until then; changes are those of this index
    // alone.
    bool showCache(std::wstring_view folderName, std::wstring_view fileName);
    // What was read of that file so far no longer counts as this program's memory. Before a change.
    void trimShownCache() { shownFile.trim(); }
    // As showCache(), of bytes that stay alive and writable, at an even address.
    bool showCache(std::span<std::uint8_t> file);

    // Finds out, once after a scan or a load, what lets a search of a text look at few names or none. Takes
    // about as long as the load.
    void prepareSearches();
    // Records whose name holds the text, or matches one of the patterns: docs/search.md tells how.
    std::vector<std::uint32_t> searchNames(std::wstring_view query);
    void sortResults(std::vector<std::uint32_t>& ids, std::uint32_t sortColumn, bool ascending);
    // The rows at the positions from `first` on. An id that is none of a record gives no row.
    std::vector<IndexRow> entriesForRange(std::span<const std::uint32_t> ids, std::uint64_t first,
                                          std::uint64_t count);

private:
    friend class CacheLoader;

    void store(std::uint32_t index, const FileFacts& facts, std::wstring_view name);
    void enterKey(std::uint32_t index);
    void enterKeys();
    std::vector<std::uint32_t> searchInPlace(std::wstring_view text) const;
    void tombstone(std::uint32_t index);
    void tellColumns(std::uint32_t index);
    void tellAllColumns();
    void dropPostings(std::uint32_t index, NameUnits name);

    PostingMap unigramIndex{2};
    PostingMap bigramIndex{4};
    PostingMap trigramIndex{8};
    FlatArray<FileRecord> table;
    RecordColumns column;
    NamePool pool;
    ExtensionTable extensionTable;
    bool columnsTold = true;  // of all records
    SlotTable keys;           // of the records, by recordKey()
    bool keysEntered = true;  // of all records that there are
    std::unordered_map<std::uint64_t, std::wstring> pathCache;
    std::vector<std::uint32_t> freeSlots;
    // The lists as they were read; they stay there.
    std::unique_ptr<std::uint8_t[]> storedLists;
    MappedFile shownFile;  // holds records, names and lists of showCache()
    // Whether the lists hold each live record once for each time that a gram occurs in its name, and nothing
    // else: a file that could be read claims it.
    enum class Lists { Doubtful, Claimed, Proven };
    Lists lists = Lists::Proven;
    RecordStamps stamps;  // of a search; here to be there already
};

}  // namespace varnelo
