#include "platform/item_id_list.h"

#include "platform/binary_stream.h"

namespace varnelo {

std::optional<ItemIdList> ItemIdList::fromBytes(std::span<const std::uint8_t> source) {
    BinaryReader in(source);
    for (;;) {
        const std::uint16_t size = in.u16();
        if (!in.good()) return std::nullopt;
        if (size == 0) break;
        if (size < sizeof size) return std::nullopt;
        in.bytes(size - sizeof size);
        if (!in.good()) return std::nullopt;
    }
    const auto used = source.first(source.size() - in.remaining());
    ItemIdList result;
    result.list.assign(used.begin(), used.end());
    return result;
}

std::size_t ItemIdList::lastItemOffset() const {
    std::size_t last = 0;
    for (std::size_t next = 0;;) {
        const std::size_t size = list[next] | std::size_t{list[next + 1]} << 8;
        if (size == 0) return last;
        last = next;
        next += size;
    }
}

ItemIdList ItemIdList::parent() const {
    ItemIdList result;
    if (empty()) return result;
    result.list.assign(list.begin(), list.begin() + static_cast<std::ptrdiff_t>(lastItemOffset()));
    result.list.insert(result.list.end(), {0, 0});
    return result;
}

ItemIdList ItemIdList::lastItem() const {
    ItemIdList result;
    if (empty()) return result;
    result.list.assign(list.begin() + static_cast<std::ptrdiff_t>(lastItemOffset()), list.end());
    return result;
}

}  // namespace varnelo
