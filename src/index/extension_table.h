#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "index/flat_array.h"
#include "index/slot_table.h"

namespace varnelo {

// The lower-cased extensions of all names, each with its dot and an id: its place, from 0.
class ExtensionTable {
public:
    // Ids that can be told apart. What comes later gets FileRecord::kNoExtension.
    static constexpr std::size_t kMostIds = 0xFFFF;

    // The extension's id; it is entered when it is new and there is room. An extension begins at the last
    // dot, which must not be the name's first unit.
    std::uint16_t idOf(std::wstring_view name);
    // Of the lower-cased text with its dot.
    std::optional<std::uint16_t> find(std::wstring_view extension) const;
    std::wstring text(std::size_t id) const;
    std::size_t size() const { return ends.size(); }
    void clear();
    // Adds the next entry of a file. Of two with one text the later is found; an id is the low 16 bits of
    // its place.
    void addStored(std::wstring_view text);

private:
    std::optional<std::uint32_t> placeOf(std::wstring_view text, std::uint64_t hash) const;
    std::uint64_t hashAt(std::uint32_t place) const;

    FlatArray<std::uint16_t> units;  // all texts, one behind the other
    FlatArray<std::uint32_t> ends;   // where each ends
    SlotTable places;
};

}  // namespace varnelo
