#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "index/glob.h"
#include "index/name_pool.h"
#include "index/posting_map.h"
#include "index/record_columns.h"

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
        // The lists hold what the names ask for, as far as is known: a record whose name has a gram is in
        // that gram's list.
        bool listsComplete;
    };

    explicit NameSearch(const Source& source)
        : from(source), allNamed(source.columns.namesWithin(source.names.size())) {}

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

    void collectLive(Ids& found) const;
    void findText(const Units& text, Ids& found);
    void collectList(const PostingMap& map, std::uint32_t list, Ids& found) const;
    // The entries of the list, in order, whose names hold the text. Answers whether all of them do.
    bool filterList(std::uint32_t list, const NameNeedle& needle, Ids& found) const;
    void findByAllTrigrams(const Units& text, std::uint32_t first, Ids& found) const;
    void findExtensions(const std::vector<std::wstring>& wanted, Ids& found) const;
    void findPatterns(const std::vector<std::wstring>& patterns, Ids& found) const;
    // The lists that a name must be in to match, the shortest first. One without entries is told as such: no
    // name matches then.
    std::vector<GramList> gramsOf(GlobUnits pattern) const;
    // Marks the records that stand in all of the lists, and perhaps some more.
    Marks recordsInAll(const std::vector<GramList>& lists) const;
    void mark(const GramList& list, Marks& marks) const;
    // False: any record may match.
    bool markCandidates(const std::vector<Glob>& globs, Marks& candidates) const;
    bool usable(std::uint32_t index) const;

    Source from;
    bool allNamed;  // no record's name is out of range
};

}  // namespace varnelo
