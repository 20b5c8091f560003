#include "index/record_stamps.h"

namespace varnelo {

void RecordStamps::begin(std::size_t records) {
    const bool isTooSmall = records > stamps.size();
    if (isTooSmall || level > 0xFF - kMostLists) {
        // With some to spare: files come one by one.
        stamps.assign(isTooSmall ? records + records / 16 : stamps.size(), 0);
        level = 0;
    }
    count = records;
    base = level;
}

// Without a branch that depends on what is stamped, here and below.
std::size_t RecordStamps::stampThoseIn(const PostingMap& map, std::uint32_t list) {
    const std::uint8_t before = level++;
    const auto stampEach = [&](auto stampOne) {
        std::size_t stamped = 0;
        map.forEachSegment(list,
                           [&stamped, stampOne, end = count, to = stamps.data()](PostingSegment segment) {
                               std::size_t added = 0;
                               for (std::size_t i = 0; i < segment.count; ++i) {
                                   const std::uint32_t entry = segment.at(i);
                                   if (entry < end) added += stampOne(to[entry]);
                               }
                               stamped += added;
                           });
        return stamped;
    };
    if (before == base) {
        return stampEach([now = level](std::uint8_t& stamp) {
            const bool added = stamp != now;
            stamp = now;
            return added;
        });
    }
    return stampEach([before](std::uint8_t& stamp) {
        const bool added = stamp == before;
        stamp = static_cast<std::uint8_t>(stamp + added);
        return added;
    });
}

std::vector<std::uint32_t> RecordStamps::stampedIn(const PostingMap& map, std::uint32_t list) const {
    std::vector<std::uint32_t> found(map.roughSize(list));
    std::uint32_t* to = found.data();
    map.forEachSegment(list, [&](const PostingSegment& segment) {
        std::uint32_t* end = to;
        for (std::size_t i = 0; i < segment.count; ++i) {
            const std::uint32_t entry = segment.at(i);
            *end = entry;
            if (entry < count) end += stamps[entry] == level ? 1 : 0;
        }
        to = end;
    });
    found.resize(static_cast<std::size_t>(to - found.data()));
    return found;
}

}  // namespace varnelo
