#include "index/unit_places.h"

#include <gtest/gtest.h>

#include <map>

#include "index/grams.h"

namespace varnelo {
namespace {

using Units = std::vector<std::uint16_t>;

TEST(UnitPlaces, ThoseOfAnyUnitAtAnyPlaceAreThoseOfAPlainLoop) {
    // Among them all whose low or high byte is that of another, and the first and last of each kind.
    const Units wanted = {'a',    'k',    'z',    'A',    'Z',    '.',    '@',    '[',    '`',
                          '{',    '0',    ' ',    1,      0,      0x7E,   0x7F,   0x80,   0xE4,
                          0xFF,   0x100,  0x161,  0x12E,  0x212A, 0x6100, 0x7FFF, 0x8000, 0x8061,
                          0xD800, 0xDFFF, 0xFF00, 0xFF2E, 0xFF61, 0xFF80, 0xFFFF};
    std::map<std::uint16_t, std::size_t> numbers;
    for (std::size_t number = 0; number < wanted.size(); ++number) numbers[wanted[number]] = number;
    const UnitPlaces places(wanted);
    constexpr std::size_t kUnits = 0x10000;
    constexpr std::size_t kWords = kUnits / UnitPlaces::kPlacesInWord;
    constexpr std::size_t kStride = kWords + 3;
    for (std::size_t shift = 0; shift < UnitPlaces::kPlacesInWord; ++shift) {
        Units units(kUnits);
        std::vector<std::uint64_t> expected(wanted.size() * kStride, 0);
        std::vector<std::uint64_t> expectedEnds(kWords, 0);
        for (std::size_t i = 0; i < kUnits; ++i) {
            units[i] = static_cast<std::uint16_t>(i + shift);
            const std::uint64_t bit = std::uint64_t{1} << i % 64;
            if (units[i] == 0) expectedEnds[i / 64] |= bit;
            const auto number = numbers.find(lowerNameUnit(units[i]));
            if (number == numbers.end() || units[i] == 0) continue;
            expected[number->second * kStride + i / 64] |= bit;
        }
        std::vector<std::uint64_t> found(wanted.size() * kStride, 0);
        std::vector<std::uint64_t> ends(kWords);
        places.find(units.data(), kWords, ends.data(), found.data(), kStride);
        ASSERT_EQ(ends, expectedEnds) << shift;
        ASSERT_EQ(found, expected) << shift;
    }
}

}  // namespace
}  // namespace varnelo
