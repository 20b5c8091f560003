#include "views/grid_order.h"

#include <cmath>
#include <limits>

#include "host/views/grid_test.h"

namespace varnelo {
namespace {

constexpr std::int64_t kDay = 86400;

class GridOrderTest : public GridTest {
protected:
    FileMetaData& data(const std::wstring& name) { return *cell(name).entry.metaData; }
    // Was put at `slot` of its group `daysAgo`.
    void givenSlot(const std::wstring& name, int slot, double daysAgo) {
        data(name).slot = slot;
        data(name).slotTime = clock.unixTime - static_cast<std::int64_t>(daysAgo * kDay);
    }
    void reorder() { reorderGroupCells(grid, clock.unixTime, settings.sortTimeoutDays); }
};

TEST_F(GridOrderTest, CellsOfAGroupStandNewestFirst) {
    EntryList list;
    list.entries = {item(L"old", cluster(L"G"), 10), item(L"new", cluster(L"G"), 30),
                    item(L"mid", cluster(L"G"), 20)};
    grid.setEntries(list, TabKind::Desktop);
    EXPECT_EQ(orderOf(L"G"), (Words{L"new", L"mid", L"old"}));
}

TEST_F(GridOrderTest, OfTheSameAgeTheFirstInThePaneStandsFirst) {
    EntryList list;
    for (const wchar_t* name : {L"c", L"a", L"b"}) list.entries.push_back(item(name, cluster(L"G"), 7));
    grid.setEntries(list, TabKind::Desktop);
    EXPECT_EQ(orderOf(L"G"), (Words{L"c", L"a", L"b"}));
}

TEST_F(GridOrderTest, ACellOfWhichNothingIsKnownIsOlderThanAnyOther) {
    EntryList list;
    list.entries = {item(L"unknown", cluster(L"G"), 7), item(L"old", cluster(L"G"), 1)};
    list.entries.front().metaData = nullptr;
    grid.setEntries(list, TabKind::Desktop);
    ASSERT_EQ(grid.groups.size(), 1u);
    grid.groups.front().cells = {0, 1};
    reorder();
    EXPECT_EQ(orderOf(L"G"), (Words{L"old", L"unknown"}));
}

TEST_F(GridOrderTest, AFreshPlaceHoldsExactlyForTheTimeoutAndHalvesEveryTwoTimeoutsAfterIt) {
    EXPECT_EQ(slotWeight(0, 30), 1);
    EXPECT_EQ(slotWeight(30, 30), 1);
    EXPECT_LT(slotWeight(30.01, 30), 1);
    EXPECT_DOUBLE_EQ(slotWeight(90, 30), 0.5);
    EXPECT_DOUBLE_EQ(slotWeight(150, 30), 0.25);
}

TEST_F(GridOrderTest, ACellStoredWithinTheTimeoutStandsAtItsSlot) {
    givenGroups({{L"G", 5}});
    givenSlot(L"G0", 3, 30);
    reorder();
    EXPECT_EQ(orderOf(L"G"), (Words{L"G1", L"G2", L"G3", L"G0", L"G4"}));
}

TEST_F(GridOrderTest, TheFirstSlotIsAPlaceLikeAnyOther) {
    givenGroups({{L"G", 3}});
    givenSlot(L"G2", 0, 1);
    reorder();
    EXPECT_EQ(orderOf(L"G"), (Words{L"G2", L"G0", L"G1"}));
}

TEST_F(GridOrderTest, AtThreeTimeoutsACellStandsHalfwayBetweenItsSlotAndItsNaturalPlace) {
    givenGroups({{L"G", 5}});
    givenSlot(L"G0", 4, 90);
    reorder();
    EXPECT_EQ(orderOf(L"G"), (Words{L"G1", L"G2", L"G0", L"G3", L"G4"}));
}

TEST_F(GridOrderTest, ACellThatIsNaturallyFurtherBackComesHalfwayForward) {
    givenGroups({{L"G", 5}});
    givenSlot(L"G4", 0, 90);
    reorder();
    EXPECT_EQ(orderOf(L"G"), (Words{L"G0", L"G1", L"G4", L"G2", L"G3"}));
}

TEST_F(GridOrderTest, ACellWhoseOldSlotIsItsNaturalPlaceStaysThere) {
    givenGroups({{L"G", 5}});
    givenSlot(L"G0", 0, 90);
    givenSlot(L"G3", 3, 90);
    reorder();
    EXPECT_EQ(orderOf(L"G"), (Words{L"G0", L"G1", L"G2", L"G3", L"G4"}));
}

TEST_F(GridOrderTest, AHalfPlaceRoundsAwayFromTheStart) {
    givenGroups({{L"G", 5}});
    givenSlot(L"G0", 3, 90);  // between 0 and 3 at weight one half: 1.5
    reorder();
    EXPECT_EQ(orderOf(L"G"), (Words{L"G1", L"G2", L"G0", L"G3", L"G4"}));
}

TEST_F(GridOrderTest, AtSixTimeoutsThePlaceIsErased) {
    givenGroups({{L"G", 3}});
    givenSlot(L"G0", 2, 180);
    reorder();
    EXPECT_EQ(orderOf(L"G"), (Words{L"G0", L"G1", L"G2"}));
    EXPECT_EQ(data(L"G0").slot, -1);
    EXPECT_EQ(data(L"G0").slotTime, 0);
}

TEST_F(GridOrderTest, JustBeforeSixTimeoutsThePlaceIsKept) {
    givenGroups({{L"G", 3}});
    givenSlot(L"G0", 2, 179.9);
    reorder();
    EXPECT_EQ(data(L"G0").slot, 2);
    EXPECT_NE(data(L"G0").slotTime, 0);
}

TEST_F(GridOrderTest, ANegativeSlotIsFreeButKeepsItsTime) {
    givenGroups({{L"G", 3}});
    givenSlot(L"G1", -1, 1);
    reorder();
    EXPECT_EQ(orderOf(L"G"), (Words{L"G0", L"G1", L"G2"}));
    EXPECT_NE(data(L"G1").slotTime, 0);
}

TEST_F(GridOrderTest, ASlotWithoutATimeIsNoPlace) {
    givenGroups({{L"G", 3}});
    data(L"G0").slot = 2;
    reorder();
    EXPECT_EQ(orderOf(L"G"), (Words{L"G0", L"G1", L"G2"}));
    EXPECT_EQ(data(L"G0").slot, 2);
}

TEST_F(GridOrderTest, ASlotBeyondTheGroupMeansItsEnd) {
    givenGroups({{L"G", 3}});
    givenSlot(L"G0", std::numeric_limits<std::int32_t>::max(), 1);
    reorder();
    EXPECT_EQ(orderOf(L"G"), (Words{L"G1", L"G2", L"G0"}));
    givenSlot(L"G0", std::numeric_limits<std::int32_t>::max(), 90);
    reorder();
    EXPECT_EQ(orderOf(L"G"), (Words{L"G1", L"G2", L"G0"}));
}

TEST_F(GridOrderTest, ATakenPlaceGivesTheRightNeighbourBeforeTheLeftOne) {
    givenGroups({{L"G", 5}});
    for (const wchar_t* name : {L"G2", L"G3", L"G4"}) givenSlot(name, 2, 1);
    reorder();
    EXPECT_EQ(orderOf(L"G"), (Words{L"G0", L"G4", L"G2", L"G3", L"G1"}));
}

TEST_F(GridOrderTest, OfTwoStoredForOnePlaceTheBetterRememberedGetsIt) {
    givenGroups({{L"G", 4}});
    givenSlot(L"G0", 2, 31);  // weighs a little less than 1 and rounds to the same place
    givenSlot(L"G3", 2, 1);
    reorder();
    EXPECT_EQ(orderOf(L"G"), (Words{L"G1", L"G2", L"G3", L"G0"}));
}

TEST_F(GridOrderTest, PlacesAreGivenOutFromTheLowestSlotUp) {
    givenGroups({{L"G", 4}});
    givenSlot(L"G0", 3, 1);
    givenSlot(L"G1", 2, 1);
    givenSlot(L"G2", 2, 1);
    reorder();
    // Slot 2 first, twice: 2 and, its right neighbour still free, 3. So 3 itself comes too late and goes
    // left.
    EXPECT_EQ(orderOf(L"G"), (Words{L"G3", L"G0", L"G1", L"G2"}));
}

TEST_F(GridOrderTest, AGroupOfOneIsLeftAlone) {
    givenGroups({{L"G", 1}});
    givenSlot(L"G0", 7, 400);
    reorder();
    EXPECT_EQ(data(L"G0").slot, 7);
}

TEST_F(GridOrderTest, AClockThatWentBackKeepsThePlaces) {
    givenGroups({{L"G", 3}});
    givenSlot(L"G0", 2, -1000);
    reorder();
    EXPECT_EQ(orderOf(L"G"), (Words{L"G1", L"G2", L"G0"}));
}

TEST_F(GridOrderTest, ATimeoutOfNoDaysForgetsEveryPlace) {
    givenGroups({{L"G", 3}});
    givenSlot(L"G0", 2, 1);
    settings.sortTimeoutDays = 0;
    reorder();
    EXPECT_EQ(orderOf(L"G"), (Words{L"G0", L"G1", L"G2"}));
}

TEST_F(GridOrderTest, EveryCellKeepsExactlyOnePlaceWhateverIsStored) {
    givenGroups({{L"G", 40}});
    std::uint32_t seed = 1;
    const auto next = [&seed] { return seed = seed * 1664525u + 1013904223u; };
    for (int round = 0; round < 200; ++round) {
        for (IconCell& c : grid.cells) {
            c.entry.metaData->slot = static_cast<std::int32_t>(next() >> 26) - 8;
            c.entry.metaData->slotTime =
                next() % 3 == 0 ? 0 : clock.unixTime - static_cast<std::int64_t>(next() % 200) * kDay;
            c.entry.metaData->timestamp = static_cast<std::int64_t>(next() % 50);
        }
        reorder();
        std::vector<std::int32_t> sorted = group(L"G").cells;
        std::sort(sorted.begin(), sorted.end());
        for (std::size_t i = 0; i < sorted.size(); ++i) ASSERT_EQ(sorted[i], static_cast<std::int32_t>(i));
    }
}

TEST_F(GridOrderTest, GroupsStandByTheirRankOnTheDesktop) {
    EntryList list;
    for (const auto& [name, key] :
         std::initializer_list<std::pair<const wchar_t*, GroupKey>>{{L"z", special(SpecialGroup::Archives)},
                                                                    {L"y", special(SpecialGroup::Older)},
                                                                    {L"x", special(SpecialGroup::Last90Days)},
                                                                    {L"w", special(SpecialGroup::Last30Days)},
                                                                    {L"v", special(SpecialGroup::Last7Days)},
                                                                    {L"u", cluster(L"Holiday")},
                                                                    {L"t", special(SpecialGroup::Downloads)},
                                                                    {L"s", special(SpecialGroup::Software)},
                                                                    {L"r", special(SpecialGroup::System)}}) {
        list.entries.push_back(item(name, key, 5));
    }
    grid.setEntries(list, TabKind::Desktop);
    EXPECT_EQ(groupNames(), (Words{L"SYSTEM", L"SOFTWARE", L"DOWNLOADS", L"Holiday", L"LAST_7_DAYS",
                                   L"LAST_30_DAYS", L"LAST_90_DAYS", L"OLDER", L"ARCHIVES"}));
}

TEST_F(GridOrderTest, AmongGroupsWithoutARankTheMoreUsedStandsFirst) {
    const std::int64_t now = clock.unixTime;
    EntryList list;
    list.entries = {item(L"a", cluster(L"Rare"), now - 90 * kDay), item(L"b", cluster(L"Daily"), now - kDay),
                    item(L"c", cluster(L"Weekly"), now - 7 * kDay)};
    grid.setEntries(list, TabKind::Desktop);
    EXPECT_EQ(groupNames(), (Words{L"Daily", L"Weekly", L"Rare"}));
}

TEST_F(GridOrderTest, GroupsOfTheSameUseKeepTheOrderInWhichTheyCame) {
    const std::int64_t now = clock.unixTime;
    EntryList list;
    for (const wchar_t* name : {L"C", L"A", L"B"}) list.entries.push_back(item(name, cluster(name), now));
    grid.setEntries(list, TabKind::Desktop);
    EXPECT_EQ(groupNames(), (Words{L"C", L"A", L"B"}));
}

TEST_F(GridOrderTest, UsageFadesWithATimeConstantOfThirtyDaysAndAddsUp) {
    givenGroups({{L"G", 3}});
    data(L"G0").timestamp = clock.unixTime - 30 * kDay;
    data(L"G1").timestamp = clock.unixTime;
    data(L"G2").timestamp = 0;  // never used
    EXPECT_NEAR(usageScore(group(L"G"), grid.cells, clock.unixTime), 1 + std::exp(-1.0), 1e-9);
}

TEST_F(GridOrderTest, WhatWasNeverUsedAddsNothing) {
    givenItems({L"a", L"b"});
    IconGroup both;
    both.cells = {0, 1};
    EXPECT_EQ(usageScore(both, grid.cells, 1000), 0);
    data(L"b").timestamp = 1000;
    EXPECT_EQ(usageScore(both, grid.cells, 1000), 1);
}

TEST_F(GridOrderTest, ManyUsesLongAgoCanOutweighOneToday) {
    const std::int64_t now = clock.unixTime;
    EntryList list;
    list.entries.push_back(item(L"today", cluster(L"Single"), now));
    for (int i = 0; i < 4; ++i) list.entries.push_back(item(L"m", cluster(L"Many"), now - 30 * kDay));
    grid.setEntries(list, TabKind::Desktop);
    EXPECT_EQ(groupNames(), (Words{L"Many", L"Single"}));
}

}  // namespace
}  // namespace varnelo
