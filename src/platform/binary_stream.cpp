#include "platform/binary_stream.h"

#include <bit>

namespace varnelo {

template <class Unsigned>
Unsigned BinaryReader::number() {
    const auto source = bytes(sizeof(Unsigned));
    Unsigned value = 0;
    for (std::size_t i = 0; i < source.size(); ++i) {
        value = static_cast<Unsigned>(value | static_cast<Unsigned>(source[i]) << (8 * i));
    }
    return value;
}

std::uint8_t BinaryReader::u8() { return number<std::uint8_t>(); }
std::uint16_t BinaryReader::u16() { return number<std::uint16_t>(); }
std::uint32_t BinaryReader::u32() { return number<std::uint32_t>(); }
std::uint64_t BinaryReader::u64() { return number<std::uint64_t>(); }
std::int32_t BinaryReader::i32() { return static_cast<std::int32_t>(u32()); }
std::int64_t BinaryReader::i64() { return static_cast<std::int64_t>(u64()); }
float BinaryReader::f32() { return std::bit_cast<float>(u32()); }

std::span<const std::uint8_t> BinaryReader::bytes(std::uint64_t count) {
    if (!ok || count > rest.size()) {
        fail();
        return {};
    }
    const auto result = rest.first(static_cast<std::size_t>(count));
    rest = rest.subspan(result.size());
    return result;
}

std::wstring BinaryReader::units(std::uint64_t count) {
    if (!ok || count > rest.size() / 2) {
        fail();
        return {};
    }
    std::wstring result(static_cast<std::size_t>(count), L'\0');
    for (wchar_t& unit : result) unit = static_cast<wchar_t>(u16());
    return result;
}

std::wstring BinaryReader::text() { return units(u32()); }

void BinaryReader::fail() {
    ok = false;
    rest = {};
}

template <class Unsigned>
void BinaryWriter::number(Unsigned value) {
    for (std::size_t i = 0; i < sizeof value; ++i)
        data.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}

void BinaryWriter::u8(std::uint8_t value) { number(value); }
void BinaryWriter::u16(std::uint16_t value) { number(value); }
void BinaryWriter::u32(std::uint32_t value) { number(value); }
void BinaryWriter::u64(std::uint64_t value) { number(value); }
void BinaryWriter::i32(std::int32_t value) { number(static_cast<std::uint32_t>(value)); }
void BinaryWriter::i64(std::int64_t value) { number(static_cast<std::uint64_t>(value)); }
void BinaryWriter::f32(float value) { number(std::bit_cast<std::uint32_t>(value)); }

void BinaryWriter::bytes(std::span<const std::uint8_t> values) {
    data.insert(data.end(), values.begin(), values.end());
}

void BinaryWriter::units(std::wstring_view values) {
    for (const wchar_t unit : values) u16(static_cast<std::uint16_t>(unit));
}

void BinaryWriter::text(std::wstring_view value) {
    u32(static_cast<std::uint32_t>(value.size()));
    units(value);
}

}  // namespace varnelo
