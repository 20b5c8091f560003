#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace varnelo {

// A removed entry stays where it stood, with its top bit set, until its list is packed; so the entries around
// it need not move. Record indices are below 2^31: two units of the name pool at least go with each.
inline constexpr std::uint32_t kRemovedEntry = 0x80000000;

// A run of a posting list's entries. They lie in memory as a file holds them, on any even address.
struct PostingSegment {
    std::uint8_t* entries = nullptr;
    std::size_t count = 0;
    bool ascending = false;  // the top bits left aside, no entry is smaller than the one before

    std::uint32_t at(std::size_t i) const {
        std::uint32_t entry;
        std::memcpy(&entry, entries + 4 * i, 4);
        return entry;
    }
    void set(std::size_t i, std::uint32_t entry) { std::memcpy(entries + 4 * i, &entry, 4); }

    // The first position at or behind `from` whose entry is not below `index`; for ascending ones. Fast when
    // it is near.
    std::size_t lowerBound(std::uint32_t index, std::size_t from = 0) const;
    // Marks the entries of `index` as removed; answers how many.
    std::size_t remove(std::uint32_t index);
};

// Whether that holds, and no entry has its top bit set.
bool isAscending(const std::uint8_t* entries, std::size_t count);

}  // namespace varnelo
