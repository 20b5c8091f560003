#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "host/index/cache_fixture.h"

namespace varnelo {
namespace {

using Lines = std::vector<std::wstring>;

// The same cache, shown where it lies and loaded.
class ShownCacheTest : public ::testing::Test, protected IndexWorld {
protected:
    void SetUp() override {
        onVolume(L'C');
        file(100, L"Documents");
        for (const wchar_t* name : {L"Report 2021.docx", L"report.pdf", L"Plan.docx", L"aaaa", L"a",
                                    L"\u30E1\u30E2.txt", L"REPORTS", L"x.tar.gz", L"gone report"}) {
            file(nextFrn, name, 100);
        }
        onVolume(L'D');
        file(100, L"report.pdf");
        index.removeRecord(9);
        for (int i = 0; i < 3000; ++i) file(L"file " + std::to_wstring(i * 7919 % 3001) + L".txt", 100);
        index.renameRecord(3, {0, 100, 0, 7, 8, 9}, L"a report of later");
        ASSERT_TRUE(cache.save(index));
        ASSERT_TRUE(cache.load(loaded));
    }

    void expectSameAnswer(const std::wstring& query) {
        NTFSIndex shown;
        ASSERT_TRUE(show(shown));
        EXPECT_EQ(shown.searchNames(query), loaded.searchNames(query)) << "first: " << query;
        EXPECT_EQ(shown.searchNames(query), loaded.searchNames(query)) << "again: " << query;
        shown.searchNames(L"*");
        EXPECT_EQ(shown.searchNames(query), loaded.searchNames(query)) << "after a pass: " << query;
    }
    bool show(NTFSIndex& in) const { return in.showCache(cache.folder.path(), CacheFixture::kName); }
    bool showBytes(NTFSIndex& in, const Bytes& bytes) const {
        in.clearIndex();  // or Windows lets nobody write the file
        CacheFixture::write(cache.path(), bytes);
        return show(in);
    }

    CacheFixture cache;
    NTFSIndex loaded;
};

TEST_F(ShownCacheTest, EveryQueryIsAnsweredAsAfterALoad) {
    ASSERT_EQ(loaded.searchNames(L"report").size(), 5u);
    for (const wchar_t* query : {L"",
                                 L"a",
                                 L"A",
                                 L"re",
                                 L"aa",
                                 L"aaa",
                                 L"rep",
                                 L"REPORT",
                                 L"report",
                                 L"eport 2",
                                 L"port.pdf",
                                 L"aaaa",
                                 L"aaaaa",
                                 L"aaab",
                                 L"gone",
                                 L"file 17",
                                 L"30",
                                 L"\u30E1\u30E2",
                                 L"\u30E1\u30E2.",
                                 L"nothing",
                                 L"q",
                                 L"qq",
                                 L"qqq",
                                 L"*.docx",
                                 L"*.txt;*.pdf",
                                 L"*.tar.gz",
                                 L"r*t*",
                                 L"?",
                                 L"????",
                                 L"report.pdf;a",
                                 L" , "}) {
        expectSameAnswer(query);
    }
}

TEST_F(ShownCacheTest, PathsRowsAndOrdersAreThoseOfALoad) {
    NTFSIndex shown;
    ASSERT_TRUE(show(shown));
    std::vector<std::uint32_t> ids = shown.searchNames(L"report");
    std::vector<std::uint32_t> expected = ids;
    for (const auto column : {NTFSIndex::kSortByPath, NTFSIndex::kSortByName, NTFSIndex::kSortBySize}) {
        shown.sortResults(ids, column, false);
        loaded.sortResults(expected, column, false);
        EXPECT_EQ(ids, expected);
    }
    const std::vector<IndexRow> rows = shown.entriesForRange(ids, 0, 10);
    const std::vector<IndexRow> expectedRows = loaded.entriesForRange(expected, 0, 10);
    ASSERT_EQ(rows.size(), expectedRows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(rows[i].path, expectedRows[i].path);
        EXPECT_EQ(rows[i].size, expectedRows[i].size);
        EXPECT_EQ(rows[i].record->frn, expectedRows[i].record->frn);
    }
    EXPECT_EQ(shown.volumes, loaded.volumes);
    for (std::uint32_t i = 0; i < loaded.records().size(); ++i) {
        const std::uint64_t key = recordKey(loaded.records()[i]);
        ASSERT_EQ(shown.recordByKey(key), loaded.recordByKey(key));
        ASSERT_EQ(shown.nameOf(i), loaded.nameOf(i));
    }
}

TEST_F(ShownCacheTest, NothingIsSaidInTheLog) {
    const Bytes sound = cache.bytes();
    NTFSIndex shown;
    const LogCapture log;
    EXPECT_TRUE(show(shown));
    EXPECT_FALSE(showBytes(shown, Bytes(sound.begin(), sound.begin() + 500)));
    EXPECT_FALSE(showBytes(shown, {}));
    EXPECT_FALSE(shown.showCache(cache.folder.path(), L"missing"));
    EXPECT_EQ(log.lines(), Lines{});
}

TEST_F(ShownCacheTest, WhatCannotBeShownLeavesAnEmptyIndexAndTheFileFree) {
    Bytes damaged = cache.bytes();
    damaged.resize(damaged.size() / 2);
    NTFSIndex shown;
    ASSERT_TRUE(show(shown));
    EXPECT_FALSE(showBytes(shown, damaged));
    EXPECT_TRUE(shown.records().empty());
    EXPECT_EQ(shown.searchNames(L""), std::vector<std::uint32_t>{});
    EXPECT_EQ(shown.unigrams().size(), 0u);
    ASSERT_TRUE(cache.save(index)) << "it can be replaced";
    EXPECT_TRUE(cache.load(loaded));
    EXPECT_EQ(loaded.records().size(), index.records().size());
}

TEST_F(ShownCacheTest, ItIsShownWhenItLoadsAndNotOtherwise) {
    NTFSIndex small;
    small.addRecord({100, kRootFrn, 0, 0, 0, 0}, L"aaaa");
    small.addRecord({101, 100, 0, 0, 0, 0}, L"bcd.txt");
    ASSERT_TRUE(cache.save(small));
    Bytes sound = cache.bytes();
    for (std::size_t size = 0; size <= sound.size(); ++size) {
        std::span<std::uint8_t> cut(sound.data(), size);
        NTFSIndex shown;
        ASSERT_EQ(shown.showCache(cut), size >= sound.size() - 4) << size;
        if (shown.records().empty()) continue;
        EXPECT_EQ(shown.searchNames(L"bcd"), std::vector<std::uint32_t>{1});
        EXPECT_EQ(listOf(shown.trigrams(), unit(L't') << 32 | unit(L'x') << 16 | unit(L't')).size(),
                  size == sound.size() ? 1u : 0u);
    }
}

TEST_F(ShownCacheTest, AFileThatEndsRightBehindItsNamesIsNotShown) {
    ASSERT_TRUE(cache.save(NTFSIndex()));
    NTFSIndex shown;
    EXPECT_FALSE(show(shown)) << "a reader of names reads a little further";
    EXPECT_TRUE(cache.load(shown));
}

TEST_F(ShownCacheTest, ChangesAreThoseOfTheIndexAlone) {
    const Bytes before = cache.bytes();
    NTFSIndex shown;
    ASSERT_TRUE(show(shown));
    for (NTFSIndex* one : {&shown, &loaded}) {
        one->removeRecord(1);
        one->renameRecord(2, {0, 100, 0, 0, 0, 0}, L"no longer");
        one->updateRecord(4, 100, 1, 2, 3);
        one->pruneRecord(6);
        EXPECT_EQ(one->createRecord({777, 100, 0, 0, 0, 0}, L"report anew"), 1u);
        one->addRecord({778, 100, 0, 0, 0, 0}, L"another report");
    }
    EXPECT_EQ(cache.bytes(), before);
    for (const wchar_t* query : {L"report", L"re", L"r", L"longer", L"", L"*.pdf"}) {
        EXPECT_EQ(shown.searchNames(query), loaded.searchNames(query)) << query;
    }
    for (const std::uint64_t frn : {24, 25, 26, 30, 777, 778}) {
        EXPECT_EQ(shown.recordByKey(recordKey(0, frn)), loaded.recordByKey(recordKey(0, frn))) << frn;
    }
    EXPECT_EQ(shown.records()[4].size, 1u);
    EXPECT_EQ(shown.fullPath(shown.records()[1]), loaded.fullPath(loaded.records()[1]));
}

TEST_F(ShownCacheTest, AnIndexThatShowsItsFileSavesNothing) {
    const Bytes before = cache.bytes();
    NTFSIndex shown;
    ASSERT_TRUE(show(shown));
    EXPECT_FALSE(cache.save(shown));
    EXPECT_EQ(cache.bytes(), before);
    EXPECT_FALSE(cache.exists(L"ntfs.cache.tmp"));
    shown.clearIndex();
    EXPECT_TRUE(cache.save(shown)) << "and lets go of it when it is cleared";
    EXPECT_EQ(cache.bytes().size(), 64u);
}

TEST_F(ShownCacheTest, ALoadIntoTheIndexThatShowsItEndsTheShow) {
    NTFSIndex one;
    ASSERT_TRUE(show(one));
    ASSERT_TRUE(cache.load(one));
    EXPECT_EQ(one.searchNames(L"report"), loaded.searchNames(L"report"));
    const std::size_t before = cache.bytes().size();
    EXPECT_TRUE(cache.save(one));
    EXPECT_EQ(cache.bytes().size(), before);
    ASSERT_TRUE(cache.load(one));
    EXPECT_EQ(one.searchNames(L"report"), loaded.searchNames(L"report"));
}

TEST_F(ShownCacheTest, TheContentGoesOverWithItsFile) {
    NTFSIndex other;
    {
        NTFSIndex shown;
        ASSERT_TRUE(show(shown));
        other.swapContent(shown);
        EXPECT_TRUE(shown.records().empty());
    }
    EXPECT_EQ(other.searchNames(L"report"), loaded.searchNames(L"report"));
    other.trimShownCache();
    EXPECT_EQ(other.searchNames(L"repor"), loaded.searchNames(L"repor"));
    EXPECT_EQ(other.recordByKey(100), 0u);
}

TEST_F(ShownCacheTest, ListsThatAreNotThoseOfTheNamesAreReadToTheLetter) {
    loaded.addPostings(4, L"report");
    NTFSIndex shown;
    ASSERT_TRUE(show(shown));
    shown.addPostings(4, L"report");
    for (const wchar_t* query : {L"re", L"rep", L"report"}) {
        EXPECT_EQ(shown.searchNames(query), loaded.searchNames(query)) << query;
    }
}

}  // namespace
}  // namespace varnelo
