#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

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

    explicit NameSearch(const Source& source) : from(source) {}

    std::vector<std::uint32_t> run(std::wstring_view query);

private:
    using Ids = std::vector<std::uint32_t>;
    using Units = std::vector<std::uint16_t>;
    struct GramList {
        const PostingMap* map;
        std::uint32_t list;
        std::size_t size;
    };

    void collectLive(Ids& found) const;
    void findText(const Units& text, Ids& found);
    void collectList(const PostingMap& map, std::uint32_t list, Ids& found) const;
    // The entries of the list, in order, whose names hold the text. Answers whether all of them do.
    bool filterList(std::uint32_t list, const NameNeedle& needle, Ids& found) const;
    void findByRarestTrigram(const Units& text, std::uint32_t first, Ids& found);
    void findExtensions(const std::vector<std::wstring>& wanted, Ids& found) const;
    void findPatterns(const std::vector<std::wstring>& patterns, Ids& found) const;
    // The shortest list that a name must be in to match; its map is null when there is none, and the size is
    // 0 when no name matches.
    GramList rarestGram(const Units& pattern) const;
    // Bits of records that may match, in the form of RecordColumns::liveWords(). False: look at all.
    bool markCandidates(const std::vector<Units>& patterns, FlatArray<std::uint64_t>& marks) const;
    bool usable(std::uint32_t index) const;

    Source from;
};

}  // namespace varnelo
