#include "index/name_pool.h"

#include <algorithm>

namespace varnelo {

std::wstring wideFromUnits(NameUnits units) { return {units.begin(), units.end()}; }

std::uint32_t NamePool::add(std::wstring_view name) {
    const std::size_t offset = units.size();
    units.makeRoom(name.size() + 1 + kReadableBeyond);
    units.resizeUnwritten(offset + name.size() + 1);
    std::transform(name.begin(), name.end(), units.data() + offset,
                   [](wchar_t unit) { return static_cast<std::uint16_t>(unit); });
    units.back() = 0;
    return static_cast<std::uint32_t>(offset);
}

NameUnits NamePool::at(std::uint32_t offset) const {
    if (!holds(offset)) return {};
    const std::uint16_t* begin = units.data() + offset;
    const std::uint16_t* limit = begin + std::min(units.size() - offset, kLongestName);
    return {begin, std::find(begin, limit, 0)};
}

std::uint16_t* NamePool::beginStored(std::size_t count) {
    units.clear();
    units.reserve(count + kReadableBeyond);
    units.resizeUnwritten(count);
    return units.data();
}

}  // namespace varnelo
