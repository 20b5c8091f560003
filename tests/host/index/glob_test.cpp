#include "index/glob.h"

#include <gtest/gtest.h>

#include <random>

#include "host/index/plain_search.h"

namespace varnelo {
namespace {

std::vector<std::uint16_t> unitsOf(const std::wstring& text) { return {text.begin(), text.end()}; }

bool matches(const std::wstring& pattern, const std::wstring& name) {
    const bool walked = globMatches(unitsOf(pattern), unitsOf(name));
    EXPECT_EQ(Glob(unitsOf(pattern)).matches(unitsOf(name)), walked) << "with what is told beforehand";
    return walked;
}

TEST(Glob, AStarIsAnyRunAndAQuestionMarkOneUnit) {
    EXPECT_TRUE(matches(L"", L""));
    EXPECT_FALSE(matches(L"", L"a"));
    EXPECT_TRUE(matches(L"*", L""));
    EXPECT_TRUE(matches(L"**", L"ab"));
    EXPECT_TRUE(matches(L"a*c", L"ac"));
    EXPECT_TRUE(matches(L"a*c", L"abcc"));
    EXPECT_FALSE(matches(L"a*c", L"abcd"));
    EXPECT_FALSE(matches(L"?", L""));
    EXPECT_TRUE(matches(L"?", L"a"));
    EXPECT_FALSE(matches(L"?", L"ab"));
    EXPECT_TRUE(matches(L"a?c*", L"abcd"));
    EXPECT_FALSE(matches(L"ab*ab", L"ab")) << "beginning and end do not share units";
    EXPECT_FALSE(matches(L"ab*ba", L"aba"));
}

TEST(Glob, NamesAreFoldedAndNothingIsEscaped) {
    EXPECT_TRUE(matches(L"ab*", L"ABc"));
    EXPECT_FALSE(matches(L"\u00E4", L"\u00C4"));
    EXPECT_TRUE(matches(L"a[b]\\*", L"a[b]\\x"));
}

TEST(Glob, MatchesWhatAPlainMatcherMatches) {
    std::mt19937 random(9);
    int hits = 0;
    for (int i = 0; i < 30000; ++i) {
        std::wstring pattern;
        std::wstring name;
        for (std::uint32_t length = random() % 8; length != 0; --length) pattern += L"ab*?*"[random() % 5];
        for (std::uint32_t length = random() % 10; length != 0; --length) name += L"ab"[random() % 2];
        const bool expected = plain::matches(pattern, name);
        hits += expected ? 1 : 0;
        ASSERT_EQ(matches(pattern, name), expected) << i;
    }
    EXPECT_GT(hits, 3000);
}

TEST(Glob, ManyStarsTakeNoMoreStepsThanBothLengthsMultiplied) {
    std::wstring pattern;
    for (int i = 0; i < 40; ++i) pattern += L"*a";
    // A matcher that tries every division would not come back.
    EXPECT_FALSE(matches(pattern + L"*b*", std::wstring(20000, L'a')));
}

}  // namespace
}  // namespace varnelo
