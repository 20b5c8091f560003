#include "index/unit_places.h"

#include <algorithm>

#include "index/unit_vector.h"

namespace varnelo {

namespace {

constexpr std::uint8_t kCaseBit = 'a' - 'A';
// Asked for from memory beforehand.
constexpr std::size_t kAheadUnits = 2048;

std::uint64_t bitsOf(__m128i mask) { return static_cast<std::uint64_t>(_mm_movemask_epi8(mask)); }

// 64 bytes.
struct Quad {
    __m128i a, b, c, d;
};

std::uint64_t placesOf(const Quad& units, __m128i wanted) {
    return bitsOf(_mm_cmpeq_epi8(units.a, wanted)) | bitsOf(_mm_cmpeq_epi8(units.b, wanted)) << 16 |
           bitsOf(_mm_cmpeq_epi8(units.c, wanted)) << 32 | bitsOf(_mm_cmpeq_epi8(units.d, wanted)) << 48;
}

std::uint64_t widePlaces(const std::uint16_t* units, __m128i wanted) {
    return bitsOf(_mm_packs_epi16(_mm_cmpeq_epi16(loadVector(units), wanted),
                                  _mm_cmpeq_epi16(loadVector(units + 8), wanted)));
}

std::uint64_t allWidePlaces(const std::uint16_t* units, __m128i wanted) {
    return widePlaces(units, wanted) | widePlaces(units + 16, wanted) << 16 |
           widePlaces(units + 32, wanted) << 32 | widePlaces(units + 48, wanted) << 48;
}

}  // namespace

UnitPlaces::UnitPlaces(std::span<const std::uint16_t> loweredUnits) {
    for (std::size_t number = 0; number < loweredUnits.size(); ++number) {
        Wanted wanted{{}, loweredUnits[number], number};
        wanted.bytes.fill(static_cast<std::uint8_t>(wanted.unit));
        if (wanted.unit == 0 || (wanted.unit >= 'A' && wanted.unit <= 'Z')) {
            nowhere.push_back(number);
        } else if (wanted.unit >= 'a' && wanted.unit <= 'z') {
            letters.push_back(wanted);
        } else {
            (isNarrow(wanted.unit) ? otherAscii : wide).push_back(wanted);
        }
    }
}

void UnitPlaces::find(const std::uint16_t* units, std::size_t words, std::uint64_t* ends,
                      std::uint64_t* places, std::size_t stride) const {
    for (const std::size_t number : nowhere) std::fill_n(places + number * stride, words, 0);
    const __m128i caseBit = _mm_set1_epi8(kCaseBit);
    for (std::size_t w = 0; w < words; ++w, units += kPlacesInWord) {
        __builtin_prefetch(units + kAheadUnits);
        __builtin_prefetch(units + kAheadUnits + kPlacesInWord / 2);
        const Quad exact{narrowed(units), narrowed(units + 16), narrowed(units + 32), narrowed(units + 48)};
        ends[w] = placesOf(exact, _mm_setzero_si128());
        for (const Wanted& one : otherAscii) {
            places[one.number * stride + w] = placesOf(exact, loadVector(one.bytes.data()));
        }
        // The bit makes a letter of a capital, and a letter of nothing else.
        const Quad folded{_mm_or_si128(exact.a, caseBit), _mm_or_si128(exact.b, caseBit),
                          _mm_or_si128(exact.c, caseBit), _mm_or_si128(exact.d, caseBit)};
        for (const Wanted& one : letters) {
            places[one.number * stride + w] = placesOf(folded, loadVector(one.bytes.data()));
        }
        for (const Wanted& one : wide) {
            places[one.number * stride + w] =
                allWidePlaces(units, _mm_set1_epi16(static_cast<short>(one.unit)));
        }
    }
}

}  // namespace varnelo
