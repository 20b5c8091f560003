#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <type_traits>

namespace varnelo {

// A number that may lie at any address: a file maps its fields to where they stand in it. It is read and
// written as a whole; there is no reference to the number itself, which would have to be aligned.
template <class Number>
class Unaligned {
    static_assert(std::is_unsigned_v<Number>);

public:
    constexpr Unaligned(Number value = 0) : bytes(std::bit_cast<Bytes>(value)) {}
    constexpr operator Number() const { return std::bit_cast<Number>(bytes); }
    constexpr Unaligned& operator|=(Number bits) { return *this = *this | bits; }

private:
    using Bytes = std::array<std::uint8_t, sizeof(Number)>;
    Bytes bytes;
};

}  // namespace varnelo
