#include "model/tokenizer.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace varnelo {
namespace {

using Words = std::vector<std::wstring>;

Words searchWords(std::wstring_view name) { return tokenizeName(name, CamelCase::Split, LetterCase::Lower); }
Words spelled(std::wstring_view name) { return tokenizeName(name, CamelCase::Keep, LetterCase::Keep); }
Words split(std::wstring_view name) { return tokenizeName(name, CamelCase::Split, LetterCase::Keep); }

TEST(TokenizerTest, TheStopWordsAreTheseEightyTwo) {
    const WordSet expected = {
        L"copy",    L"copyof",   L"duplicate", L"dup",      L"backup",   L"bak",      L"v",      L"ver",
        L"version", L"rev",      L"revision",  L"v1",       L"v2",       L"v3",       L"v4",     L"v5",
        L"v6",      L"v7",       L"v8",        L"v9",       L"v10",      L"final",    L"finale", L"release",
        L"stable",  L"official", L"new",       L"old",      L"temp",     L"tmp",      L"draft",  L"work",
        L"working", L"edit",     L"edited",    L"update",   L"updated",  L"todo",     L"fix",    L"fixed",
        L"bugfix",  L"alpha",    L"beta",      L"rc",       L"snapshot", L"nightly",  L"setup",  L"installer",
        L"install", L"portable", L"archive",   L"archived", L"file",     L"document", L"doc",    L"data",
        L"part",    L"vol",      L"volume",    L"en",       L"eng",      L"english",  L"de",     L"ger",
        L"german",  L"x86",      L"x64",       L"win",      L"win32",    L"win64",    L"jan",    L"feb",
        L"mar",     L"apr",      L"may",       L"jun",      L"jul",      L"aug",      L"sep",    L"oct",
        L"nov",     L"dec"};
    EXPECT_EQ(expected.size(), 82u);
    EXPECT_EQ(stopWords(), expected);
}

TEST(TokenizerTest, EveryStopWordIsDroppedInAnyLetterCaseOnceLowered) {
    for (std::wstring word : stopWords()) {
        EXPECT_EQ(searchWords(word + L" kept.txt"), Words{L"kept"});
        word[0] = static_cast<wchar_t>(word[0] - L'a' + L'A');
        EXPECT_EQ(searchWords(word + L" kept.txt"), Words{L"kept"});
    }
}

TEST(TokenizerTest, TheExtensionIsWhatStandsBehindTheLastDot) {
    EXPECT_EQ(withoutExtension(L"notes.tar.gz"), L"notes.tar");
    EXPECT_EQ(withoutExtension(L"notes"), L"notes");
    EXPECT_EQ(withoutExtension(L"notes."), L"notes");
    EXPECT_EQ(withoutExtension(L".profile"), L"");
    EXPECT_EQ(withoutExtension(L""), L"");
    EXPECT_EQ(textBehindLastDot(L"notes.tar.gz"), L"gz");
    EXPECT_EQ(textBehindLastDot(L"notes"), L"");
    EXPECT_EQ(textBehindLastDot(L"notes."), L"");
}

TEST(TokenizerTest, CamelCaseIsSplitBeforeACapitalThatStartsAWord) {
    EXPECT_EQ(split(L"MyHolidayPlan"), (Words{L"My", L"Holiday", L"Plan"}));
    EXPECT_EQ(split(L"HTMLPage"), (Words{L"HTML", L"Page"}));
    EXPECT_EQ(split(L"MyFileName"), (Words{L"My", L"File", L"Name"}));
    EXPECT_EQ(split(L"HTMLFile"), (Words{L"HTML", L"File"}));
    EXPECT_EQ(split(L"iPhone"), (Words{L"i", L"Phone"}));
    EXPECT_EQ(split(L"4KVideo"), (Words{L"4K", L"Video"}));
    EXPECT_EQ(split(L"3Days"), (Words{L"Days"})) << "the digit alone is dropped";
}

TEST(TokenizerTest, ACapitalAtTheEndBelongsToTheRunBeforeItUnlessALowerCaseLetterIs) {
    EXPECT_EQ(split(L"PLAN9B"), (Words{L"PLAN9B"}));
    EXPECT_EQ(split(L"AB"), (Words{L"AB"}));
    EXPECT_EQ(split(L"planB"), (Words{L"plan", L"B"}));
    EXPECT_EQ(split(L"AB.Txt"), (Words{L"AB"})) << "the extension is cut before";
}

TEST(TokenizerTest, CamelCaseStaysWholeWhenItIsNotToBeSplit) {
    EXPECT_EQ(spelled(L"MyHolidayPlan.txt"), Words{L"MyHolidayPlan"});
}

TEST(TokenizerTest, UnderscoreHyphenDotAndWhiteSpaceSeparate) {
    EXPECT_EQ(
        searchWords(L"one_two-three.four five\tsix\nseven\veight\fnine\rten.txt"),
        (Words{L"one", L"two", L"three", L"four", L"five", L"six", L"seven", L"eight", L"nine", L"ten"}));
    EXPECT_EQ(searchWords(L"_-. __one--..two__ .x"), (Words{L"one", L"two"}));
    EXPECT_EQ(searchWords(L"a+b (c)"), (Words{L"a+b", L"(c)"})) << "other signs belong to their word";
}

TEST(TokenizerTest, PiecesOfDigitsAloneAreDropped) {
    EXPECT_EQ(searchWords(L"IMG_0001.jpg"), Words{L"img"});
    EXPECT_EQ(searchWords(L"2021-12-24"), Words{});
    EXPECT_EQ(searchWords(L"3d 2x 007"), (Words{L"3d", L"2x"}));
}

TEST(TokenizerTest, WithoutLoweringOnlyLowerCaseStopWordsAreDropped) {
    EXPECT_EQ(spelled(L"Final final FINAL Report.txt"), (Words{L"Final", L"FINAL", L"Report"}));
    EXPECT_EQ(searchWords(L"Final final FINAL Report.txt"), Words{L"report"});
}

TEST(TokenizerTest, OrderAndRepetitionsAreKept) {
    EXPECT_EQ(searchWords(L"zoo Ant zoo"), (Words{L"zoo", L"ant", L"zoo"}));
}

TEST(TokenizerTest, TheEmptyNameHasNoWords) {
    EXPECT_EQ(searchWords(L""), Words{});
    EXPECT_EQ(searchWords(L"."), Words{});
    EXPECT_EQ(searchWords(L".gitignore"), Words{});
    EXPECT_EQ(stemName(L""), L"");
}

TEST(TokenizerTest, TheStemIgnoresOrderVersionsAndYears) {
    EXPECT_EQ(stemName(L"Report_final_2021.docx"), L"report");
    EXPECT_EQ(stemName(L"report 2019 FINAL.pdf"), L"report");
    EXPECT_EQ(stemName(L"Plan for Lisbon.txt"), stemName(L"LisbonFor_plan-v2.doc"));
    EXPECT_EQ(stemName(L"b c a.txt"), L"a b c");
}

TEST(TokenizerTest, TheStemKeepsRepeatedWords) { EXPECT_EQ(stemName(L"go Go.txt"), L"go go"); }

TEST(TokenizerTest, NamesOfStopWordsAndDigitsShareTheEmptyStem) {
    for (const wchar_t* name :
         {L"final.doc", L"2021.txt", L"Copy (2)", L"v1 final draft 3.zip", L"1.2.3.txt"})
        EXPECT_EQ(stemName(name), std::wstring(name) == L"Copy (2)" ? L"(2)" : L"") << name;
}

// The C locale knows ASCII alone, on every machine and in every language.
TEST(TokenizerTest, LettersOutsideAsciiHaveNoCase) {
    EXPECT_EQ(searchWords(L"\u00DCBUNG.txt"), Words{L"\u00DCbung"});
    EXPECT_EQ(split(L"mein\u00DCberblick"), Words{L"mein\u00DCberblick"}) << "no capital, so no word starts";
    EXPECT_EQ(split(L"\u00DCBer"), (Words{L"\u00DC", L"Ber"})) << "and no lower-case letter stands before B";
    EXPECT_EQ(split(L"caf\u00E9B"), Words{L"caf\u00E9B"});
    EXPECT_EQ(stemName(L"\u00C4pfel Birnen"), L"birnen \u00C4pfel") << "by code units";
}

TEST(TokenizerTest, DigitsAndBlanksOutsideAsciiAreOrdinaryCharacters) {
    EXPECT_EQ(searchWords(L"\uFF12\uFF10\uFF12\uFF11"), Words{L"\uFF12\uFF10\uFF12\uFF11"});
    EXPECT_EQ(searchWords(L"a\u00A0b\u3000c"), Words{L"a\u00A0b\u3000c"});
    EXPECT_EQ(searchWords(L"\u2160 \u00B2"), (Words{L"\u2160", L"\u00B2"}));
}

TEST(TokenizerTest, JapaneseNamesAreCutAtAsciiSeparatorsOnly) {
    EXPECT_EQ(searchWords(L"\u5199\u771F_2021-\u590F.jpg"), (Words{L"\u5199\u771F", L"\u590F"}));
    EXPECT_EQ(searchWords(L"\u5199\u771F\uFF3F\u590F.jpg"), Words{L"\u5199\u771F\uFF3F\u590F"});
}

TEST(TokenizerTest, SurrogatesSurvivePairedOrAlone) {
    EXPECT_EQ(searchWords(L"Trip \xD83D\xDE00.jpg"), (Words{L"trip", L"\xD83D\xDE00"}));
    EXPECT_EQ(searchWords(L"a\xD83D_\xDE00z.txt"), (Words{L"a\xD83D", L"\xDE00z"}));
    EXPECT_EQ(stemName(L"\xDFFF \xD800"), L"\xD800 \xDFFF");
}

TEST(TokenizerTest, ANameOfTheGreatestLengthIsCutLikeAnyOther) {
    const std::wstring run(32767, L'A');
    EXPECT_EQ(searchWords(run), Words{std::wstring(32767, L'a')});
    EXPECT_EQ(searchWords(std::wstring(32767, L'.')), Words{});
    EXPECT_EQ(searchWords(std::wstring(32767, L'7')), Words{});
    std::wstring camel;
    while (camel.size() < 32766) camel += L"Ab";
    EXPECT_EQ(searchWords(camel), Words(16383, L"ab"));
}

TEST(TokenizerTest, EmbeddedNullUnitsAreOrdinaryCharacters) {
    const std::wstring name(L"a\0b c.txt", 9);
    EXPECT_EQ(searchWords(name), (Words{std::wstring(L"a\0b", 3), L"c"}));
}

}  // namespace
}  // namespace varnelo
