#include "index/posting_map.h"

#include <algorithm>
#include <array>
#include <utility>

namespace varnelo {

namespace {

constexpr std::uint32_t kFirstChunkEntries = 4;
constexpr std::uint32_t kLargestChunkEntries = 65536;
constexpr std::uint32_t kLongestUnordered = 1024;
// Blocks of chunks: the first is small, each further one twice as large, up to a megabyte.
constexpr std::size_t kFirstBlockBytes = 4096;
constexpr std::size_t kBlockDoublings = 8;
// Entries wait for company up to these numbers; the first is that of the places that 16 bits can tell apart.
constexpr std::size_t kMostWaitingNames = 0x10000;
constexpr std::size_t kMostWaiting = std::size_t{1} << 20;
// Narrower keys are few, and their lists are in the cache anyway: theirs wait only to be entered in one loop.
constexpr std::size_t kDealtKeyBytes = 8;
constexpr std::size_t kMostWaitingNarrow = 2048;
constexpr std::size_t kSeen = 16384;
// Entries are dealt into so many heaps, as a power of two; fewer than kDealFrom are entered as they come.
constexpr unsigned kHeapBits = 5;
constexpr std::size_t kDealFrom = 4096;
// A list is packed when it has more removed entries than this and than others.
constexpr std::size_t kRemovedAtLeast = 64;

std::uint64_t tagOf(std::uint64_t hash) { return hash >> 44; }

// Its upper bits tell the heap that a waiting entry is dealt into, those below them its place among the keys
// seen.
std::uint64_t spread(std::uint64_t key) { return key * 0x9E3779B97F4A7C15; }

}  // namespace

std::optional<std::uint32_t> PostingMap::find(std::uint64_t key) const {
    settle();
    return findSettled(key, mixedHash(key));
}

std::optional<std::uint32_t> PostingMap::findSettled(std::uint64_t key, std::uint64_t hash) const {
    return slots.find(
        hash, [&](std::uint32_t list) { return refs[list].tag == tagOf(hash) && keyOf(list) == key; });
}

std::uint64_t PostingMap::keyOf(std::uint32_t list) const {
    const Ref& ref = refs[list];
    return ref.hasBody ? bodies[ref.at].key : storedKeyAt(ref.at);
}

std::uint64_t PostingMap::storedKeyAt(std::size_t offset) const {
    std::uint64_t key = 0;
    std::memcpy(&key, image.data() + offset, keyWidth);
    return key;
}

// The list is as long as the image has room for, whatever the file tells: it may end inside of the last list,
// and one that is shown where it lies may change beneath us.
PostingSegment PostingMap::storedAt(const Ref& ref) const {
    const std::size_t begin = ref.at + keyWidth + 8;
    std::uint64_t count = 0;
    std::memcpy(&count, image.data() + begin - 8, 8);
    count = std::min<std::uint64_t>(count, (image.size() - begin) / 4);
    return {image.data() + begin, count, ref.ascending != 0};
}

void PostingMap::findOrder(std::uint32_t list) const {
    Ref& ref = const_cast<PostingMap&>(*this).refs[list];
    const PostingSegment stored = storedAt(ref);
    ref.ascending = isAscending(stored.entries, stored.count);
    ref.orderKnown = 1;
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
    result.reserve(roughSize(list));
    forEachSegment(list, [&](const PostingSegment& segment) {
        for (std::size_t i = 0; i < segment.count; ++i) {
            if (segment.at(i) < kRemovedEntry) result.push_back(segment.at(i));
        }
    });
    return result;
}

std::uint32_t PostingMap::findOrAdd(std::uint64_t key, std::uint64_t hash) {
    if (const auto known = findSettled(key, hash)) return *known;
    const auto list = static_cast<std::uint32_t>(refs.size());
    Body body{};
    body.key = key;
    refs.push_back({bodies.size(), tagOf(hash), 1, 0, 1});
    bodies.push_back(body);
    slots.add(hash, list, [this](std::uint32_t id) { return hashOf(id); });
    return list;
}

inline PostingMap::Body& PostingMap::bodyFor(std::uint64_t key) {
    Seen& place = seen[(spread(key) >> 40) % kSeen];
    if (place.key != key) {
        const Body& body = bodyOf(findOrAdd(key, mixedHash(key)));
        place = {key, static_cast<std::uint64_t>(&body - bodies.data())};
    }
    return bodies[place.body];
}

inline void PostingMap::appendOne(std::uint64_t key, std::uint32_t index) {
    Body& body = bodyFor(key);
    if (body.tail == body.tailEnd) extend(body);
    if (mayDescend && body.tail != body.last->entries() && index < (body.tail[-1] & ~kRemovedEntry)) {
        noteDescent(body);
    }
    *body.tail++ = index;
}

void PostingMap::append(std::span<const std::uint64_t> keys, std::uint32_t index) {
    if (seen.empty()) seen.assign(kSeen, {~std::uint64_t{0}, 0});
    mayDescend = mayDescend || index < newest;
    newest = index;
    const std::size_t most = keyWidth < kDealtKeyBytes ? kMostWaitingNarrow : kMostWaiting;
    if (waitingIndices.size() == kMostWaitingNames || waiting.size() >= most) settleWaiting();
    const std::uint64_t place = waitingIndices.size();
    waitingIndices.push_back(index);
    waiting.makeRoom(keys.size());
    std::uint64_t* to = waiting.end();
    waiting.resizeUnwritten(waiting.size() + keys.size());
    for (const std::uint64_t key : keys) *to++ = key << 16 | place;
}

void PostingMap::settle() const {
    if (waiting.empty()) return;
    auto& self = const_cast<PostingMap&>(*this);
    self.settleWaiting();
    self.waiting.clear();
    self.waitingIndices.clear();
}

// Lists and their ends lie far apart. Many entries are dealt out first into heaps of keys that belong to few
// lists, which then stay in the cache while a heap is entered. Entries of one key keep their order.
void PostingMap::settleWaiting() {
    const auto enter = [&](std::uint64_t entry) { appendOne(entry >> 16, waitingIndices[entry & 0xFFFF]); };
    if (waiting.size() < kDealFrom) {
        std::for_each(waiting.begin(), waiting.end(), enter);
        waiting.resizeUnwritten(0);
        waitingIndices.resizeUnwritten(0);
        return;
    }
    const auto heapOf = [](std::uint64_t entry) { return spread(entry >> 16) >> (64 - kHeapBits); };
    std::array<std::size_t, (std::size_t{1} << kHeapBits) + 1> heaps{};
    for (const std::uint64_t entry : waiting) ++heaps[heapOf(entry) + 1];
    for (std::size_t heap = 1; heap < heaps.size(); ++heap) heaps[heap] += heaps[heap - 1];
    const auto dealt = std::make_unique_for_overwrite<std::uint64_t[]>(waiting.size());
    for (const std::uint64_t entry : waiting) dealt[heaps[heapOf(entry)]++] = entry;
    std::for_each(dealt.get(), dealt.get() + waiting.size(), enter);
    waiting.resizeUnwritten(0);
    waitingIndices.resizeUnwritten(0);
}

PostingMap::Body& PostingMap::bodyOf(std::uint32_t list) {
    Ref& ref = refs[list];
    if (ref.hasBody) return bodies[ref.at];
    if (!ref.orderKnown) findOrder(list);
    Body body{};
    body.key = keyOf(list);
    const PostingSegment stored = storedAt(ref);
    body.stored = stored.entries;
    body.storedCount = stored.count;
    body.storedAscending = stored.ascending;
    ref.at = bodies.size();
    ref.hasBody = 1;
    bodies.push_back(body);
    return bodies.back();
}

// What does not ascend is searched entry by entry when something is removed, so such chunks are kept short.
void PostingMap::noteDescent(Body& body) {
    Chunk& last = *body.last;
    const auto used = static_cast<std::uint32_t>(body.tail - last.entries());
    if (used >= kLongestUnordered) {
        last.capacity = used;
        body.tailEnd = body.tail;
        return extend(body);
    }
    last.ascending = false;
    last.capacity = std::min(last.capacity, kLongestUnordered);
    body.tailEnd = last.entries() + last.capacity;
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
        const std::size_t block =
            std::max(bytes, kFirstBlockBytes << std::min(blocks.size(), kBlockDoublings));
        blocks.push_back(std::make_unique_for_overwrite<std::uint8_t[]>(block));
        free = blocks.back().get();
        freeBytes = block;
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
    PostingSegment stored = body.storedSegment();
    std::size_t kept = 0;
    for (std::size_t i = 0; i < stored.count; ++i) {
        if (stored.at(i) < kRemovedEntry) stored.set(kept++, stored.at(i));
    }
    body.storedCount = kept;

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
    waiting.clear();
    waitingIndices.clear();
    seen.clear();
    newest = 0;
    mayDescend = false;
    image = {};
    firstEmpty = lastEmpty = std::nullopt;
    blocks.clear();
    free = nullptr;
    freeBytes = 0;
}

// Where lists are long, room to spare makes them found sooner.
void PostingMap::beginStored(std::span<std::uint8_t> storedImage, std::size_t lists) {
    constexpr std::size_t kBytesForSpareRoom = 64;
    clear();
    image = storedImage;
    refs.reserve(lists);
    slots.reserve(std::max(lists, std::min(2 * lists, image.size() / kBytesForSpareRoom)),
                  [](std::uint32_t) { return std::uint64_t{0}; });
}

void PostingMap::addStored(std::size_t offset, Order order) {
    const std::uint64_t key = storedKeyAt(offset);
    const std::uint64_t hash = mixedHash(key);
    const Ref ref{offset, tagOf(hash), 0, 0, 0};
    if (storedAt(ref).count == 0) {
        if (!firstEmpty) firstEmpty = offset;
        lastEmpty = offset;
        return;
    }
    if (findSettled(key, hash)) return;
    refs.push_back(ref);
    const auto list = static_cast<std::uint32_t>(refs.size() - 1);
    if (order == Order::FoundNow) findOrder(list);
    slots.add(hash, list, [this](std::uint32_t id) { return hashOf(id); });
}

// Where an empty list stands before one with its key, that one does not count.
void PostingMap::endStored() {
    forEachStoredEmpty([this](std::size_t offset) {
        const std::uint64_t key = storedKeyAt(offset);
        const auto list = findSettled(key, mixedHash(key));
        if (list && refs[*list].at > offset) refs[*list].at = offset;
    });
}

template <class Use>
void PostingMap::forEachStoredEmpty(Use use) const {
    if (!firstEmpty) return;
    const std::size_t headerBytes = keyWidth + 8;
    // A file that is shown where it lies may change beneath us.
    for (std::size_t at = *firstEmpty; at <= *lastEmpty && image.size() - at >= headerBytes;) {
        const std::size_t count = storedAt({at, 0, 0, 0, 0}).count;
        if (count == 0) use(at);
        at += headerBytes + 4 * count;
    }
}

std::vector<std::uint64_t> PostingMap::emptyKeys() const {
    std::vector<std::uint64_t> keys;
    forEachStoredEmpty([&](std::size_t offset) {
        const std::uint64_t key = storedKeyAt(offset);
        if (!findSettled(key, mixedHash(key))) keys.push_back(key);
    });
    std::sort(keys.begin(), keys.end());
    keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
    return keys;
}

void PostingMap::writeTo(const std::function<void(std::span<const std::uint8_t>)>& write) const {
    settle();
    const auto writeList = [&](std::uint64_t key, const void* content, std::uint64_t count) {
        write({reinterpret_cast<const std::uint8_t*>(&key), keyWidth});
        write({reinterpret_cast<const std::uint8_t*>(&count), 8});
        write({static_cast<const std::uint8_t*>(content), 4 * count});
    };
    for (std::uint32_t list = 0; list < refs.size(); ++list) {
        if (refs[list].hasBody) {
            const std::vector<std::uint32_t> left = entries(list);
            writeList(keyOf(list), left.data(), left.size());
        } else {
            const PostingSegment stored = storedAt(refs[list]);
            writeList(keyOf(list), stored.entries, stored.count);
        }
    }
    for (const std::uint64_t key : emptyKeys()) writeList(key, nullptr, 0);
}

}  // namespace varnelo
