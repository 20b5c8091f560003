#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "index/flat_array.h"
#include "index/posting_map.h"

namespace varnelo {

// Finds the records that stand in each of some lists: a byte for each record, of which nothing has to be
// cleared between one row of lists and the next. A bit would be smaller, but neighbours in one word would
// wait for each other.
class RecordStamps {
public:
    static constexpr std::size_t kMostLists = 100;

    // A new row of lists.
    void begin(std::size_t records);
    // Stamps those in the list that were in all lists of the row so far. Answers how many they are.
    std::size_t stampThoseIn(const PostingMap& map, std::uint32_t list);
    // The entries of the list that are in all lists of the row, of which there was one at least: in order, as
    // often as they stand there.
    std::vector<std::uint32_t> stampedIn(const PostingMap& map, std::uint32_t list) const;
    void clear() { *this = RecordStamps(); }

private:
    FlatArray<std::uint8_t> stamps;
    std::size_t count = 0;
    // No stamp is higher than the level; those above the base are of this row.
    std::uint8_t level = 0;
    std::uint8_t base = 0;
};

}  // namespace varnelo
