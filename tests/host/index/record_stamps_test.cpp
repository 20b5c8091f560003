#include "index/record_stamps.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <set>

namespace varnelo {
namespace {

using Ids = std::vector<std::uint32_t>;

class RecordStampsTest : public ::testing::Test {
protected:
    // A list of its own key.
    std::uint32_t list(const Ids& entries) {
        const std::array<std::uint64_t, 1> key{nextKey++};
        for (const std::uint32_t entry : entries) map.append(key, entry);
        return map.find(key[0]).value();
    }
    std::uint64_t nextKey = 1;
    PostingMap map{8};
    RecordStamps stamps;
};

TEST_F(RecordStampsTest, WhatIsInAllListsIsFoundInTheOrderOfTheLast) {
    stamps.begin(10);
    EXPECT_EQ(stamps.stampThoseIn(map, list({1, 2, 3, 5})), 4u);
    EXPECT_EQ(stamps.stampThoseIn(map, list({0, 2, 3, 4, 5})), 3u);
    EXPECT_EQ(stamps.stampedIn(map, list({9, 5, 2, 2, 1, 5})), (Ids{5, 2, 2, 5}));
}

TEST_F(RecordStampsTest, ARecordThatIsInAListTwiceCountsOnce) {
    stamps.begin(10);
    EXPECT_EQ(stamps.stampThoseIn(map, list({1, 1, 2, 1})), 2u);
    EXPECT_EQ(stamps.stampThoseIn(map, list({1, 1, 1})), 1u);
    EXPECT_EQ(stamps.stampedIn(map, list({1, 2})), Ids{1});
}

TEST_F(RecordStampsTest, ANewRowKnowsNothingOfTheOneBefore) {
    const std::uint32_t all = list({0, 1, 2, 3});
    stamps.begin(4);
    stamps.stampThoseIn(map, all);
    stamps.stampThoseIn(map, all);
    stamps.begin(4);
    stamps.stampThoseIn(map, list({2}));
    EXPECT_EQ(stamps.stampedIn(map, all), Ids{2});
    stamps.begin(4);
    EXPECT_EQ(stamps.stampThoseIn(map, all), 4u);
    stamps.clear();
    stamps.begin(4);
    EXPECT_EQ(stamps.stampThoseIn(map, list({3})), 1u);
    EXPECT_EQ(stamps.stampedIn(map, all), Ids{3});
}

TEST_F(RecordStampsTest, EntriesThatAreNoRecordsOrRemovedArePassedOver) {
    const std::uint32_t some = list({0, 1, 2, 3, 4});
    map.remove(nextKey - 1, 1);
    stamps.begin(4);
    EXPECT_EQ(stamps.stampThoseIn(map, some), 3u);
    EXPECT_EQ(stamps.stampedIn(map, some), (Ids{0, 2, 3}));
}

TEST_F(RecordStampsTest, TheRecordsMayBecomeMoreAndFewer) {
    const std::uint32_t all = list({0, 1, 2, 3, 4, 5});
    for (const std::size_t records : {2, 6, 0, 3, 6, 1}) {
        stamps.begin(records);
        EXPECT_EQ(stamps.stampThoseIn(map, all), records);
        EXPECT_EQ(stamps.stampedIn(map, all).size(), records);
    }
}

// Rows of all lengths, so that the numbers that stamps have run out at every place. Most lists are short:
// then a record has a stamp of long ago.
TEST_F(RecordStampsTest, ManyRowsFindWhatSetsFind) {
    std::mt19937 random(3);
    constexpr std::uint32_t kRecords = 40;
    for (int row = 0; row < 2000; ++row) {
        stamps.begin(kRecords);
        const std::uint32_t oneIn = row < 1500 ? 30 : 2;
        std::set<std::uint32_t> expected;
        for (std::uint32_t i = 0; i < kRecords; ++i) expected.insert(i);
        const std::size_t lists = row % 97 == 0 ? RecordStamps::kMostLists : 1 + random() % 4;
        for (std::size_t i = 0; i < lists; ++i) {
            Ids entries;
            std::set<std::uint32_t> kept;
            for (std::uint32_t id = 0; id < kRecords; ++id) {
                if (random() % oneIn != 0) continue;
                entries.push_back(id);
                if (expected.contains(id)) kept.insert(id);
            }
            entries.push_back(kRecords);  // no list is empty
            expected = kept;
            ASSERT_EQ(stamps.stampThoseIn(map, list(entries)), expected.size());
        }
        Ids all(kRecords);
        for (std::uint32_t i = 0; i < kRecords; ++i) all[i] = kRecords - 1 - i;
        ASSERT_EQ(stamps.stampedIn(map, list(all)), Ids(expected.rbegin(), expected.rend())) << row;
    }
}

}  // namespace
}  // namespace varnelo
