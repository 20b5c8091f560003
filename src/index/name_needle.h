#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "index/name_pool.h"

namespace varnelo {

// A text of two units or more that is looked for inside of the names of a pool, letters folded.
class NameNeedle {
public:
    NameNeedle(std::span<const std::uint16_t> loweredText, const NamePool& pool);

    bool isInNameAt(std::uint32_t offset) const;

private:
    static constexpr std::size_t kBeginning = 4;
    // One unit as often as a vector holds it, and what makes it of its capital.
    struct Wanted {
        alignas(16) std::array<std::uint8_t, 16> unit;
        alignas(16) std::array<std::uint8_t, 16> caseBit;
    };

    bool restStandsAt(const std::uint16_t* units) const;
    // A place at a time.
    bool isIn(NameUnits name) const;

    const NamePool& names;
    std::vector<std::uint16_t> text;
    bool inWindows = false;  // the text is one that can be looked for at many places at once
    std::array<Wanted, kBeginning> beginning;
};

}  // namespace varnelo
