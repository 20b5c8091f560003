#include "index/absent_words.h"

#include <gtest/gtest.h>

#include <bit>
#include <random>
#include <string>

#include "platform/utf.h"

namespace varnelo {
namespace {

std::vector<std::uint16_t> unitsOf(const std::wstring& text) { return {text.begin(), text.end()}; }
AbsentWords absentIn(const std::wstring& name) { return absentWordsOf(unitsOf(name)); }
bool mayLackText(const std::wstring& name, const std::wstring& text) {
    return mayLack(absentIn(name), wordsIn(unitsOf(text)));
}
bool holds(const std::wstring& name, const std::wstring& text) { return name.find(text) != name.npos; }
bool holdsAllThrees(const std::wstring& name, const std::wstring& text) {
    for (std::size_t i = 0; i + 3 <= text.size(); ++i) {
        if (!holds(name, text.substr(i, 3))) return false;
    }
    return true;
}

TEST(AbsentWordsTest, ANameWithoutRepetitionHasNone) {
    for (const wchar_t* name : {L"", L"a", L"ab", L"readme.txt", L"aab", L"Plan 9"}) {
        EXPECT_EQ(absentIn(name), 0u) << utf8FromWide(name);
    }
}

TEST(AbsentWordsTest, WhatStandsBeforeHereAndBehindThereIsOne) {
    EXPECT_TRUE(mayLackText(L"est-tes", L"test"));
    EXPECT_TRUE(mayLackText(L"abcab", L"cabc"));
    EXPECT_TRUE(mayLackText(L"aaa", L"aaaa"));
    EXPECT_TRUE(mayLackText(L"abcdx-ybcdz", L"abcdz"));
    EXPECT_TRUE(mayLackText(L"abcdx-ybcdz", L"ybcdx"));
    EXPECT_TRUE(mayLackText(L"ybcdz-abcdx", L"..abcdz.."));
    EXPECT_FALSE(mayLackText(L"abcdx-ybcdz", L"abcd"));
    EXPECT_FALSE(mayLackText(L"abcdx-ybcdz", L"ybcd"));
    EXPECT_FALSE(mayLackText(L"abcdx-ybcdz", L"abc")) << "a text of three units has its own list";
}

TEST(AbsentWordsTest, LettersAreFolded) {
    EXPECT_EQ(absentIn(L"EST-tes"), absentIn(L"est-tes"));
    EXPECT_NE(absentIn(L"EST-tes"), 0u);
    EXPECT_NE(absentIn(L"\u00C9ST-st\u00E9s"), absentIn(L"\u00E9ST-st\u00E9s")) << "ASCII only";
}

TEST(AbsentWordsTest, EachUnitOfATextCounts) {
    const std::vector<AbsentWords> words = wordsIn(unitsOf(L"abcdef"));
    ASSERT_EQ(words.size(), 3u);
    for (const AbsentWords word : words) EXPECT_EQ(std::popcount(word), 2);
    for (std::size_t i = 0; i < 4; ++i) {
        std::vector<std::uint16_t> other = unitsOf(L"abcd");
        other[i] = 'x';
        EXPECT_NE(wordsIn(other), wordsIn(unitsOf(L"abcd")));
    }
    EXPECT_TRUE(wordsIn(unitsOf(L"abc")).empty());
    EXPECT_TRUE(wordsIn({}).empty());
}

TEST(AbsentWordsTest, OfALongOrVeryRepetitiveNameNothingIsKnown) {
    std::wstring name;
    for (int i = 0; i < 255; ++i) name += static_cast<wchar_t>(0x4E00 + i);
    EXPECT_EQ(absentIn(name), 0u);
    EXPECT_EQ(absentIn(name + L"a"), kAnyWord);
    EXPECT_EQ(absentIn(std::wstring(255, L'0')), kAnyWord);
    EXPECT_NE(absentIn(std::wstring(20, L'0')), kAnyWord);
    EXPECT_TRUE(mayLack(kAnyWord, wordsIn(unitsOf(L"abcd"))));
}

// The promise, on names that repeat themselves as often as can be.
TEST(AbsentWordsTest, ANameWithAllThreesAndNoWordOfATextHoldsTheText) {
    std::mt19937 random(11);
    const auto any = [&](std::size_t size, std::size_t letters) {
        std::wstring text(size, L'a');
        for (wchar_t& unit : text) unit = static_cast<wchar_t>(L'a' + random() % letters);
        return text;
    };
    int held = 0;
    int lacking = 0;
    for (int round = 0; round < 300'000; ++round) {
        const std::size_t letters = 2 + random() % 3;
        const std::wstring name = any(4 + random() % 27, letters);
        const std::wstring text = any(4 + random() % 6, letters);
        if (!holdsAllThrees(name, text)) continue;
        const bool held1 = holds(name, text);
        held += held1 ? 1 : 0;
        lacking += held1 ? 0 : 1;
        ASSERT_TRUE(held1 || mayLackText(name, text)) << utf8FromWide(text) << " in " << utf8FromWide(name);
    }
    EXPECT_GT(held, 10'000);
    EXPECT_GT(lacking, 10'000);
}

// Of every text that stands at two places and can grow at neither end: what stands before it here, the text,
// and what stands behind it there.
AbsentWords wordsOfAllRepeats(const std::wstring& name) {
    AbsentWords words = 0;
    const std::size_t size = name.size();
    for (std::size_t here = 1; here < size; ++here) {
        for (std::size_t there = 0; there < size; ++there) {
            for (std::size_t length = 2; std::max(here, there) + length <= size && here != there; ++length) {
                if (name.compare(here, length, name, there, length) != 0) break;
                const bool growsBefore = there != 0 && name[here - 1] == name[there - 1];
                const bool grows = here + length < size && there + length < size &&
                                   name[here + length] == name[there + length];
                if (growsBefore || grows || there + length == size) continue;
                words |= wordsIn(unitsOf(name.substr(here - 1, length + 1) + name[there + length])).back();
            }
        }
    }
    return words;
}

TEST(AbsentWordsTest, TheyAreThoseOfAllRepeatsAndNoOthers) {
    std::mt19937 random(13);
    for (int round = 0; round < 20'000; ++round) {
        std::wstring name(random() % 31, L'a');
        const std::uint32_t letters = 2 + random() % 8;
        for (wchar_t& unit : name) unit = static_cast<wchar_t>(L'a' + random() % letters);
        const AbsentWords words = absentIn(name);
        if (words == kAnyWord) continue;
        ASSERT_EQ(words, wordsOfAllRepeats(name)) << utf8FromWide(name);
    }
}

// What makes them worth their memory: most names that hold a text are known to.
TEST(AbsentWordsTest, FewNamesAreDoubted) {
    std::mt19937 random(12);
    int doubted = 0;
    constexpr int kRounds = 20'000;
    for (int round = 0; round < kRounds; ++round) {
        std::wstring name(20, L'a');
        for (wchar_t& unit : name) unit = static_cast<wchar_t>(L'a' + random() % 16);
        doubted += mayLackText(name, name.substr(random() % 14, 6)) ? 1 : 0;
    }
    EXPECT_LT(doubted, kRounds / 20);
}

}  // namespace
}  // namespace varnelo
