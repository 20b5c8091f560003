#pragma once

#include <cstdint>

#include "index/slot_table.h"

namespace varnelo {

// Eight neighbours of a volume share a cache line of the table: a scan and a load enter them in their order.
inline std::uint64_t recordKeyHash(std::uint64_t key) {
    return (mixedHash(key >> 3) & ~std::uint64_t{7}) | (key & 7);
}

}  // namespace varnelo
