#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace varnelo {

// Reads little-endian values from a block of bytes that must stay alive and unchanged meanwhile. The first
// read that does not fit fails for good: it and all later reads give zero or nothing, so a long parse reads
// straight and asks good() where it matters. Nothing is allocated before the count is known to fit.
class BinaryReader {
public:
    explicit BinaryReader(std::span<const std::uint8_t> data) : rest(data) {}

    std::uint8_t u8();
    std::uint16_t u16();
    std::uint32_t u32();
    std::uint64_t u64();
    std::int32_t i32();
    std::int64_t i64();
    float f32();  // IEEE 754, any bit pattern

    // A view into the block, `count` bytes long or empty.
    std::span<const std::uint8_t> bytes(std::uint64_t count);
    // `count` UTF-16 units, one for each wchar_t; lone surrogates pass.
    std::wstring units(std::uint64_t count);
    // The form in which files store a string: a 32-bit count of units, then the units.
    std::wstring text();

    bool good() const { return ok; }
    std::size_t remaining() const { return rest.size(); }
    // Makes the reader fail: for a value that was read but cannot be right.
    void fail();

private:
    template <class Unsigned>
    Unsigned number();

    std::span<const std::uint8_t> rest;
    bool ok = true;
};

// Collects little-endian values in memory.
class BinaryWriter {
public:
    void u8(std::uint8_t value);
    void u16(std::uint16_t value);
    void u32(std::uint32_t value);
    void u64(std::uint64_t value);
    void i32(std::int32_t value);
    void i64(std::int64_t value);
    void f32(float value);
    void bytes(std::span<const std::uint8_t> values);
    // The low 16 bits of each wchar_t, without a count.
    void units(std::wstring_view values);
    // A 32-bit count of units, then the units.
    void text(std::wstring_view value);

    const std::vector<std::uint8_t>& bytes() const { return data; }
    std::vector<std::uint8_t> take() { return std::move(data); }

private:
    template <class Unsigned>
    void number(Unsigned value);

    std::vector<std::uint8_t> data;
};

}  // namespace varnelo
