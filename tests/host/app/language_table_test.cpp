#include "app/language_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <random>
#include <thread>

#include "app/settings.h"
#include "support/memory_settings_store.h"

namespace varnelo {
namespace {

using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

std::span<const std::uint8_t> bytesOf(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

LanguageEntries parsed(std::string_view text) { return parseLanguageText(bytesOf(text)); }

TEST(LanguageText, HoldsOneEntryALine) {
    EXPECT_THAT(parsed("A = one\r\nB = two words"),
                UnorderedElementsAre(Pair(L"A", L"one"), Pair(L"B", L"two words")));
}

TEST(LanguageText, SpacesAroundKeyAndValueDoNotCount) {
    EXPECT_THAT(parsed("INFO     = Info\r\nTAB=General\n \tX\t =\t y \t\r\n"),
                UnorderedElementsAre(Pair(L"INFO", L"Info"), Pair(L"TAB", L"General"), Pair(L"X", L"y")));
}

TEST(LanguageText, LinesWithoutAnEqualsSignAreIgnored) {
    EXPECT_THAT(parsed("\r\n\r\nno entry\r\nA = 1\r\n"), UnorderedElementsAre(Pair(L"A", L"1")));
}

TEST(LanguageText, LinesWithoutAKeyAreDropped) { EXPECT_THAT(parsed(" = value\r\n=\r\n"), IsEmpty()); }

TEST(LanguageText, ThereAreNoComments) {
    EXPECT_THAT(parsed("# A = 1\n// B = 2\n; nothing"),
                UnorderedElementsAre(Pair(L"# A", L"1"), Pair(L"// B", L"2")));
}

TEST(LanguageText, ASecondEqualsSignBelongsToTheValue) {
    EXPECT_THAT(parsed("A = 1 = 2=3"), UnorderedElementsAre(Pair(L"A", L"1 = 2=3")));
}

TEST(LanguageText, AValueMayBeEmpty) {
    EXPECT_THAT(parsed("A =\r\nB = \r\n"), UnorderedElementsAre(Pair(L"A", L""), Pair(L"B", L"")));
}

TEST(LanguageText, TheLastOfTwoEqualKeysWins) {
    EXPECT_THAT(parsed("A = 1\nB = 2\nA = 3"), UnorderedElementsAre(Pair(L"A", L"3"), Pair(L"B", L"2")));
}

TEST(LanguageText, EscapesGiveBackslashLineFeedAndTab) {
    EXPECT_THAT(parsed(R"(A = a\\b\nc\td)"), UnorderedElementsAre(Pair(L"A", L"a\\b\nc\td")));
}

TEST(LanguageText, ABackslashBeforeAnythingElseStays) {
    EXPECT_THAT(parsed(R"(A = \a\N\"\ \r)"), UnorderedElementsAre(Pair(L"A", LR"(\a\N\"\ \r)")));
    EXPECT_THAT(parsed("A = end\\"), UnorderedElementsAre(Pair(L"A", L"end\\")));
    EXPECT_THAT(parsed(R"(A = \\n\\\n)"), UnorderedElementsAre(Pair(L"A", L"\\n\\\n")));
}

TEST(LanguageText, EscapesAreReadAfterTheTrimAndOnlyInValues) {
    EXPECT_THAT(parsed(R"(A\n = \n text \t )"), UnorderedElementsAre(Pair(L"A\\n", L"\n text \t")));
}

TEST(LanguageText, SkipsALeadingByteOrderMarkOnly) {
    EXPECT_THAT(parsed("\xEF\xBB\xBF"
                       "A = 1\r\n\xEF\xBB\xBF"
                       "B = 2"),
                UnorderedElementsAre(Pair(L"A", L"1"), Pair(L"\xFEFF"
                                                            L"B",
                                                            L"2")));
    EXPECT_THAT(parsed("\xEF\xBB"), IsEmpty());
    EXPECT_THAT(parsed("\xEF\xBB\xBF"), IsEmpty());
}

TEST(LanguageText, BrokenUtf8IsShownAsSuch) {
    EXPECT_THAT(parsed("A = x\xC3\r\nB\xFF = \x80y"),
                UnorderedElementsAre(Pair(L"A", L"x\xFFFD"), Pair(L"B\xFFFD", L"\xFFFDy")));
}

TEST(LanguageText, ALineFeedAloneEndsALineAndACarriageReturnAloneDoesNot) {
    EXPECT_THAT(parsed("A = 1\nB = 2\rC = 3"),
                UnorderedElementsAre(Pair(L"A", L"1"), Pair(L"B", L"2\rC = 3")));
}

TEST(LanguageTableTest, AnUnknownKeyIsItsOwnText) {
    LanguageTable table;
    EXPECT_EQ(table.translate(L"NO_SUCH_KEY"), L"NO_SUCH_KEY");
    table.loadText(bytesOf("A = 1"));
    EXPECT_EQ(table.translate(L"A"), L"1");
    EXPECT_EQ(table.translate(L"a"), L"a");
    EXPECT_EQ(table.translate(L""), L"");
}

TEST(LanguageTableTest, ALanguageReplacesTheOneBefore) {
    LanguageTable table;
    EXPECT_TRUE(table.loadText(bytesOf("A = 1\nB = 2")));
    EXPECT_TRUE(table.loadText(bytesOf("A = one")));
    EXPECT_EQ(table.translate(L"A"), L"one");
    EXPECT_EQ(table.translate(L"B"), L"B");
}

TEST(LanguageTableTest, AnEmptyTextFailsAndLeavesNoEntry) {
    LanguageTable table;
    table.loadText(bytesOf("A = 1"));
    EXPECT_FALSE(table.loadText({}));
    EXPECT_EQ(table.translate(L"A"), L"A");
}

TEST(LanguageTableTest, ALanguageOutsideOfTheTableChangesNothing) {
    LanguageTable table;
    table.loadText(bytesOf("A = 1"));
    EXPECT_FALSE(table.loadLanguage(nullptr, static_cast<Language>(3)));
    EXPECT_EQ(table.translate(L"A"), L"1");
}

TEST(LanguageTableTest, LookupsGoOnWhileTheLanguageChanges) {
    LanguageTable table;
    std::string first;
    std::string second;
    for (int i = 0; i < 50; ++i) {
        first += "KEY" + std::to_string(i) + " = the first text, longer than a short string\n";
        second += "KEY" + std::to_string(i) + " = the second text, longer than a short string\n";
    }
    table.loadText(bytesOf(first));
    std::atomic<bool> stop{false};
    std::atomic<int> strange{0};
    std::thread reader([&] {
        while (!stop) {
            const std::wstring text = table.translate(L"KEY7");
            if (!text.starts_with(L"the first") && !text.starts_with(L"the second")) ++strange;
        }
    });
    for (int i = 0; i < 100; ++i) table.loadText(bytesOf(i % 2 ? first : second));
    stop = true;
    reader.join();
    EXPECT_EQ(strange, 0);
}

TEST(Languages, StandInTheOrderOfTheStoredIndex) {
    ASSERT_EQ(languages().size(), 3u);
    EXPECT_EQ(languages()[0].language, Language::German);
    EXPECT_EQ(languages()[0].resourceId, 103u);
    EXPECT_STREQ(languages()[0].nativeName, L"Deutsch");
    EXPECT_STREQ(languages()[0].englishName, L"German");
    EXPECT_EQ(languages()[1].language, Language::English);
    EXPECT_EQ(languages()[1].resourceId, 102u);
    EXPECT_STREQ(languages()[1].nativeName, L"English");
    EXPECT_STREQ(languages()[1].englishName, L"English");
    EXPECT_EQ(languages()[2].language, Language::Japanese);
    EXPECT_EQ(languages()[2].resourceId, 113u);
    EXPECT_STREQ(languages()[2].nativeName, L"\x65E5\x672C\x8A9E");
    EXPECT_STREQ(languages()[2].englishName, L"Japanese");
}

class LanguageChoice : public testing::Test {
protected:
    test::MemorySettingsStore store;
    Settings settings{&store};
};

TEST_F(LanguageChoice, TheSystemsLanguageIsChosenOnceAndSaved) {
    EXPECT_EQ(chooseLanguage(settings, L"Japanese"), Language::Japanese);
    EXPECT_EQ(settings.languageIndex, 2);
    EXPECT_EQ(store.writes.size(), 7u) << "the whole set is written";

    store.writes.clear();
    EXPECT_EQ(chooseLanguage(settings, L"German"), Language::Japanese);
    EXPECT_THAT(store.writes, IsEmpty());
}

TEST_F(LanguageChoice, ASystemLanguageOutsideOfTheTableMeansEnglish) {
    EXPECT_EQ(chooseLanguage(settings, L"French"), Language::English);
    EXPECT_EQ(settings.languageIndex, 1);
    Settings again(&store);
    again.load();
    EXPECT_EQ(again.languageIndex, 1);
}

TEST_F(LanguageChoice, TheNameMustMatchExactly) {
    EXPECT_EQ(chooseLanguage(settings, L"german"), Language::English);
}

TEST_F(LanguageChoice, AnyNegativeIndexMeansNoChoiceYet) {
    settings.languageIndex = -5;
    EXPECT_EQ(chooseLanguage(settings, L"German"), Language::German);
    EXPECT_EQ(settings.languageIndex, 0);
}

TEST_F(LanguageChoice, AStoredIndexIsARowOfTheTable) {
    settings.languageIndex = 0;
    EXPECT_EQ(chooseLanguage(settings, L"English"), Language::German);
    settings.languageIndex = 1;
    EXPECT_EQ(chooseLanguage(settings, L"German"), Language::English);
}

// The first row rather than English, and the number stays: on purpose, since a later version with more
// languages finds its choice again.
TEST_F(LanguageChoice, AnIndexBeyondTheTableMeansItsFirstRowAndStays) {
    settings.languageIndex = 7;
    EXPECT_EQ(chooseLanguage(settings, L"English"), Language::German);
    EXPECT_EQ(settings.languageIndex, 7);
    EXPECT_THAT(store.writes, IsEmpty());
}

}  // namespace
}  // namespace varnelo
