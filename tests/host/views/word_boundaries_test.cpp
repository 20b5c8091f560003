#include "views/word_boundaries.h"

#include <gtest/gtest.h>

#include <string>

#include "views/text_units.h"

namespace varnelo {
namespace {

std::wstring wordIn(const std::wstring& text, std::size_t index) {
    const TextRange word = wordAt(text, index);
    return text.substr(word.begin, word.end - word.begin);
}

TEST(WordAt, LettersDigitsAndUnderscoresMakeAWord) {
    EXPECT_EQ(wordIn(L"a my_File42.txt", 5), L"my_File42");
    EXPECT_EQ(wordIn(L"a my_File42.txt", 12), L"txt");
}

TEST(WordAt, EveryPlaceInAWordFindsAllOfIt) {
    for (std::size_t i = 2; i < 6; ++i) EXPECT_EQ(wordIn(L"a word b", i), L"word");
}

TEST(WordAt, TheIndexIsTakenBackToTheLastUnit) {
    EXPECT_EQ(wordIn(L"one two", 7), L"two");
    EXPECT_EQ(wordIn(L"one two", 700), L"two");
}

TEST(WordAt, BetweenWordsTheNearerOneIsTakenAndTheLeftOneAtEqualDistance) {
    EXPECT_EQ(wordIn(L"ab....cd", 2), L"ab");
    EXPECT_EQ(wordIn(L"ab....cd", 3), L"ab");
    EXPECT_EQ(wordIn(L"ab....cd", 4), L"cd");
    EXPECT_EQ(wordIn(L"ab...cd", 3), L"ab");
    EXPECT_EQ(wordIn(L"ab cd", 2), L"ab");
    EXPECT_EQ(wordIn(L"...cd", 0), L"cd");
    EXPECT_EQ(wordIn(L"ab...", 4), L"ab");
}

TEST(WordAt, WithoutAWordItIsTheWholeText) {
    EXPECT_EQ(wordIn(L".. !?", 1), L".. !?");
    EXPECT_EQ(wordAt(L"", 0), (TextRange{0, 0}));
}

TEST(WordAt, WordsOfOtherScriptsAreWords) {
    EXPECT_EQ(wordIn(L"sch\u00F6ne \u00DCbung", 3), L"sch\u00F6ne");
    EXPECT_EQ(wordIn(L"sch\u00F6ne \u00DCbung", 8), L"\u00DCbung");
    EXPECT_EQ(wordIn(L"\u65E5\u672C\u8A9E\u3002\u30D5\u30A1\u30A4\u30EB", 1), L"\u65E5\u672C\u8A9E");
    EXPECT_EQ(wordIn(L"\u65E5\u672C\u8A9E\u3002\u30D5\u30A1\u30A4\u30EB", 5), L"\u30D5\u30A1\u30A4\u30EB");
    EXPECT_EQ(wordIn(L"\u0434\u0430 \u043D\u0435\u0442", 4), L"\u043D\u0435\u0442");
    EXPECT_EQ(wordIn(L"x u\u0308ber", 3), L"u\u0308ber") << "a mark belongs to its letter";
}

TEST(WordAt, ASurrogatePairIsNeverCut) {
    const std::wstring rare = {0xD842, 0xDFB7, 0x91CE, 0x5BB6};
    for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(wordIn(rare + L"!", i), rare);
    const std::wstring smile = {0xD83D, 0xDE00};
    EXPECT_EQ(wordIn(L"ab" + smile + L"cd", 2), L"ab");
    EXPECT_EQ(wordIn(L"ab" + smile + L"cd", 3), L"cd");
    EXPECT_EQ(wordIn(smile, 1), smile);
}

TEST(WordAt, LoneSurrogatesAreNoWords) {
    EXPECT_EQ(wordIn(std::wstring{0xD83D, L'a'}, 0), L"a");
    EXPECT_EQ(wordIn(std::wstring{L'a', 0xDE00}, 1), L"a");
}

TEST(WordCharacters, AreLettersDigitsMarksAndTheUnderscore) {
    for (const char32_t c :
         {U'0',      U'9',      U'A',          U'Z',          U'a',         U'z',      U'_',
          U'\u00AA', U'\u00B5', U'\u00C0',     U'\u00FF',     U'\u0301',    U'\u0660', U'\u0E01',
          U'\u3005', U'\u3042', U'\u30FC',     U'\u4E00',     U'\u9FFF',    U'\uAC00', U'\uD7A3',
          U'\uFF21', U'\uFF5A', U'\U00010000', U'\U0001D400', U'\U00020BB7'}) {
        EXPECT_TRUE(isWordCharacter(c)) << std::hex << static_cast<unsigned>(c);
    }
    for (const char32_t c :
         {U' ',      U'.',      U'-',          U'@',         U'[',      U'`',      U'{',
          U'\u007F', U'\u0080', U'\u00A0',     U'\u00D7',    U'\u00F7', U'\u2013', U'\u20AC',
          U'\u2605', U'\u3000', U'\u3001',     U'\u300C',    U'\u30FB', U'\uE000', U'\uFEFF',
          U'\uFF01', U'\uFFFF', U'\U0001F600', U'\U000E0001'}) {
        EXPECT_FALSE(isWordCharacter(c)) << std::hex << static_cast<unsigned>(c);
    }
    for (char32_t c = 0xD800; c < 0xE000; ++c) EXPECT_FALSE(isWordCharacter(c));
}

TEST(WordStarts, FollowRunsOfOneKindAndTheBlanksBehindThem) {
    const std::wstring text = L"one  two, three";
    EXPECT_EQ(nextWordStart(text, 0), 5U);
    EXPECT_EQ(nextWordStart(text, 3), 5U);
    EXPECT_EQ(nextWordStart(text, 5), 8U);
    EXPECT_EQ(nextWordStart(text, 8), 10U);
    EXPECT_EQ(nextWordStart(text, 10), 15U);
    EXPECT_EQ(nextWordStart(text, 15), 15U);
    EXPECT_EQ(previousWordStart(text, 15), 10U);
    EXPECT_EQ(previousWordStart(text, 10), 8U);
    EXPECT_EQ(previousWordStart(text, 8), 5U);
    EXPECT_EQ(previousWordStart(text, 5), 0U);
    EXPECT_EQ(previousWordStart(text, 0), 0U);
    EXPECT_EQ(previousWordStart(L"   ", 2), 0U);
    EXPECT_EQ(previousWordStart(text, 99), 10U);
    EXPECT_EQ(nextWordStart(text, 99), 15U);
    for (const wchar_t blank : {L'\t', L'\r', wchar_t{0xA0}, wchar_t{0x3000}})
        EXPECT_EQ(nextWordStart(std::wstring(L"a") + blank + L"b", 0), 2U) << int(blank);
}

TEST(TextUnits, EveryHalfOfAPairIsOne) {
    for (const wchar_t unit : {wchar_t{0xD800}, wchar_t{0xDBFF}}) EXPECT_TRUE(isHighSurrogate(unit));
    for (const wchar_t unit : {wchar_t{0xD7FF}, wchar_t{0xDC00}}) EXPECT_FALSE(isHighSurrogate(unit));
    for (const wchar_t unit : {wchar_t{0xDC00}, wchar_t{0xDFFF}}) EXPECT_TRUE(isLowSurrogate(unit));
    for (const wchar_t unit : {wchar_t{0xDBFF}, wchar_t{0xE000}}) EXPECT_FALSE(isLowSurrogate(unit));
}

TEST(TextUnits, StepsGoOverPairsAndStopAtTheEnds) {
    const std::wstring text = {L'a', 0xD83D, 0xDE00, 0xDE00, 0xD83D};
    EXPECT_EQ(nextPlace(text, 0), 1U);
    EXPECT_EQ(nextPlace(text, 1), 3U);
    EXPECT_EQ(nextPlace(text, 3), 4U);
    EXPECT_EQ(nextPlace(text, 4), 5U);
    EXPECT_EQ(nextPlace(text, 5), 5U);
    EXPECT_EQ(previousPlace(text, 5), 4U);
    EXPECT_EQ(previousPlace(text, 4), 3U);
    EXPECT_EQ(previousPlace(text, 3), 1U);
    EXPECT_EQ(previousPlace(text, 1), 0U);
    EXPECT_EQ(previousPlace(text, 0), 0U);
}

}  // namespace
}  // namespace varnelo
