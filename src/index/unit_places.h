#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace varnelo {

// Finds where some units stand in a stretch of the name pool, letters folded, sixteen places at a time. A bit
// tells a place, the lowest one that of the first unit.
class UnitPlaces {
public:
    static constexpr std::size_t kPlacesInWord = 64;

    // Each of the lower-cased units once. A capital or a NUL is nowhere: no lower-cased name holds one.
    explicit UnitPlaces(std::span<const std::uint16_t> loweredUnits);

    // Reads `words` times 64 units. Word w of the unit that was named as number k goes to
    // places[k * stride + w], the places of NULs to ends[w].
    void find(const std::uint16_t* units, std::size_t words, std::uint64_t* ends, std::uint64_t* places,
              std::size_t stride) const;

private:
    // One unit, as often as a vector holds it.
    struct Wanted {
        alignas(16) std::array<std::uint8_t, 16> bytes;
        std::uint16_t unit;
        std::size_t number;
    };

    std::vector<Wanted> letters;
    std::vector<Wanted> otherAscii;
    std::vector<Wanted> wide;
    std::vector<std::size_t> nowhere;
};

}  // namespace varnelo
