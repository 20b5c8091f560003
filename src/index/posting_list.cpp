#include "index/posting_list.h"

#include <algorithm>

namespace varnelo {

std::size_t PostingSegment::lowerBound(std::uint32_t index, std::size_t from) const {
    std::size_t step = 1;
    std::size_t begin = from;
    std::size_t end = from;
    while (end < count && (at(end) & ~kRemovedEntry) < index) {
        begin = end + 1;
        end = begin + step;
        step *= 2;
    }
    end = std::min(end, count);
    while (begin < end) {
        const std::size_t middle = begin + (end - begin) / 2;
        if ((at(middle) & ~kRemovedEntry) < index) {
            begin = middle + 1;
        } else {
            end = middle;
        }
    }
    return begin;
}

std::size_t PostingSegment::remove(std::uint32_t index) {
    std::size_t removed = 0;
    if (count == 0) return 0;
    if (ascending && ((at(0) & ~kRemovedEntry) > index || (at(count - 1) & ~kRemovedEntry) < index)) return 0;
    for (std::size_t i = ascending ? lowerBound(index) : 0; i < count; ++i) {
        const std::uint32_t entry = at(i);
        if (ascending && (entry & ~kRemovedEntry) != index) break;
        if (entry != index) continue;
        set(i, index | kRemovedEntry);
        ++removed;
    }
    return removed;
}

bool isAscending(const std::uint8_t* entries, std::size_t count) {
    if (count == 0) return true;
    std::uint32_t descents = 0;
    for (std::size_t i = 0; i + 1 < count; ++i) {
        std::uint32_t pair[2];
        std::memcpy(pair, entries + 4 * i, 8);
        descents |= pair[0] > pair[1];
    }
    std::uint32_t last;
    std::memcpy(&last, entries + 4 * (count - 1), 4);
    return descents == 0 && last < kRemovedEntry;
}

}  // namespace varnelo
