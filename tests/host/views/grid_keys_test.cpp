#include "host/views/grid_test.h"
#include "views/grid_type_ahead.h"

namespace varnelo {
namespace {

constexpr int kDelete = 46;

class GridKeysTest : public GridTest {
protected:
    void SetUp() override { givenActive(); }
    void TearDown() override { IconGridManager::activeGrid = nullptr; }
};

TEST_F(GridKeysTest, ALetterSelectsTheFirstItemThatStartsWithIt) {
    givenItems({L"apple", L"banana", L"cherry", L"Blue"});
    key('B');
    EXPECT_EQ(selectedNames(), (Words{L"banana"}));
    EXPECT_EQ(grid.selection.lastMatch, 1);
    EXPECT_EQ(grid.selection.lastCharacter, static_cast<std::uint32_t>('B'));
}

TEST_F(GridKeysTest, TheSameLetterAgainGoesOnAndAround) {
    givenItems({L"apple", L"banana", L"cherry", L"Blue"});
    key('B');
    key('B');
    EXPECT_EQ(selectedNames(), (Words{L"Blue"}));
    key('b');
    EXPECT_EQ(selectedNames(), (Words{L"banana"}));
}

TEST_F(GridKeysTest, TheSearchStartsBehindTheLastSelectedItem) {
    givenItems({L"b1", L"b2", L"b3", L"b4"});
    grid.cells[0].selected = true;
    grid.cells[2].selected = true;
    key('B');
    EXPECT_EQ(selectedNames(), (Words{L"b4"}));
}

TEST_F(GridKeysTest, TheOnlyMatchIsFoundAgain) {
    givenItems({L"apple", L"banana"});
    key('B');
    key('B');
    EXPECT_EQ(selectedNames(), (Words{L"banana"}));
}

TEST_F(GridKeysTest, ALetterWithoutAMatchChangesNothing) {
    givenPane(400, 300);
    givenGroups({{L"G", 6}});
    frame();
    grid.cells[0].selected = true;
    key('G');
    const float scroll = grid.scrollY;
    const Words selected = selectedNames();
    key('Q');
    EXPECT_EQ(selectedNames(), selected);
    EXPECT_EQ(grid.scrollY, scroll);
    EXPECT_EQ(grid.selection.lastCharacter, static_cast<std::uint32_t>('G'));
}

TEST_F(GridKeysTest, OnlyLettersAreTypedAhead) {
    givenItems({L"1", L"[", L"{", L"@"});
    for (const int other : {'1', '[', '@', '`', '{'}) key(other);
    EXPECT_EQ(selectedNames(), Words{});
}

TEST_F(GridKeysTest, EveryLetterIsTypedAheadInEitherCase) {
    givenItems({L"able", L"zoo", L"Ant", L"Zebra"});
    key('a');
    EXPECT_EQ(selectedNames(), (Words{L"able"}));
    key('z');
    EXPECT_EQ(selectedNames(), (Words{L"zoo"}));
    key('A');
    EXPECT_EQ(selectedNames(), (Words{L"Ant"}));
    key('Z');
    EXPECT_EQ(selectedNames(), (Words{L"Zebra"}));
}

TEST_F(GridKeysTest, KeysGoToTheActivePaneAlone) {
    givenItems({L"apple"});
    IconGridManager::activeGrid = nullptr;
    key('A');
    EXPECT_EQ(selectedNames(), Words{});
}

TEST_F(GridKeysTest, InGroupsTheOrderIsThatOfTheGroups) {
    givenPane(1000, 900);
    EntryList list;
    list.entries = {item(L"x1", special(SpecialGroup::Older)), item(L"x2", special(SpecialGroup::System))};
    grid.setEntries(list, TabKind::Desktop);
    frame();
    key('X');
    EXPECT_EQ(selectedNames(), (Words{L"x2"}));
    key('X');
    EXPECT_EQ(selectedNames(), (Words{L"x1"}));
}

TEST_F(GridKeysTest, AMatchThatIsHiddenOpensItsGroup) {
    givenPane(400, 900);
    givenGroups({{L"G", 6}, {L"H", 2}});
    frame();
    grid.cells[4].selected = true;
    key('G');
    EXPECT_EQ(selectedNames(), (Words{L"G5"}));
    EXPECT_FALSE(group(L"G").collapsed);
    EXPECT_TRUE(group(L"G").expandedByTypeAhead);
    EXPECT_EQ(group(L"G").targetHeight, 2 * kCellHeight);
}

TEST_F(GridKeysTest, AMatchThatIsSeenLeavesItsGroupCollapsed) {
    givenPane(400, 900);
    givenGroups({{L"G", 6}});
    frame();
    key('G');
    EXPECT_TRUE(group(L"G").collapsed);
}

TEST_F(GridKeysTest, AGroupOpenedByTypingClosesWhenTheMatchIsElsewhere) {
    givenPane(400, 900);
    givenGroups({{L"G", 6}, {L"H", 2}});
    frame();
    grid.cells[4].selected = true;
    key('G');
    settle();
    key('H');
    EXPECT_TRUE(group(L"G").collapsed);
    EXPECT_FALSE(group(L"G").expandedByTypeAhead);
}

TEST_F(GridKeysTest, AnyGroupOpenedByTypingClosesAlsoOneBelowTheMatch) {
    givenPane(400, 900);
    givenGroups({{L"G", 2}, {L"H", 6}});
    frame();
    cell(L"H4").selected = true;
    key('H');
    ASSERT_FALSE(group(L"H").collapsed);
    settle();
    key('G');
    EXPECT_TRUE(group(L"H").collapsed);
    EXPECT_FALSE(group(L"H").expandedByTypeAhead);
}

TEST_F(GridKeysTest, AGroupOpenedByAClickStaysOpenWhenTheMatchIsElsewhere) {
    givenPane(400, 900);
    givenGroups({{L"G", 6}, {L"H", 2}});
    clickHeader(L"G");
    settle();
    key('H');
    EXPECT_FALSE(group(L"G").collapsed);
}

TEST_F(GridKeysTest, AGroupOpenedByAClickStaysTheUsersWhenAMatchInItIsOutOfSight) {
    givenPane(400, 200);
    givenGroups({{L"G", 20}});
    clickHeader(L"G");
    settle();
    cell(L"G18").selected = true;
    ASSERT_FALSE(cell(L"G19").visible);
    key('G');
    EXPECT_FALSE(group(L"G").expandedByTypeAhead);
    EXPECT_FALSE(group(L"G").collapsed);
}

TEST_F(GridKeysTest, AHeaderClickForgetsThatTypingOpenedTheOthers) {
    givenPane(400, 900);
    givenGroups({{L"G", 6}, {L"H", 6}});
    frame();
    grid.cells[4].selected = true;
    key('G');
    settle();
    clickHeader(L"H");
    EXPECT_TRUE(group(L"G").collapsed);
    EXPECT_FALSE(group(L"G").expandedByTypeAhead);
}

TEST_F(GridKeysTest, AMatchAboveComesIntoViewWithACellOfHeadroom) {
    givenPane(10 + kCellWidth, 300);
    givenItems({L"a", L"b", L"c", L"d", L"e", L"f", L"g", L"h"});
    grid.scrollY = 500;
    frame();
    key('D');
    EXPECT_FLOAT_EQ(grid.scrollY, cell(L"d").targetY - kCellHeight - 10);
    EXPECT_EQ(grid.scrollBarAlphaTarget, 1);
    EXPECT_EQ(grid.lastScrollActivity, clock.steady);
}

TEST_F(GridKeysTest, AMatchBelowComesIntoViewWithAMargin) {
    givenPane(10 + kCellWidth, 300);
    givenItems({L"a", L"b", L"c", L"d", L"e", L"f", L"g", L"h"});
    frame();
    key('F');
    EXPECT_FLOAT_EQ(grid.scrollY, cell(L"f").targetY + kCellHeight - 300 + 10);
}

TEST_F(GridKeysTest, AMatchInTheFirstRowScrollsToTheTopAndNotBeyond) {
    givenPane(10 + kCellWidth, 300);
    givenItems({L"a", L"b", L"c", L"d", L"e", L"f", L"g", L"h"});
    grid.scrollY = 300;
    frame();
    key('A');
    EXPECT_EQ(grid.scrollY, 0);
}

TEST_F(GridKeysTest, AMatchWellInsideOfThePaneDoesNotScroll) {
    givenPane(10 + kCellWidth, 500);
    givenItems({L"a", L"b", L"c", L"d", L"e", L"f", L"g", L"h"});
    grid.scrollY = 100;
    frame();
    key('D');
    EXPECT_EQ(grid.scrollY, 100);
}

TEST_F(GridKeysTest, AMatchExactlyAtAMarginDoesNotScroll) {
    givenPane(10 + kCellWidth, 500);
    givenItems({L"a"});
    grid.scrollY = 100;
    grid.cells[0].targetY = 100 + 10 + kCellHeight;
    EXPECT_FALSE(scrollTo(grid, 0));
    grid.cells[0].targetY = 100 + 500 - 10 - kCellHeight;
    EXPECT_FALSE(scrollTo(grid, 0));
    EXPECT_EQ(grid.scrollY, 100);
}

TEST_F(GridKeysTest, AMatchJustBeyondAMarginScrollsAndShowsTheBar) {
    givenPane(10 + kCellWidth, 500);
    givenItems({L"a"});
    grid.scrollY = 100;
    grid.cells[0].targetY = 100 + 10 + kCellHeight - 0.5f;
    EXPECT_TRUE(scrollTo(grid, 0));
    EXPECT_EQ(grid.scrollY, 99.5f);
    grid.scrollY = 100;
    grid.cells[0].targetY = 100 + 500 - 10 - kCellHeight + 0.5f;
    EXPECT_TRUE(scrollTo(grid, 0));
    EXPECT_EQ(grid.scrollY, 100.5f);
}

TEST_F(GridKeysTest, CtrlCCopiesTheSelectedItems) {
    givenItems({L"a", L"b", L"c"});
    grid.cells[0].selected = grid.cells[2].selected = true;
    ctrlKey('C');
    EXPECT_EQ(actions.done, (Words{L"copy a c"}));
    ctrlKey('x');
    EXPECT_EQ(actions.done, (Words{L"copy a c", L"cut a c"}));
}

TEST_F(GridKeysTest, ACutChangesNothingOfTheCutItems) {
    givenItems({L"a", L"b"});
    grid.cells[0].selected = true;
    ctrlKey('X');
    EXPECT_FALSE(grid.cells[0].dimmed);
    EXPECT_TRUE(grid.cells[0].selected);
    EXPECT_EQ(grid.cells.size(), 2u);
}

TEST_F(GridKeysTest, WithNothingSelectedNothingIsCopiedOrDeleted) {
    givenItems({L"a"});
    ctrlKey('C');
    ctrlKey('X');
    key(kDelete);
    EXPECT_EQ(actions.done, Words{});
}

TEST_F(GridKeysTest, CtrlVPastesIntoTheFolderOfTheList) {
    givenItems({L"a"});
    ctrlKey('V');
    EXPECT_EQ(actions.done, Words{});  // no folder
    EntryList list;
    list.folder = idOf(L"Desktop");
    grid.setEntries(list, TabKind::Desktop);
    ctrlKey('V');
    EXPECT_EQ(actions.done, (Words{L"paste into Desktop"}));
}

TEST_F(GridKeysTest, DeleteSendsTheSelectedItemsToTheRecycleBin) {
    givenItems({L"a", L"b"});
    grid.cells[1].selected = true;
    key(kDelete);
    EXPECT_EQ(actions.done, (Words{L"recycle b"}));
}

TEST_F(GridKeysTest, CtrlWithAnyOtherLetterDoesNothing) {
    EntryList list;
    list.entries = {item(L"a")};
    list.folder = idOf(L"Desktop");
    grid.setEntries(list, TabKind::Desktop);
    grid.cells[0].selected = true;
    for (int letter = 'A'; letter <= 'Z'; ++letter) {
        if (letter != 'C' && letter != 'X' && letter != 'V') ctrlKey(letter);
    }
    EXPECT_EQ(actions.done, Words{});
}

// On many keyboards the two together make a character, as the right Alt key does.
TEST_F(GridKeysTest, CtrlWithAltIsNoCommandAndTypesNothing) {
    givenItems({L"cherry", L"citron"});
    grid.cells[1].selected = true;
    input.altDown = true;
    ctrlKey('C');
    ctrlKey(kDelete);
    EXPECT_EQ(actions.done, Words{});
    EXPECT_EQ(selectedNames(), (Words{L"citron"}));
}

TEST_F(GridKeysTest, AnOverviewPaneRefusesWhatChangesFiles) {
    EntryList list;
    list.entries = {item(L"a")};
    list.folder = idOf(L"Desktop");
    grid.setEntries(list, TabKind::Overview);
    grid.cells[0].selected = true;
    ctrlKey('X');
    ctrlKey('V');
    key(kDelete);
    EXPECT_EQ(actions.done, Words{});
    ctrlKey('C');
    EXPECT_EQ(actions.done, (Words{L"copy a"}));
}

TEST_F(GridKeysTest, WithoutActionsNoKeyDoesMoreThanSelect) {
    WordGrid bare({input, clock, shell, settings, language, nullptr}, TabKind::Desktop);
    EntryList list;
    list.entries = {item(L"a"), item(L"b")};
    list.folder = idOf(L"Desktop");
    bare.setEntries(list, TabKind::Desktop);
    IconGridManager::activeGrid = &bare;
    bare.onKeyDown('B');
    bare.onKeyDown(kDelete);
    input.ctrlDown = true;
    for (const int key : {'C', 'X', 'V'}) bare.onKeyDown(key);
    EXPECT_FALSE(bare.cells[0].selected);
    EXPECT_TRUE(bare.cells[1].selected);
    EXPECT_EQ(bare.cells.size(), 2u);
}

TEST_F(GridKeysTest, CtrlLettersAreNotTypedAhead) {
    givenItems({L"apple", L"cherry"});
    ctrlKey('A');
    EXPECT_EQ(selectedNames(), Words{});
}

TEST_F(GridKeysTest, InAVirtualPaneTheMatchIsTheOnlySelectedRowOfAll) {
    givenPane(10 + kCellWidth, 300);
    givenSource(100);
    grid.selection.rows = {2, 50, 90};
    key('R');
    EXPECT_EQ(grid.selection.rows, (std::unordered_set<std::uint64_t>{0}));
}

}  // namespace
}  // namespace varnelo
