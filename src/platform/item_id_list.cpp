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

}  // namespace varnelo
