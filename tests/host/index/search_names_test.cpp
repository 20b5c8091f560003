#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <thread>

#include "host/index/cache_fixture.h"
#include "host/index/index_world.h"
#include "host/index/plain_search.h"
#include "index/search_query.h"
#include "platform/utf.h"

namespace varnelo {
namespace {

using Ids = std::vector<std::uint32_t>;
using Names = std::vector<std::wstring>;

class SearchNamesTest : public ::testing::Test, protected IndexWorld {
protected:
    void files(const Names& names) {
        for (const std::wstring& name : names) file(name);
    }
    Names found(const std::wstring& query) {
        Names names;
        for (const std::uint32_t id : index.searchNames(query)) names.push_back(index.nameOf(id));
        return names;
    }
};

struct Case {
    const wchar_t* query;
    Names names;
    Names expected;
};

TEST_F(SearchNamesTest, EveryClassOfQueryFindsWhatItShould) {
    const Names some = {L"Plan.txt", L"banana.TXT", L"plan", L"x", L"y.tar.gz", L"a plan, b"};
    const Case cases[] = {
        // All of them.
        {L"", some, some},
        {L"", {}, {}},
        // One unit and two: every occurrence counts, nothing else is asked.
        {L"x", some, {L"Plan.txt", L"banana.TXT", L"x"}},
        {L"N", some, {L"Plan.txt", L"banana.TXT", L"banana.TXT", L"plan", L"a plan, b"}},
        {L"an", some, {L"Plan.txt", L"banana.TXT", L"banana.TXT", L"plan", L"a plan, b"}},
        {L"AN", some, {L"Plan.txt", L"banana.TXT", L"banana.TXT", L"plan", L"a plan, b"}},
        {L"q", some, {}},
        {L"xq", some, {}},
        {L" ", some, {L"a plan, b", L"a plan, b"}},
        // Three and more: a name comes as often as it holds the first three.
        {L"ana", some, {L"banana.TXT", L"banana.TXT"}},
        {L"anana", some, {L"banana.TXT", L"banana.TXT"}},
        {L"Plan", some, {L"Plan.txt", L"plan", L"a plan, b"}},
        {L"plan.t", some, {L"Plan.txt"}},
        {L"planet", some, {}},
        {L"txtx", some, {}},
        {L"   ", {L"a   b", L"a  b"}, {L"a   b"}},
        // A pattern takes the whole name.
        {L"plan*", some, {L"Plan.txt", L"plan"}},
        {L"*plan", some, {L"plan"}},
        {L"*PLAN*", some, {L"Plan.txt", L"plan", L"a plan, b"}},
        {L"p*t", some, {L"Plan.txt"}},
        {L"?", some, {L"x"}},
        {L"????", some, {L"plan"}},
        {L"pl?n", some, {L"plan"}},
        {L"*", some, some},
        {L"**", some, some},
        {L"?*", {L"", L"a"}, {L"a"}},
        {L"*", {L"", L"a"}, {L"", L"a"}},
        {L"*a*a*a*", some, {L"banana.TXT"}},
        {L"x*x", {L"x", L"xx", L"xyx"}, {L"xx", L"xyx"}},
        {L"a*b?c", {L"abxc", L"abbxc", L"abxcabyc", L"abc"}, {L"abxc", L"abbxc", L"abxcabyc"}},
        {L"*.", {L"dot.", L"dot"}, {L"dot."}},
        // Lists of patterns; a name comes once.
        {L"x;plan", some, {L"plan", L"x"}},
        {L"plan|plan*", some, {L"Plan.txt", L"plan"}},
        {L"pla;lan", some, {}},
        {L" x , , plan ", some, {L"plan", L"x"}},
        {L", ;|", some, {}},
        // Extensions: what stands behind the last dot.
        {L"*.txt", some, {L"Plan.txt", L"banana.TXT"}},
        {L"*.TXT;*.gz", some, {L"Plan.txt", L"banana.TXT", L"y.tar.gz"}},
        {L"*.tar.gz", some, {}},
        {L"*.tar.gz,*.gz", some, {L"y.tar.gz"}},
        {L"*.none", some, {}},
        {L"*.profile", {L".profile", L"a.profile"}, {L"a.profile"}},
        {L"*.profile;?.profile", {L".profile", L"a.profile"}, {L".profile", L"a.profile"}},
        {L"*.t?t", some, {L"Plan.txt", L"banana.TXT"}},
        {L"*.txt;x", some, {L"Plan.txt", L"banana.TXT", L"x"}},
        {L"*.tar.gz;x", some, {L"x", L"y.tar.gz"}},
        // Only ASCII letters are folded.
        {L"\u00E4rger", {L"\u00C4rger", L"\u00E4RGER"}, {L"\u00E4RGER"}},
    };
    for (const Case& one : cases) {
        index.clearIndex();
        files(one.names);
        EXPECT_EQ(found(one.query), one.expected) << std::string(one.query, one.query + wcslen(one.query));
    }
}

TEST_F(SearchNamesTest, NoPathReturnsATombstone) {
    files({L"abc.txt", L"abc.txt", L"abc.txt"});
    index.removeRecord(0);
    index.pruneRecord(1);
    for (const wchar_t* query : {L"", L"a", L"ab", L"abc", L"abc.", L"*.txt", L"abc*", L"*"}) {
        EXPECT_EQ(index.searchNames(query), Ids{2}) << std::wcslen(query);
    }
}

TEST_F(SearchNamesTest, NoPathReturnsATombstoneThatAListHolds) {
    files({L"abc.txt", L"abc.txt"});
    index.removeRecord(0);
    index.addPostings(0, L"abc.txt");
    for (const wchar_t* query : {L"a", L"ab", L"abc", L"abc.", L"*.txt", L"abc*"}) {
        EXPECT_EQ(index.searchNames(query), Ids{1}) << std::wcslen(query);
    }
}

TEST_F(SearchNamesTest, OneAndTwoUnitsBelieveTheListAndThreeDoNot) {
    files({L"abc", L"xyz"});
    EXPECT_EQ(index.searchNames(L"abc"), Ids{0});
    index.addPostings(1, L"abc");
    EXPECT_EQ(index.searchNames(L"a"), (Ids{0, 1}));
    EXPECT_EQ(index.searchNames(L"ab"), (Ids{0, 1}));
    EXPECT_EQ(index.searchNames(L"abc"), Ids{0});
    index.removePostings(0, L"abc");
    EXPECT_EQ(index.searchNames(L"abc"), Ids{}) << "text is looked for in lists";
    EXPECT_EQ(index.searchNames(L"ab*"), Ids{0}) << "patterns are tried on names";
}

TEST_F(SearchNamesTest, ARenamedFileStandsBehindTheOthers) {
    files({L"abcd", L"abce", L"abcf"});
    index.renameRecord(0, {24, 5, 0, 0, 0, 0}, L"abcabcd");
    EXPECT_EQ(index.searchNames(L"ab"), (Ids{1, 2, 0, 0}));
    EXPECT_EQ(index.searchNames(L"abc"), (Ids{1, 2, 0, 0}));
    EXPECT_EQ(index.searchNames(L"abcd"), (Ids{0, 0}));
    EXPECT_EQ(index.searchNames(L"abc*"), (Ids{0, 1, 2}));
}

TEST_F(SearchNamesTest, AFileThatIsRenamedAfterALoadIsFoundInItsNewPlaceAlone) {
    files({L"abcd", L"abce", L"xabcd"});
    CacheFixture cache;
    ASSERT_TRUE(cache.save(index));
    ASSERT_TRUE(cache.load(index));
    index.renameRecord(0, {24, 5, 0, 0, 0, 0}, L"abcdabc");
    EXPECT_EQ(index.searchNames(L"abc"), (Ids{1, 2, 0, 0}));
    EXPECT_EQ(index.searchNames(L"abcd"), (Ids{2, 0, 0}));
}

TEST_F(SearchNamesTest, ANameThatIsOutOfRangeIsFoundByNoText) {
    files({L"abc.txt", L"abd.txt"});
    CacheFixture cache;
    ASSERT_TRUE(cache.save(index));
    Bytes bytes = cache.bytes();
    bytes[24 + 36 + 2] = 0x7F;  // the first record's nameOffset
    ASSERT_TRUE(cache.load(index, bytes));
    EXPECT_EQ(index.searchNames(L""), (Ids{0, 1}));
    EXPECT_EQ(index.searchNames(L"*.txt"), (Ids{0, 1})) << "the extension is the record's own";
    for (const wchar_t* query : {L"a", L"ab", L"txt", L".txt", L"*b*", L"*"}) {
        EXPECT_EQ(index.searchNames(query), Ids{1}) << std::wcslen(query);
    }
}

TEST_F(SearchNamesTest, APatternFindsANameThatBeginsInsideAnother) {
    files({L"abc.txt", L"abd.txt"});
    CacheFixture cache;
    ASSERT_TRUE(cache.save(index));
    Bytes bytes = cache.bytes();
    bytes[24 + 36] = 1;  // the first record's nameOffset
    ASSERT_TRUE(cache.load(index, bytes));
    EXPECT_EQ(index.nameOf(0), L"bc.txt");
    EXPECT_EQ(index.searchNames(L"bc*"), Ids{0});
    EXPECT_EQ(index.searchNames(L"a*"), Ids{1});
}

TEST_F(SearchNamesTest, WhatAFailedLoadLeftIsFoundByPatterns) {
    files({L"abc.txt", L"abd.txt"});
    CacheFixture cache;
    ASSERT_TRUE(cache.save(index));
    Bytes bytes = cache.bytes();
    bytes.resize(bytes.size() - 100);
    ASSERT_FALSE(cache.load(index, bytes));
    EXPECT_EQ(index.searchNames(L"ab*"), (Ids{0, 1}));
    file(L"abe.txt");
    EXPECT_EQ(index.searchNames(L"ab*"), (Ids{0, 1, 2}));
    EXPECT_EQ(index.searchNames(L"ab"), (Ids{0, 1, 2}));
}

TEST_F(SearchNamesTest, StarsInALongNameTakeNoTimeToSpeakOf) {
    file(std::wstring(30000, L'a'));
    std::wstring query;
    for (int i = 0; i < 30; ++i) query += L"*a";
    EXPECT_EQ(index.searchNames(query + L"*b"), Ids{});
    EXPECT_EQ(index.searchNames(query + L"?"), Ids{0});
}

// Names out of few letters and few words, so that queries have many answers. Among the units are some that
// share a byte with a letter, or that other rules would fold, and halves of surrogates.
std::wstring anyName(std::mt19937& random) {
    static const std::wstring kOdd = L"\u0161\u8061\uFF41\u212A\u00C4\u00E4\u007F\u0100" +
                                     std::wstring(1, static_cast<wchar_t>(0xD861)) +
                                     std::wstring(1, static_cast<wchar_t>(0xDC2E));
    static const wchar_t* const kWords[] = {L"plan",   L"Report", L"lib",  L"an",
                                            L"banana", L"x",      L"2021", L"\u30E1\u30E2"};
    static const wchar_t* const kEnds[] = {L".txt", L".TXT", L".tar.gz", L"", L".", L".c"};
    std::wstring name;
    for (std::uint32_t parts = random() % 4; parts != 0; --parts) {
        if (random() % 3 == 0) {
            name += static_cast<wchar_t>(L'a' + random() % 3);
        } else {
            name += kWords[random() % std::size(kWords)];
        }
        if (random() % 3 == 0) name += L"-";
        if (random() % 8 == 0) name += kOdd[random() % kOdd.size()];
    }
    if (random() % 24 == 0) name += std::wstring(20 + random() % 80, L"anx"[random() % 3]);
    return name + kEnds[random() % std::size(kEnds)];
}

std::wstring anyQuery(std::mt19937& random) {
    std::wstring query = anyName(random);
    if (query.size() > 1) query = query.substr(random() % query.size(), 1 + random() % 9);
    const bool pattern = random() % 2 == 0;
    for (int changes = static_cast<int>(random() % 3); pattern && changes >= 0; --changes) {
        static const wchar_t* const kPieces[] = {L"*", L"?", L"*", L";", L", ", L"*.txt", L"|*.c"};
        query.insert(random() % (query.size() + 1), kPieces[random() % std::size(kPieces)]);
    }
    return query;
}

TEST_F(SearchNamesTest, AnswersAreThoseOfAPlainLoop) {
    std::mt19937 random(3);
    for (int i = 0; i < 5000; ++i) file(anyName(random));
    for (int i = 0; i < 500; ++i) index.removeRecord(random() % 5000);
    for (int i = 0; i < 400; ++i) {
        if (i == 100) index.prepareSearches();
        const std::wstring query = anyQuery(random);
        ASSERT_EQ(index.searchNames(query), plain::search(index, query)) << utf8FromWide(query);
    }
}

TEST_F(SearchNamesTest, AnswersStayThoseOfAPlainLoopThroughChangesAndLoads) {
    std::mt19937 random(4);
    CacheFixture cache;
    for (int step = 0; step < 3000; ++step) {
        const std::size_t records = index.records().size();
        const auto any = [&] {
            return static_cast<std::uint32_t>(random() % std::max<std::size_t>(records, 1));
        };
        switch (random() % 4) {
            case 0:
                index.createRecord({nextFrn++, 5, 0, 0, 0, 0}, anyName(random));
                break;
            case 1:
                index.removeRecord(any());
                break;
            case 2:
                if (records != 0 && !record(any()).deleted()) {
                    const std::uint32_t id = any();
                    if (!record(id).deleted()) index.renameRecord(id, {1, 5, 0, 0, 0, 0}, anyName(random));
                }
                break;
            default:
                file(anyName(random));
        }
        if (step % 500 == 499) {
            ASSERT_TRUE(cache.save(index));
            ASSERT_TRUE(cache.load(index));
            if (step % 1000 == 999) index.prepareSearches();
        }
        if (step % 20 != 0) continue;
        const std::wstring query = anyQuery(random);
        Ids found = index.searchNames(query);
        // A list keeps the order in which names came; all else is in that of the records.
        if (!hasPatterns(query)) std::sort(found.begin(), found.end());
        ASSERT_EQ(found, plain::search(index, query)) << utf8FromWide(query);
    }
}

TEST_F(SearchNamesTest, AFrequentUnitIsSweptForAndARareOneLookedUp) {
    for (int i = 0; i < 4000; ++i) file(i % 400 == 7 ? L"frequent-Q" : L"frequent-" + std::to_wstring(i));
    Ids rare;
    for (std::uint32_t i = 7; i < 4000; i += 400) rare.push_back(i);
    EXPECT_EQ(index.searchNames(L"*e*q*").size(), 4000u);
    EXPECT_EQ(index.searchNames(L"f*-q"), rare);
    EXPECT_EQ(index.searchNames(L"*q"), rare);
    EXPECT_EQ(index.searchNames(L"*-q;f?e*-q"), rare);
    EXPECT_EQ(index.searchNames(L"*-q;*9").size(), plain::search(index, L"*-q;*9").size());
    index.renameRecord(7, {7, 5, 0, 0, 0, 0}, L"none");
    index.removeRecord(407);
    EXPECT_EQ(index.searchNames(L"*q"), Ids(rare.begin() + 2, rare.end()));
    EXPECT_EQ(index.searchNames(L"*e"), Ids{7});
}

// More than are swept at once.
TEST_F(SearchNamesTest, AHundredThousandNamesAreSweptInStretches) {
    constexpr std::uint32_t kFiles = 70'000;
    std::mt19937 random(7);
    Names names(kFiles);
    for (std::wstring& name : names) {
        for (std::uint32_t size = 1 + random() % 8; size != 0; --size) name += L"abcE.-"[random() % 6];
        file(name);
    }
    for (int i = 0; i < 300; ++i) index.removeRecord(random() % kFiles);
    // Their names lie behind all others now.
    for (int i = 0; i < 5; ++i) {
        const std::uint32_t id = random() % kFiles;
        if (!record(id).deleted()) index.renameRecord(id, {24 + id, kRootFrn, 0, 0, 0, 0}, L"renamed-e");
    }
    for (const wchar_t* query : {L"*a*e*", L"*e", L"a*;*-c", L"?b*e"}) {
        const Ids ids = index.searchNames(query);
        EXPECT_GT(ids.size(), 1000u) << utf8FromWide(query);
        EXPECT_TRUE(ids == plain::search(index, query)) << utf8FromWide(query);
    }
}

TEST_F(SearchNamesTest, NamesThatHoldAllThreesOfATextButNotTheTextAreLeftOut) {
    files({L"est-tes", L"a test", L"testest", L"TES.TEST", L"tester", L"est", L"xest tesx"});
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(found(L"test"),
                  (Names{L"a test", L"testest", L"testest", L"TES.TEST", L"TES.TEST", L"tester"}));
        EXPECT_EQ(found(L"tester"), Names{L"tester"});
        EXPECT_EQ(found(L"testes"), (Names{L"testest", L"testest"}));
        EXPECT_EQ(found(L"tesx"), Names{L"xest tesx"});
        EXPECT_EQ(found(L"xtes"), Names{});
        index.prepareSearches();
    }
    index.renameRecord(1, {25, kRootFrn, 0, 0, 0, 0}, L"est.tes");
    EXPECT_EQ(found(L"test"), (Names{L"testest", L"testest", L"TES.TEST", L"TES.TEST", L"tester"}));
    index.renameRecord(0, {24, kRootFrn, 0, 0, 0, 0}, L"estest");
    EXPECT_EQ(found(L"test"),
              (Names{L"testest", L"testest", L"TES.TEST", L"TES.TEST", L"tester", L"estest"}));
}

TEST_F(SearchNamesTest, ATextOfOneUnitAgainAndAgainHasOneList) {
    files({L"aaaa", L"aaa", L"xaaaaa", L"aaab"});
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(index.searchNames(L"aaaa"), (Ids{0, 0, 2, 2, 2}));
        EXPECT_EQ(index.searchNames(L"aaaaa"), (Ids{2, 2, 2}));
        EXPECT_EQ(index.searchNames(L"aaaaaa"), Ids{});
        index.prepareSearches();
    }
}

TEST_F(SearchNamesTest, NothingOfWhatAnIndexHeldBeforeItWasClearedCounts) {
    for (int i = 0; i < 70; ++i) file(L"a name of yesterday " + std::to_wstring(i) + L".txt");
    index.prepareSearches();
    ASSERT_EQ(index.searchNames(L"*.txt").size(), 70u);
    index.clearIndex();
    files({L"plan.md", L"planet.txt", L"sea"});
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(found(L"*.txt"), (Names{L"planet.txt"}));
        EXPECT_EQ(found(L"???"), (Names{L"sea"}));
        EXPECT_EQ(found(L"plan"), (Names{L"plan.md", L"planet.txt"}));
        EXPECT_EQ(found(L"yesterday"), Names{});
        index.prepareSearches();
    }
}

TEST_F(SearchNamesTest, AFewNamesMayHaveLongLists) {
    std::wstring name;
    for (int i = 0; i < 80; ++i) name += L"abc";
    files({L"bca", name, L"cab"});
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(index.searchNames(L"abca"), Ids(80, 1));
        EXPECT_EQ(index.searchNames(L"bcabc"), Ids(79, 1)) << "one list more, and the first not the shortest";
        EXPECT_EQ(index.searchNames(L"abcb"), Ids{});
        index.prepareSearches();
    }
}

TEST_F(SearchNamesTest, ATextMayHaveMoreThreesThanAreLookedAt) {
    std::wstring text;
    for (int i = 0; i < 250; ++i) text += static_cast<wchar_t>(0x4E00 + i);
    files({text, text.substr(1), L"x" + text.substr(0, 249), text.substr(0, 200) + L"-" + text.substr(198)});
    index.prepareSearches();
    EXPECT_EQ(index.searchNames(text), Ids{0});
    EXPECT_EQ(index.searchNames(text.substr(0, 249)), (Ids{0, 2}));
    EXPECT_EQ(index.searchNames(text.substr(1)), (Ids{0, 1}));
}

// The pool grows up to where a damaged record has its name.
TEST_F(SearchNamesTest, ANameThatComesIntoThePoolIsFoundByPatternsFromThenOn) {
    files({L"abc.txt", L"abd.txt"});
    CacheFixture cache;
    ASSERT_TRUE(cache.save(index));
    Bytes bytes = cache.bytes();
    bytes[24 + 36] = 16 + 2;  // the first record's nameOffset
    for (const bool prepared : {false, true}) {
        ASSERT_TRUE(cache.load(index, bytes));
        if (prepared) index.prepareSearches();
        EXPECT_EQ(index.searchNames(L"*"), Ids{1});
        file(L"xyzzy");
        EXPECT_EQ(index.nameOf(0), L"zzy");
        EXPECT_EQ(index.searchNames(L"*"), (Ids{0, 1, 2}));
        EXPECT_EQ(index.searchNames(L"???"), Ids{0});
        EXPECT_EQ(index.searchNames(L"*zzy"), (Ids{0, 2}));
        EXPECT_EQ(index.searchNames(L"zzy"), Ids{2}) << "no list of threes has it";
        EXPECT_EQ(index.searchNames(L"xyzzy"), Ids{2});
    }
}

TEST_F(SearchNamesTest, ANameWithoutAnEndDoesNotGrow) {
    files({L"abc.txt", L"abd.txt"});
    CacheFixture cache;
    ASSERT_TRUE(cache.save(index));
    Bytes bytes = cache.bytes();
    const std::size_t poolEnd = 24 + 2 * 48 + 8 + 2 * 16 - 2;
    ASSERT_EQ(bytes[poolEnd - 2], 't');
    bytes[poolEnd] = 'q';
    ASSERT_TRUE(cache.load(index, bytes));
    EXPECT_EQ(index.nameOf(1), L"abd.txtq");
    file(L"another");
    EXPECT_EQ(index.nameOf(1), L"abd.txtq");
    EXPECT_EQ(index.nameOf(2), L"another");
    EXPECT_EQ(index.searchNames(L"????????"), Ids{1});
}

// Bytes behind the header of a cache file are changed at random. What is found is what the rules say of the
// lists and the names as they are, whether or not the load succeeded or the lists were held against the
// names.
TEST_F(SearchNamesTest, BehindDamageTheRulesAreFollowedToTheLetter) {
    std::mt19937 random(8);
    CacheFixture cache;
    int loads = 0;
    std::size_t hits = 0;
    for (int round = 0; round < 120; ++round) {
        index.clearIndex();
        for (int i = 0; i < 200; ++i) file(anyName(random));
        ASSERT_TRUE(cache.save(index));
        Bytes bytes = cache.bytes();
        for (std::uint32_t changes = 1 + random() % (round % 3 == 0 ? 30 : 4); changes != 0; --changes) {
            bytes[100 + random() % (bytes.size() - 100)] = static_cast<std::uint8_t>(random() % 3 * 0x61);
        }
        loads += cache.load(index, bytes) ? 1 : 0;
        if (round % 2 == 0) index.prepareSearches();
        for (int i = 0; i < 40; ++i) {
            const std::wstring query = anyQuery(random);
            Ids expected;
            if (hasPatterns(query)) {
                if (extensionsOf(plain::patternsOf(query))) continue;
                for (const std::uint32_t id : plain::search(index, query)) {
                    if (index.names().holds(record(id).nameOffset)) expected.push_back(id);
                }
            } else if (query.size() >= 3) {
                const std::wstring text = lowered(query);
                for (const std::uint32_t id : threes(text[0], text[1], text[2])) {
                    if (id >= index.records().size() || record(id).deleted()) continue;
                    if (lowered(index.nameOf(id)).find(text) != std::wstring::npos) expected.push_back(id);
                }
            } else {
                continue;
            }
            ASSERT_EQ(index.searchNames(query), expected) << utf8FromWide(query);
            hits += expected.size();
        }
    }
    EXPECT_GT(loads, 30);
    EXPECT_LT(loads, 110);
    EXPECT_GT(hits, 5000u);
}

TEST_F(SearchNamesTest, AWriterAndReadersShareTheIndexMutex) {
    std::mt19937 random(5);
    for (int i = 0; i < 300; ++i) file(anyName(random));
    std::vector<std::thread> readers;
    for (int reader = 0; reader < 2; ++reader) {
        readers.emplace_back([this, reader] {
            std::mt19937 own(static_cast<unsigned>(reader));
            for (int i = 0; i < 200; ++i) {
                const std::wstring query = anyQuery(own);
                const std::lock_guard lock(index.mutex);
                Ids ids = index.searchNames(query);
                index.sortResults(ids, static_cast<std::uint32_t>(i % 4), i % 8 < 4);
                for (const IndexRow& row : index.entriesForRange(ids, 0, 5))
                    ASSERT_FALSE(row.record->deleted());
            }
        });
    }
    for (int i = 0; i < 400; ++i) {
        const std::wstring name = anyName(random);
        const std::lock_guard lock(index.mutex);
        index.removeRecord(static_cast<std::uint32_t>(random() % 300));
        index.createRecord({nextFrn++, 5, 0, 0, 0, 0}, name);
    }
    for (std::thread& reader : readers) reader.join();
}

}  // namespace
}  // namespace varnelo
