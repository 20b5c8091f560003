#pragma once

#include <cstdint>
#include <optional>

#include "index/flat_array.h"

namespace varnelo {

// Another one in every run, so that no file can be made whose keys all meet.
extern const std::uint64_t hashSeed;

// Spreads a key over 64 bits.
inline std::uint64_t mixedHash(std::uint64_t key) {
    std::uint64_t x = (key ^ hashSeed) * 0x9E3779B97F4A7C15;
    x ^= x >> 32;
    x *= 0xD6E8FEB86659FD93;
    return x ^ x >> 32;
}

// A hash table of u32 ids, four bytes a slot, at most four fifths full. What an id stands for is the
// caller's: it hands in the comparison, and the hash of an id when entries move. Probing is linear.
class SlotTable {
public:
    template <class IsSame>
    std::optional<std::uint32_t> find(std::uint64_t hash, IsSame isSame) const {
        const std::size_t slot = slotOf(hash, isSame);
        if (slot == kNone) return std::nullopt;
        return slots[slot] - 1;
    }
    // Puts `id` in the place of the id for which isSame() holds, or enters it.
    template <class IsSame, class HashOf>
    void put(std::uint64_t hash, std::uint32_t id, IsSame isSame, HashOf hashOf) {
        const std::size_t slot = slotOf(hash, isSame);
        if (slot != kNone) {
            slots[slot] = id + 1;
        } else {
            add(hash, id, hashOf);
        }
    }
    // For an id that is known not to be there.
    template <class HashOf>
    void add(std::uint64_t hash, std::uint32_t id, HashOf hashOf) {
        if ((used + 1) * 5 > slots.size() * 4) grow(2 * used + 12, hashOf);
        place(hash, id + 1);
        ++used;
    }
    template <class IsSame, class HashOf>
    void erase(std::uint64_t hash, IsSame isSame, HashOf hashOf) {
        std::size_t hole = slotOf(hash, isSame);
        if (hole == kNone) return;
        // Whoever stands behind the hole and could not be found across it moves into it.
        for (std::size_t next = behind(hole); slots[next] != 0; next = behind(next)) {
            const std::size_t home = homeOf(hashOf(slots[next] - 1));
            if (distance(home, next) < distance(hole, next)) continue;
            slots[hole] = slots[next];
            hole = next;
        }
        slots[hole] = 0;
        --used;
    }
    template <class HashOf>
    void reserve(std::size_t ids, HashOf hashOf) {
        if (ids * 5 > slots.size() * 4) grow(ids, hashOf);
    }
    std::size_t size() const { return used; }
    void clear() {
        slots.clear();
        used = 0;
    }
    // Where find(hash) will look first: for a prefetch.
    const void* home(std::uint64_t hash) const { return slots.empty() ? nullptr : &slots[homeOf(hash)]; }

private:
    static constexpr std::size_t kNone = ~std::size_t{0};

    // The lower half of the hash tells it, as a share of all slots; the upper bits are the callers'.
    std::size_t homeOf(std::uint64_t hash) const { return (hash & 0xFFFFFFFF) * slots.size() >> 32; }
    std::size_t behind(std::size_t slot) const { return slot + 1 == slots.size() ? 0 : slot + 1; }
    std::size_t distance(std::size_t from, std::size_t to) const {
        return to >= from ? to - from : to + slots.size() - from;
    }

    template <class IsSame>
    std::size_t slotOf(std::uint64_t hash, IsSame isSame) const {
        if (slots.empty()) return kNone;
        for (std::size_t slot = homeOf(hash); slots[slot] != 0; slot = behind(slot)) {
            if (isSame(slots[slot] - 1)) return slot;
        }
        return kNone;
    }
    void place(std::uint64_t hash, std::uint32_t stored) {
        std::size_t slot = homeOf(hash);
        while (slots[slot] != 0) slot = behind(slot);
        slots[slot] = stored;
    }
    template <class HashOf>
    void grow(std::size_t ids, HashOf hashOf) {
        const FlatArray<std::uint32_t> old = std::move(slots);
        slots = {};
        slots.assign(ids + ids / 4 + 1, 0);
        for (const std::uint32_t stored : old) {
            if (stored != 0) place(hashOf(stored - 1), stored);
        }
    }

    FlatArray<std::uint32_t> slots;  // id + 1, 0 for none
    std::size_t used = 0;
};

}  // namespace varnelo
