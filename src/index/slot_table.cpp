#include "index/slot_table.h"

#include <random>

namespace varnelo {

namespace {

std::uint64_t newSeed() {
    std::random_device random;
    return std::uint64_t{random()} << 32 | random();
}

const std::uint64_t seed = newSeed();

}  // namespace

std::uint64_t mixedHash(std::uint64_t key) {
    std::uint64_t x = (key ^ seed) * 0x9E3779B97F4A7C15;
    x ^= x >> 32;
    x *= 0xD6E8FEB86659FD93;
    return x ^ x >> 32;
}

}  // namespace varnelo
