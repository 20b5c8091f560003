#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "index/flat_array.h"

namespace varnelo {

// A name in the pool, without its end. Valid until the pool changes.
using NameUnits = std::span<const std::uint16_t>;

std::wstring wideFromUnits(NameUnits units);

// The names of all records, one behind the other, a NUL after each. It only grows, and equal names are not
// merged. Units behind the end may be read, up to kReadableBeyond of them; what they hold means nothing.
class NamePool {
public:
    static constexpr std::size_t kReadableBeyond = 32;
    // The longest name that a journal can tell. Where a damaged file lacks the NUL, a name ends here.
    static constexpr std::size_t kLongestName = 0x7FFF;

    std::uint32_t add(std::wstring_view name);
    bool holds(std::uint32_t offset) const { return offset < units.size(); }
    // Empty for an offset behind the end.
    NameUnits at(std::uint32_t offset) const;

    std::size_t size() const { return units.size(); }
    const std::uint16_t* data() const { return units.data(); }
    void clear() { units.clear(); }
    // Makes room for a pool that a file holds; its units must be written next.
    std::uint16_t* beginStored(std::size_t count);
    // Refers to a pool that stays alive, behind which kReadableBeyond units may be read.
    void borrow(std::span<std::uint16_t> stored) { units.borrow(stored); }
    // Gives up what was not read.
    void cut(std::size_t count) { units.resizeUnwritten(count); }

private:
    FlatArray<std::uint16_t> units;
};

}  // namespace varnelo
