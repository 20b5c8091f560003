#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace varnelo {

// The little-endian number at `offset` of untrusted bytes; nothing when it does not lie within them.
template <class Unsigned>
std::optional<Unsigned> fieldAt(std::span<const std::uint8_t> bytes, std::size_t offset) {
    if (offset > bytes.size() || bytes.size() - offset < sizeof(Unsigned)) return std::nullopt;
    Unsigned value = 0;
    for (std::size_t i = 0; i < sizeof value; ++i) {
        value = static_cast<Unsigned>(value | static_cast<Unsigned>(bytes[offset + i]) << (8 * i));
    }
    return value;
}

// What is known to be there.
template <class Unsigned>
Unsigned knownField(std::span<const std::uint8_t> bytes, std::size_t offset) {
    return fieldAt<Unsigned>(bytes, offset).value_or(0);
}

}  // namespace varnelo
