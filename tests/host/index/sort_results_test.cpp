#include <gtest/gtest.h>

#include "host/index/index_world.h"

namespace varnelo {
namespace {

using Ids = std::vector<std::uint32_t>;

class SortResultsTest : public ::testing::Test, protected IndexWorld {
protected:
    SortResultsTest() { onVolume(L'C'); }
    Ids sorted(Ids ids, std::uint32_t column, bool ascending = true) {
        index.sortResults(ids, column, ascending);
        return ids;
    }
};

TEST_F(SortResultsTest, NamesAreComparedUnitByUnitWithLettersFolded) {
    for (const wchar_t* name : {L"plan_b", L"PLANA", L"", L"plan", L"Plan", L"\u00C4", L"planaa", L"\uFF21"})
        file(name);
    index.removeRecord(4);
    EXPECT_EQ(sorted({0, 1, 2, 3, 5, 6, 7}, NTFSIndex::kSortByName), (Ids{2, 3, 0, 1, 6, 5, 7}))
        << "an underscore stands before small letters";
    EXPECT_EQ(sorted({0, 1, 2, 3, 5, 6, 7}, NTFSIndex::kSortByName, false), (Ids{7, 5, 6, 1, 0, 3, 2}));
}

TEST_F(SortResultsTest, PathsAreBuiltAndCompared) {
    file(100, L"zoo");
    file(101, L"a", 100);
    file(102, L"m");
    file(103, L"B", 100);
    EXPECT_EQ(sorted({0, 1, 2, 3}, NTFSIndex::kSortByPath), (Ids{2, 0, 1, 3}));
    EXPECT_EQ(sorted({0, 1, 2, 3}, NTFSIndex::kSortByPath, false), (Ids{3, 1, 0, 2}));
}

TEST_F(SortResultsTest, SizesAndTimesAreCompared) {
    for (const wchar_t* name : {L"a", L"b", L"c"}) file(name);
    index.fillRecord(0, 30, 1, 0);
    index.fillRecord(1, std::uint64_t{1} << 40, 3, 0);
    index.fillRecord(2, 10, 2, 0);
    EXPECT_EQ(sorted({0, 1, 2}, NTFSIndex::kSortBySize), (Ids{2, 0, 1}));
    EXPECT_EQ(sorted({0, 1, 2}, NTFSIndex::kSortBySize, false), (Ids{1, 0, 2}));
    EXPECT_EQ(sorted({0, 1, 2}, NTFSIndex::kSortByModified), (Ids{0, 2, 1}));
    EXPECT_EQ(sorted({0, 1, 2}, NTFSIndex::kSortByModified, false), (Ids{1, 2, 0}));
}

TEST_F(SortResultsTest, AnotherColumnLeavesTheOrder) {
    for (const wchar_t* name : {L"b", L"a"}) file(name);
    EXPECT_EQ(sorted({0, 1}, 4), (Ids{0, 1}));
}

TEST_F(SortResultsTest, AnIdThatIsNoRecordCountsAsEmpty) {
    file(L"a");
    for (std::uint32_t column = 0; column < 4; ++column) EXPECT_EQ(sorted({0, 77}, column).size(), 2u);
    EXPECT_EQ(sorted({0, 77}, NTFSIndex::kSortByName), (Ids{77, 0}));
}

TEST_F(SortResultsTest, ARangeGivesItsRowsCutAtTheEnd) {
    for (const wchar_t* name : {L"a", L"b", L"c"}) file(name);
    index.fillRecord(1, 5, 6, 7);
    const Ids ids = {2, 1, 0};
    const std::vector<IndexRow> rows = index.entriesForRange(ids, 1, 100);
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0].record, &record(1));
    EXPECT_EQ(rows[0].path, L"C:\\b");
    EXPECT_EQ(rows[0].size, 5u);
    EXPECT_EQ(rows[0].modified, 6u);
    EXPECT_EQ(rows[0].attributes, 7u);
    EXPECT_EQ(rows[1].path, L"C:\\a");
    EXPECT_EQ(index.entriesForRange(ids, 0, 2).size(), 2u);
    EXPECT_EQ(index.entriesForRange(ids, 0, 0).size(), 0u);
    EXPECT_EQ(index.entriesForRange(ids, 3, 1).size(), 0u);
    EXPECT_EQ(index.entriesForRange(ids, ~std::uint64_t{0}, ~std::uint64_t{0}).size(), 0u);
    EXPECT_EQ(index.entriesForRange(ids, 1, ~std::uint64_t{0}).size(), 2u);
    EXPECT_EQ(index.entriesForRange(Ids{9, 0}, 0, 2).size(), 1u) << "an id that is no record has no row";
}

}  // namespace
}  // namespace varnelo
