#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "index/flat_array.h"
#include "index/posting_list.h"
#include "index/slot_table.h"

namespace varnelo {

// From a gram to the records whose names hold it: what a map of vectors would be, for tens of millions of
// entries. A list keeps the order of its entries and every duplicate. Lists stand in the order in which they
// came; one that becomes empty stays.
//
// A list that came from a file lies where it was read to, key and count before its entries, and costs a dozen
// bytes more, or none if it is empty. Only when it changes does it get a body of its own, to which chunks of
// new entries are chained; what is removed is marked in place.
//
// New entries are collected: a million names have twenty million threes, and each would otherwise cost a few
// misses of the cache.
class PostingMap {
public:
    // `keyBytes` is the width of a key in a file: 2, 4 or 8.
    explicit PostingMap(std::size_t keyBytes) : keyWidth(keyBytes) {}

    // Lists, empty ones included.
    std::size_t size() const {
        settle();
        return refs.size() + emptyKeys().size();
    }
    // None for a list that was empty in a file.
    std::optional<std::uint32_t> find(std::uint64_t key) const;
    std::uint64_t keyOf(std::uint32_t list) const;

    // Calls use(segment) for the runs of the list, in order. Removed entries must be passed over, and nothing
    // is known of an entry that came from a file.
    template <class Use>
    void forEachSegment(std::uint32_t list, Use use) const;
    // Calls use(key, segment) for the runs of all lists.
    template <class Use>
    void forEachList(Use use) const;
    // Entries, those removed but not yet packed away included.
    std::size_t roughSize(std::uint32_t list) const;
    // The list as its readers see it.
    std::vector<std::uint32_t> entries(std::uint32_t list) const;

    // Appends `index` to the list of each key in turn. Keys have 48 bits. Entries wait until there
    // are many of them, or until somebody asks for a list.
    void append(std::span<const std::uint64_t> keys, std::uint32_t index);
    // Takes every occurrence of `index` out of the key's list.
    void remove(std::uint64_t key, std::uint32_t index);
    void clear();

    // Lists of a file follow, so many at most that are not empty, in memory that stays alive and writable
    // until clear(). Clears.
    void beginStored(std::span<std::uint8_t> storedImage, std::size_t lists);
    // The list whose key stands at `offset` of the image, behind those added before; of two with one key the
    // first stays. Whether it ascends is found out by reading all of it.
    enum class Order { FoundNow, FoundWhenAsked };
    void addStored(std::size_t offset, Order order = Order::FoundNow);
    void endStored();

    // Hands the bytes of all lists, as a file holds them, to `write`.
    void writeTo(const std::function<void(std::span<const std::uint8_t>)>& write) const;

private:
    struct Chunk {
        Chunk* next;
        std::uint32_t capacity;
        bool ascending;
        std::uint32_t* entries() { return reinterpret_cast<std::uint32_t*>(this + 1); }
    };
    // `at` is an offset in the image, or a place in `bodies`.
    struct Ref {
        std::uint64_t at : 40;
        std::uint64_t tag : 20;  // upper bits of the key's hash
        std::uint64_t orderKnown : 1;
        std::uint64_t ascending : 1;
        std::uint64_t hasBody : 1;
    };
    struct Body {
        std::uint64_t key;
        std::uint32_t* tail;  // where the next entry goes, in `last`
        std::uint32_t* tailEnd;
        bool storedAscending;
        Chunk* last;
        Chunk* first;  // chunks behind `last` are empty and wait
        std::uint8_t* stored;
        std::size_t storedCount;
        std::size_t removed;  // marked entries

        PostingSegment storedSegment() const { return {stored, storedCount, storedAscending}; }
    };

    std::uint64_t hashOf(std::uint32_t list) const { return mixedHash(keyOf(list)); }
    std::optional<std::uint32_t> findSettled(std::uint64_t key, std::uint64_t hash) const;
    std::uint32_t findOrAdd(std::uint64_t key, std::uint64_t hash);
    std::uint64_t storedKeyAt(std::size_t offset) const;
    PostingSegment storedAt(const Ref& ref) const;
    // Calls use(offset) for the empty lists of the file.
    template <class Use>
    void forEachStoredEmpty(Use use) const;
    // Of those among them that nothing was added to.
    std::vector<std::uint64_t> emptyKeys() const;
    // Finds out whether a stored list ascends. Like settle() in what it changes.
    void findOrder(std::uint32_t list) const;
    static PostingSegment segmentOf(const Body& body, Chunk* chunk);
    // Enters what waits. Changes nothing that can be seen, so that readers may call it; they hold the index
    // mutex like everybody else.
    void settle() const;
    void settleWaiting();
    void appendOne(std::uint64_t key, std::uint32_t index);
    Body& bodyOf(std::uint32_t list);
    Body& bodyFor(std::uint64_t key);
    void noteDescent(Body& body);
    void extend(Body& body);
    void pack(Body& body);
    std::uint8_t* allocate(std::size_t bytes);

    std::size_t keyWidth;
    SlotTable slots;
    FlatArray<Ref> refs;
    FlatArray<Body> bodies;
    std::span<std::uint8_t> image;
    // The first and the last empty list in the image.
    std::optional<std::size_t> firstEmpty, lastEmpty;
    // Entries that wait: the key and, in the low 16 bits, a place in `waitingIndices`.
    FlatArray<std::uint64_t> waiting;
    FlatArray<std::uint32_t> waitingIndices;
    std::uint32_t newest = 0;  // the index that was appended last
    bool mayDescend = false;   // it was not always the largest so far
    // The bodies of keys seen lately: most entries find theirs here.
    struct Seen {
        std::uint64_t key;
        std::uint64_t body;
    };
    FlatArray<Seen> seen;
    std::vector<std::unique_ptr<std::uint8_t[]>> blocks;  // hold the chunks
    std::uint8_t* free = nullptr;                         // in the last block
    std::size_t freeBytes = 0;
};

template <class Use>
void PostingMap::forEachSegment(std::uint32_t list, Use use) const {
    const Ref& ref = refs[list];
    if (!ref.hasBody) {
        if (!ref.orderKnown) findOrder(list);
        return use(storedAt(ref));
    }
    const Body& body = bodies[ref.at];
    if (body.storedCount != 0) use(body.storedSegment());
    for (Chunk* chunk = body.first; chunk != nullptr; chunk = chunk->next) {
        use(segmentOf(body, chunk));
        if (chunk == body.last) break;
    }
}

template <class Use>
void PostingMap::forEachList(Use use) const {
    settle();
    for (std::uint32_t list = 0; list < refs.size(); ++list) {
        forEachSegment(list, [&](const PostingSegment& segment) { use(keyOf(list), segment); });
    }
}

}  // namespace varnelo
