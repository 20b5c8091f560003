#pragma once

#include <emmintrin.h>

#include <cstdint>

namespace varnelo {

// Units of names, eight or sixteen at a time.

inline __m128i loadVector(const void* from) { return _mm_loadu_si128(static_cast<const __m128i*>(from)); }

// A byte for each of 16 units. Those of ASCII keep their value. Behind them units become DEL, and negative
// ones stay negative, so that no unit but the NUL becomes 0.
inline __m128i narrowed(const std::uint16_t* units) {
    return _mm_packs_epi16(loadVector(units), loadVector(units + 8));
}

// Whether the byte that narrowed() makes of a unit is that of no other; the NUL left aside.
constexpr bool isNarrow(std::uint16_t unit) { return unit != 0 && unit < 0x7F; }

}  // namespace varnelo
