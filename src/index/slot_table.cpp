#include "index/slot_table.h"

#include <random>

namespace varnelo {

namespace {

std::uint64_t newSeed() {
    std::random_device random;
    return std::uint64_t{random()} << 32 | random();
}

}  // namespace

const std::uint64_t hashSeed = newSeed();

}  // namespace varnelo
