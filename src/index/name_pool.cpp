#include "index/name_pool.h"

#include <emmintrin.h>

#include <algorithm>
#include <bit>

namespace varnelo {

std::wstring wideFromUnits(NameUnits units) { return {units.begin(), units.end()}; }

std::uint32_t NamePool::add(std::wstring_view name) {
    // The last name of a damaged file may lack its end: it does not grow with what follows.
    if (!units.empty() && units.back() != 0) units.push_back(0);
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
    const std::size_t limit = std::min(units.size() - offset, kLongestName);
    std::size_t length = 0;
    // What lies behind the limit may be read, but does not count.
    for (; length < limit; length += 8) {
        const __m128i eight = _mm_loadu_si128(reinterpret_cast<const __m128i*>(begin + length));
        const int ends = _mm_movemask_epi8(_mm_cmpeq_epi16(eight, _mm_setzero_si128()));
        if (ends == 0) continue;
        length += static_cast<std::size_t>(std::countr_zero(static_cast<unsigned>(ends))) / 2;
        break;
    }
    return {begin, std::min(length, limit)};
}

std::uint16_t* NamePool::beginStored(std::size_t count) {
    units.clear();
    units.reserve(count + kReadableBeyond);
    units.resizeUnwritten(count);
    return units.data();
}

}  // namespace varnelo
