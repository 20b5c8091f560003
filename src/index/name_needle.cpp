#include "index/name_needle.h"

#include <emmintrin.h>

#include <bit>

#include "index/grams.h"

namespace varnelo {

namespace {

__m128i eightUnits(const std::uint16_t* from) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
}

__m128i eightTimes(std::uint16_t unit) { return _mm_set1_epi16(static_cast<short>(unit)); }

__m128i lowerUnits(__m128i units) {
    const __m128i place = _mm_sub_epi16(units, eightTimes('A'));
    const __m128i capital =
        _mm_cmpeq_epi16(_mm_subs_epu16(place, eightTimes('Z' - 'A')), _mm_setzero_si128());
    return _mm_add_epi16(units, _mm_and_si128(capital, eightTimes('a' - 'A')));
}

// Two bits a unit.
unsigned bitsOf(__m128i mask) { return static_cast<unsigned>(_mm_movemask_epi8(mask)); }

}  // namespace

bool NameNeedle::isIn(NameUnits name) const {
    const __m128i first = eightTimes(text[0]);
    const __m128i second = eightTimes(text[1]);
    for (std::size_t at = 0; at + text.size() <= name.size(); at += 8) {
        const __m128i units = lowerUnits(eightUnits(name.data() + at));
        const __m128i next = lowerUnits(eightUnits(name.data() + at + 1));
        unsigned hits = bitsOf(_mm_and_si128(_mm_cmpeq_epi16(units, first), _mm_cmpeq_epi16(next, second)));
        for (; hits != 0; hits &= hits - 1, hits &= hits - 1) {
            const std::size_t begin = at + static_cast<std::size_t>(std::countr_zero(hits)) / 2;
            if (begin + text.size() > name.size()) return false;
            std::size_t same = 2;
            while (same < text.size() && lowerNameUnit(name[begin + same]) == text[same]) ++same;
            if (same == text.size()) return true;
        }
    }
    return false;
}

}  // namespace varnelo
