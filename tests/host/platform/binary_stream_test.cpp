#include "platform/binary_stream.h"

#include <gtest/gtest.h>

#include <bit>
#include <limits>
#include <random>

namespace varnelo {
namespace {

using Bytes = std::vector<std::uint8_t>;

TEST(BinaryWriter, WritesLittleEndianBytes) {
    BinaryWriter out;
    out.u8(0x01);
    out.u16(0x0302);
    out.u32(0x07060504);
    out.u64(0x0F0E0D0C0B0A0908);
    out.i32(-2);
    out.i64(-3);
    out.f32(1.0f);
    EXPECT_EQ(out.bytes(), (Bytes{1,    2,    3,    4,    5,    6,    7,    8,    9,    10,   11,
                                  12,   13,   14,   15,   0xFE, 0xFF, 0xFF, 0xFF, 0xFD, 0xFF, 0xFF,
                                  0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00, 0x80, 0x3F}));
}

TEST(BinaryWriter, WritesTextAsCountAndUnits) {
    BinaryWriter out;
    out.text(L"a\x3042");
    EXPECT_EQ(out.bytes(), (Bytes{2, 0, 0, 0, 0x61, 0x00, 0x42, 0x30}));
}

TEST(BinaryStream, ReadsBackWhatWasWritten) {
    std::mt19937_64 random(1);
    for (int round = 0; round < 200; ++round) {
        const auto number = random();
        std::wstring text;
        for (auto units = random() % 40; units > 0; --units) {
            text.push_back(
                static_cast<wchar_t>(random() & 0xFFFF));  // surrogates without partners among them
        }
        BinaryWriter out;
        out.u8(static_cast<std::uint8_t>(number));
        out.u16(static_cast<std::uint16_t>(number));
        out.u32(static_cast<std::uint32_t>(number));
        out.u64(number);
        out.i32(static_cast<std::int32_t>(number));
        out.i64(static_cast<std::int64_t>(number));
        out.f32(std::bit_cast<float>(static_cast<std::uint32_t>(number)));
        out.text(text);
        out.units(text);

        BinaryReader in(out.bytes());
        EXPECT_EQ(in.u8(), static_cast<std::uint8_t>(number));
        EXPECT_EQ(in.u16(), static_cast<std::uint16_t>(number));
        EXPECT_EQ(in.u32(), static_cast<std::uint32_t>(number));
        EXPECT_EQ(in.u64(), number);
        EXPECT_EQ(in.i32(), static_cast<std::int32_t>(number));
        EXPECT_EQ(in.i64(), static_cast<std::int64_t>(number));
        EXPECT_EQ(std::bit_cast<std::uint32_t>(in.f32()), static_cast<std::uint32_t>(number));
        EXPECT_EQ(in.text(), text);
        EXPECT_EQ(in.units(text.size()), text);
        EXPECT_TRUE(in.good());
        EXPECT_EQ(in.remaining(), 0u);
    }
}

TEST(BinaryReader, FailsForGoodAtTheFirstReadThatDoesNotFit) {
    const Bytes data{1, 2, 3, 4, 5};
    BinaryReader in(data);
    EXPECT_EQ(in.u32(), 0x04030201u);
    EXPECT_EQ(in.u16(), 0u);
    EXPECT_FALSE(in.good());
    EXPECT_EQ(in.u8(), 0u) << "the byte that is left is not given out after an error";
    EXPECT_EQ(in.remaining(), 0u);
}

TEST(BinaryReader, StaysGoodAtTheExactEnd) {
    const Bytes data{1, 2};
    BinaryReader in(data);
    in.u16();
    EXPECT_TRUE(in.good());
    EXPECT_TRUE(in.bytes(0).empty());
    EXPECT_EQ(in.units(0), L"");
    EXPECT_TRUE(in.good());
}

TEST(BinaryReader, RefusesCountsBeyondTheDataBeforeAllocating) {
    const Bytes data{0xFF, 0xFF, 0xFF, 0xFF, 0x41, 0x00};
    for (const std::uint64_t count : {std::uint64_t{4}, std::uint64_t{0x7FFFFFFF}, std::uint64_t{1} << 63,
                                      std::numeric_limits<std::uint64_t>::max()}) {
        BinaryReader asUnits(data);
        EXPECT_EQ(asUnits.units(count), L"");
        EXPECT_FALSE(asUnits.good());
        BinaryReader asBytes(data);
        EXPECT_TRUE(asBytes.bytes(count + 3 < count ? count : count + 3).empty());
        EXPECT_FALSE(asBytes.good());
    }
    BinaryReader asText(data);
    EXPECT_EQ(asText.text(), L"");
    EXPECT_FALSE(asText.good());
}

TEST(BinaryReader, HandsOutViewsIntoTheData) {
    const Bytes data{1, 2, 3};
    BinaryReader in(data);
    in.u8();
    const auto view = in.bytes(2);
    EXPECT_EQ(view.data(), data.data() + 1);
    EXPECT_EQ(view.size(), 2u);
}

TEST(BinaryReader, CanBeFailedByItsCaller) {
    const Bytes data{1, 2, 3};
    BinaryReader in(data);
    in.fail();
    EXPECT_FALSE(in.good());
    EXPECT_EQ(in.u8(), 0u);
}

TEST(BinaryWriter, TakeHandsTheBytesOver) {
    BinaryWriter out;
    out.u16(0x0201);
    EXPECT_EQ(out.take(), (Bytes{1, 2}));
}

}  // namespace
}  // namespace varnelo
