#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "index/glob.h"
#include "index/name_pool.h"
#include "index/posting_map.h"
#include "index/record_columns.h"
#include "index/record_stamps.h"

namespace varnelo {

class ExtensionTable;
class NameNeedle;

// One search of an index. Which lists it reads is its own affair: the records found, their order and how
// often each of them comes are those of the rules in docs/search.md.
class NameSearch {
public:
    struct Source {
        PostingMap& unigrams;
        PostingMap& bigrams;
        PostingMap& trigrams;
        const RecordColumns& columns;
        const NamePool& names;
        const ExtensionTable& extensions;
        RecordStamps& stamps;
        // A record is in a gram's list exactly if it is live and its name has the gram.
        bool listsProven;
    };

    explicit NameSearch(const Source& source) : from(source) {}

    std::vector<std::uint32_t> run(std::wstring_view query);

private:
    using Ids = std::vector<std::uint32_t>;
    using Units = std::vector<std::uint16_t>;
    // A bit for each record, in the form of RecordColumns::liveWords().
    using Marks = FlatArray<std::uint64_t>;
    struct GramList {
        const PostingMap* map;
        std::uint32_t list;
        std::size_t size;  // 0: there is no such list
    };

    // The marked records, which are live, in their order.
    void collect(const Marks& marks, Ids& found) const;
    // The live records for whose value in the column there is a 1 in `wanted`.
    void collectByValue(const FlatArray<std::uint16_t>& column, const std::vector<std::uint8_t>& wanted,
                        Ids& found) const;
    // Calls use(ids) for the marked entries of the list, a stretch at a time, in order.
    template <class Use>
    void forMarked(const PostingMap& map, std::uint32_t list, const Marks& marks, Use use) const;

    void findText(const Units& text, Ids& found);
    void collectList(const PostingMap& map, std::uint32_t list, Ids& found) const;
    // The entries of the list of threes, in order, that are marked and whose names hold the text.
    void filterList(std::uint32_t list, const Marks& marks, const NameNeedle& needle, Ids& found) const;
    void findByAllTrigrams(const Units& text, std::uint32_t first, Ids& found) const;
    // Stamps the records that are in all of the lists, of which there is one at least. False: so few were
    // left in the midst of it that their names are looked at sooner.
    bool stampThoseIn(std::span<const GramList> lists) const;
    void keepHolding(const NameNeedle& needle, Ids& ids) const;
    // Of records that have all threes of the text.
    void dropThoseThatLack(const Units& text, const NameNeedle& needle, Ids& found) const;
    void findExtensions(const std::vector<std::wstring>& wanted, Ids& found) const;

    void findPatterns(const std::vector<Glob>& globs, Ids& found) const;
    void findByLengths(const std::vector<Glob>& globs, Ids& found) const;
    void findBySweep(const std::vector<Glob>& globs, Ids& found) const;
    // Marks the live records that match, of those of some words.
    void sweepWords(const std::vector<Glob>& globs, std::size_t beginWord, std::size_t endWord,
                    Marks& matches) const;
    // False: too many records may match to look at them one by one.
    bool markCandidates(const std::vector<Glob>& globs, Marks& candidates) const;

    // The lists that a name must be in to match, the shortest first. One without entries is told as such: no
    // name matches then.
    std::vector<GramList> gramsOf(GlobUnits pattern) const;
    // Marks the live records that stand in all of the lists, and perhaps some more.
    Marks recordsInAll(std::span<const GramList> lists) const;
    void mark(const GramList& list, Marks& marks) const;
    // Takes away the marks that are not in the list; answers how many of its entries are marked.
    std::size_t keepMarked(const GramList& list, Marks& marks) const;

    Source from;
};

}  // namespace varnelo
