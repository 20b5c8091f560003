#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace varnelo {

// The shell's name of an item: a run of items, each a 16-bit size that counts itself and then its data, ended
// by the size zero. Held as its bytes, terminator included; only *_win files know more about it. A default
// list is empty: it names nothing, unlike the desktop's own list, which is the terminator alone.
class ItemIdList {
public:
    ItemIdList() = default;

    // The list at the start of `source`, which may hold more behind it. Nothing when it does not end
    // within `source` or an item is smaller than its own size field.
    static std::optional<ItemIdList> fromBytes(std::span<const std::uint8_t> source);

    bool empty() const { return list.empty(); }
    // The whole list with its terminator; empty for an empty list. Valid until the list changes.
    std::span<const std::uint8_t> bytes() const { return list; }

    // The list without its last item, that is the folder's, and the last item alone, as a list of its own.
    // Both of the desktop are the desktop, and both of an empty list are empty.
    ItemIdList parent() const;
    ItemIdList lastItem() const;

    // Equal bytes. Two different lists may still name the same item: that only the shell can tell.
    friend bool operator==(const ItemIdList&, const ItemIdList&) = default;

private:
    std::size_t lastItemOffset() const;

    std::vector<std::uint8_t> list;
};

}  // namespace varnelo
