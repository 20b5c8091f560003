#include "platform/item_id_list_win.h"

namespace varnelo {

ItemIdList itemIdListFrom(const ITEMIDLIST* list) {
    if (!list) return {};
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(list);
    return ItemIdList::fromBytes({bytes, ILGetSize(list)}).value_or(ItemIdList{});
}

const ITEMIDLIST* shellIdList(const ItemIdList& list) {
    return list.empty() ? nullptr : reinterpret_cast<const ITEMIDLIST*>(list.bytes().data());
}

}  // namespace varnelo
