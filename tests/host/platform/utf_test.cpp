#include "platform/utf.h"

#include <gtest/gtest.h>

#include <random>

namespace varnelo {
namespace {

using namespace std::string_literals;

TEST(Utf, ConvertsEachLengthOfCharacter) {
    const std::string utf8 = "A\xC3\xBC\xE6\x97\xA5\xF0\x9F\x98\x80";
    const std::wstring wide = L"A\xFC\x65E5\xD83D\xDE00";
    EXPECT_EQ(wideFromUtf8(utf8), wide);
    EXPECT_EQ(utf8FromWide(wide), utf8);
}

TEST(Utf, KeepsZeroUnits) {
    EXPECT_EQ(wideFromUtf8("a\0b"s), L"a\0b"s);
    EXPECT_EQ(utf8FromWide(L"a\0b"s), "a\0b"s);
}

TEST(Utf, ALoneSurrogateBecomesTheReplacementCharacter) {
    EXPECT_EQ(utf8FromWide(L"\xD83D"), "\xEF\xBF\xBD");
    EXPECT_EQ(utf8FromWide(L"\xDE00\xD83D"), "\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(utf8FromWide(L"\xD83Dx"), "\xEF\xBF\xBDx");
    EXPECT_EQ(utf8FromWide(L"\xD83D\xD83D\xDE00"), "\xEF\xBF\xBD\xF0\x9F\x98\x80");
}

struct Malformed {
    const char* bytes;
    const wchar_t* text;
};

class MalformedUtf8 : public testing::TestWithParam<Malformed> {};

TEST_P(MalformedUtf8, EachLongestBeginningBecomesOneReplacementCharacter) {
    EXPECT_EQ(wideFromUtf8(GetParam().bytes), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Utf, MalformedUtf8,
                         testing::Values(Malformed{"\x80", L"\xFFFD"},                      // no lead
                                         Malformed{"\xC3", L"\xFFFD"},                      // cut off
                                         Malformed{"\xC3(", L"\xFFFD("},                    // broken off
                                         Malformed{"\xC0\xAF", L"\xFFFD\xFFFD"},            // overlong
                                         Malformed{"\xE0\x80\xAF", L"\xFFFD\xFFFD\xFFFD"},  // overlong
                                         Malformed{"\xED\xA0\x80", L"\xFFFD\xFFFD\xFFFD"},  // surrogate
                                         Malformed{"\xF4\x90\x80\x80",
                                                   L"\xFFFD\xFFFD\xFFFD\xFFFD"},        // too large
                                         Malformed{"\xF0\x9F\x98", L"\xFFFD"},          // cut off
                                         Malformed{"\xF0\x9F\x98x", L"\xFFFDx"},        // broken off
                                         Malformed{"\xE6\x97\xC3\xBC", L"\xFFFD\xFC"},  // broken off
                                         Malformed{"\xFE\xFF", L"\xFFFD\xFFFD"}));

TEST(Utf, WellFormedTextComesBackAsItWas) {
    std::mt19937 random(2);
    for (int round = 0; round < 2000; ++round) {
        std::wstring text;
        for (int i = 0; i < 20; ++i) {
            const auto unit = static_cast<wchar_t>(random() & 0xFFFF);
            if (unit >= 0xD800 && unit <= 0xDFFF) {
                text.push_back(static_cast<wchar_t>(0xD800 + random() % 0x400));
                text.push_back(static_cast<wchar_t>(0xDC00 + random() % 0x400));
            } else {
                text.push_back(unit);
            }
        }
        EXPECT_EQ(wideFromUtf8(utf8FromWide(text)), text);
    }
}

TEST(Utf, AnyBytesGiveWellFormedText) {
    std::mt19937 random(3);
    for (int round = 0; round < 2000; ++round) {
        std::string bytes;
        for (int i = 0; i < 12; ++i) bytes.push_back(static_cast<char>(random() | (random() & 1 ? 0x80 : 0)));
        const std::wstring text = wideFromUtf8(bytes);
        EXPECT_EQ(wideFromUtf8(utf8FromWide(text)), text);
        EXPECT_LE(text.size(), bytes.size());
    }
}

}  // namespace
}  // namespace varnelo
