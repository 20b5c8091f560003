#include "index/posting_map.h"

#include <algorithm>
#include <array>

namespace varnelo {

namespace {

constexpr std::uint32_t kFirstChunkEntries = 4;
constexpr std::uint32_t kLargestChunkEntries = 16384;
constexpr std::size_t kBlockBytes = std::size_t{1} << 20;
// A list is packed when it has more removed entries than this and than others.
constexpr std::size_t kRemovedAtLeast = 64;

std::uint64_t tagOf(std::uint64_t hash) { return hash >> 43; }

}  // namespace

std::optional<std::uint32_t> PostingMap::find(std::uint64_t key) const { return find(key, mixedHash(key)); }

std::optional<std::uint32_t> PostingMap::find(std::uint64_t key, std::uint64_t hash) const {
    return slots.find(
        hash, [&](std::uint32_t list) { return refs[list].tag == tagOf(hash) && keyOf(list) == key; });
}

std::uint64_t PostingMap::keyOf(std::uint32_t list) const {
    const Ref& ref = refs[list];
    if (ref.hasBody) return bodies[ref.at].key;
    std::uint64_t key = 0;
    std::memcpy(&key, image + ref.at, keyWidth);
    return key;
}

PostingSegment PostingMap::storedAt(const Ref& ref) const {
    std::uint64_t count = 0;
    std::memcpy(&count, image + ref.at + keyWidth, 8);
    return {image + ref.at + keyWidth + 8, count, ref.ascending != 0};
}

PostingSegment PostingMap::segmentOf(const Body& body, Chunk* chunk) {
    const std::size_t count =
        chunk == body.last ? static_cast<std::size_t>(body.tail - chunk->entries()) : chunk->capacity;
    return {reinterpret_cast<std::uint8_t*>(chunk->entries()), count, chunk->ascending};
}

std::size_t PostingMap::roughSize(std::uint32_t list) const {
    std::size_t count = 0;
    forEachSegment(list, [&](const PostingSegment& segment) { count += segment.count; });
    return count;
}

std::vector<std::uint32_t> PostingMap::entries(std::uint32_t list) const {
    std::vector<std::uint32_t> result;
    forEachSegment(list, [&](const PostingSegment& segment) {
        for (std::size_t i = 0; i < segment.count; ++i) {
            if (segment.at(i) < kRemovedEntry) result.push_back(segment.at(i));
        }
    });
    return result;
}

std::uint32_t PostingMap::findOrAdd(std::uint64_t key, std::uint64_t hash) {
    if (const auto known = find(key, hash)) return *known;
    const auto list = static_cast<std::uint32_t>(refs.size());
    Body body{};
    body.key = key;
    refs.push_back({bodies.size(), tagOf(hash), 0, 0, 1});
    bodies.push_back(body);
    slots.add(hash, list, [this](std::uint32_t id) { return hashOf(id); });
    return list;
}

// Finding a list and writing its end are three misses of the cache one after the other; done in three sweeps
// over the grams of a name, those of different grams overlap.
void PostingMap::append(std::span<const std::uint64_t> keys, std::uint32_t index) {
    constexpr std::size_t kAtOnce = 64;
    std::array<std::uint64_t, kAtOnce> hashes;
    std::array<std::uint32_t, kAtOnce> lists;
    while (!keys.empty()) {
        const std::size_t count = std::min(keys.size(), kAtOnce);
        for (std::size_t i = 0; i < count; ++i) {
            hashes[i] = mixedHash(keys[i]);
            __builtin_prefetch(slots.home(hashes[i]));
        }
        for (std::size_t i = 0; i < count; ++i) {
            lists[i] = findOrAdd(keys[i], hashes[i]);
            if (refs[lists[i]].hasBody) __builtin_prefetch(&bodies[refs[lists[i]].at].tail);
        }
        for (std::size_t i = 0; i < count; ++i) {
            Body& body = bodyOf(lists[i]);
            if (body.tail == body.tailEnd) extend(body);
            if (body.tail != body.last->entries() && index < (body.tail[-1] & ~kRemovedEntry)) {
                body.last->ascending = false;
            }
            *body.tail++ = index;
        }
        keys = keys.subspan(count);
    }
}

PostingMap::Body& PostingMap::bodyOf(std::uint32_t list) {
    Ref& ref = refs[list];
    if (ref.hasBody) return bodies[ref.at];
    Body body{};
    body.key = keyOf(list);
    body.stored = storedAt(ref);
    ref.at = bodies.size();
    ref.hasBody = 1;
    bodies.push_back(body);
    return bodies.back();
}

void PostingMap::extend(Body& body) {
    Chunk* next = body.last != nullptr ? body.last->next : body.first;
    if (next == nullptr) {
        const std::uint32_t capacity = body.last == nullptr
                                           ? kFirstChunkEntries
                                           : std::min(body.last->capacity * 2, kLargestChunkEntries);
        next = reinterpret_cast<Chunk*>(allocate(sizeof(Chunk) + capacity * sizeof(std::uint32_t)));
        *next = {nullptr, capacity, true};
        (body.last != nullptr ? body.last->next : body.first) = next;
    }
    next->ascending = true;
    body.last = next;
    body.tail = next->entries();
    body.tailEnd = body.tail + next->capacity;
}

std::uint8_t* PostingMap::allocate(std::size_t bytes) {
    if (bytes > freeBytes) {
        blocks.push_back(std::make_unique_for_overwrite<std::uint8_t[]>(kBlockBytes));
        free = blocks.back().get();
        freeBytes = kBlockBytes;
    }
    std::uint8_t* result = free;
    free += bytes;
    freeBytes -= bytes;
    return result;
}

void PostingMap::remove(std::uint64_t key, std::uint32_t index) {
    const auto list = find(key);
    if (!list) return;
    Body& body = bodyOf(*list);
    std::size_t count = 0;
    forEachSegment(*list, [&](PostingSegment segment) {
        body.removed += segment.remove(index);
        count += segment.count;
    });
    if (body.removed > std::max(kRemovedAtLeast, count - body.removed)) pack(body);
}

// Moves what is left to the front. Chunks that become empty wait for new entries.
void PostingMap::pack(Body& body) {
    PostingSegment& stored = body.stored;
    std::size_t kept = 0;
    for (std::size_t i = 0; i < stored.count; ++i) {
        if (stored.at(i) < kRemovedEntry) stored.set(kept++, stored.at(i));
    }
    stored.count = kept;

    Body packed = body;
    packed.last = nullptr;
    packed.tail = packed.tailEnd = nullptr;
    packed.removed = 0;
    for (Chunk* chunk = body.first; chunk != nullptr && body.last != nullptr; chunk = chunk->next) {
        const std::size_t count = segmentOf(body, chunk).count;
        const bool isLast = chunk == body.last;
        for (std::size_t i = 0; i < count; ++i) {
            const std::uint32_t entry = chunk->entries()[i];
            if (entry >= kRemovedEntry) continue;
            if (packed.tail == packed.tailEnd) extend(packed);
            if (packed.tail != packed.last->entries() && entry < packed.tail[-1])
                packed.last->ascending = false;
            *packed.tail++ = entry;
        }
        if (isLast) break;
    }
    body = packed;
}

void PostingMap::clear() {
    slots.clear();
    refs.clear();
    bodies.clear();
    image = nullptr;
    blocks.clear();
    free = nullptr;
    freeBytes = 0;
}

void PostingMap::beginStored(std::uint8_t* newImage, std::size_t lists) {
    clear();
    image = newImage;
    refs.reserve(lists);
    slots.reserve(lists, [](std::uint32_t) { return std::uint64_t{0}; });
}

void PostingMap::addStored(std::size_t offset) {
    std::uint64_t key = 0;
    std::memcpy(&key, image + offset, keyWidth);
    const std::uint64_t hash = mixedHash(key);
    if (find(key, hash)) return;
    Ref ref{offset, tagOf(hash), 0, 0, 0};
    const PostingSegment list = storedAt(ref);
    ref.ascending = isAscending(list.entries, list.count);
    refs.push_back(ref);
    slots.add(hash, static_cast<std::uint32_t>(refs.size() - 1),
              [this](std::uint32_t id) { return hashOf(id); });
}

void PostingMap::writeTo(const std::function<void(std::span<const std::uint8_t>)>& write) const {
    for (std::uint32_t list = 0; list < refs.size(); ++list) {
        if (!refs[list].hasBody) {
            const PostingSegment stored = storedAt(refs[list]);
            write({image + refs[list].at, keyWidth + 8 + 4 * stored.count});
            continue;
        }
        const std::uint64_t key = keyOf(list);
        const std::vector<std::uint32_t> left = entries(list);
        const std::uint64_t count = left.size();
        write({reinterpret_cast<const std::uint8_t*>(&key), keyWidth});
        write({reinterpret_cast<const std::uint8_t*>(&count), 8});
        write({reinterpret_cast<const std::uint8_t*>(left.data()), 4 * left.size()});
    }
}

}  // namespace varnelo
