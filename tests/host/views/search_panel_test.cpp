#include "views/search_panel.h"

#include <cmath>

#include "host/views/text_field_test.h"

namespace varnelo {
namespace {

// A panel in a tabbed area of 800 pixels: name field at y 50, expander at 86, content field at 110.
class SearchPanelTest : public ::testing::Test {
protected:
    SearchPanelTest() {
        ViewLayoutInput place;
        place.surfaceWidth = 800;
        place.surfaceHeight = 600;
        place.firstRect = {0, 0, 800, 600};
        panel.place(layOutView(place));
        panel.setTexts(L"names", L"contents");
        panel.onResized = [this] { ++resized; };
    }

    TextField::Services services() {
        return {input, measure, clipboard, menu, [] { return 0u; }};
    }

    void pressAt(float y) {
        input.cursorX = 100;
        input.cursorY = y;
        panel.onMouseDown();
        panel.onMouseUp();
    }
    void pressExpander() { pressAt(95); }
    // Frames of a tenth of a second until nothing folds.
    void rest() {
        for (int frame = 0; frame < 100 && panel.update(0.1F, 0.1F); ++frame) {
        }
    }

    FrameInput input;
    EvenMeasure measure;
    ScriptedClipboard clipboard;
    ScriptedMenu menu;
    SearchPanel panel{input, services(), services()};
    int resized = 0;
};

TEST_F(SearchPanelTest, TheSecondRowIsClosedAtTheStart) {
    EXPECT_FALSE(panel.isContentExpanded());
    EXPECT_EQ(panel.contentRowHeight(), 0);
    EXPECT_FALSE(panel.contentShows());
    EXPECT_FALSE(panel.update(0.1F, 0.1F));
    EXPECT_EQ(panel.expanderText(), L"\u25b6 contents");
    EXPECT_EQ(resized, 0) << "at rest nothing is laid out";
}

TEST_F(SearchPanelTest, EachFieldSaysWhatItSearches) {
    EXPECT_EQ(panel.nameField.placeholder, L"names");
    EXPECT_EQ(panel.contentField.placeholder, L"contents");
}

TEST_F(SearchPanelTest, TheSecondRowShowsFromHalfAPixelOn) {
    pressExpander();
    panel.update(0.0005F, 0);
    EXPECT_GT(panel.contentRowHeight(), 0);
    EXPECT_FALSE(panel.contentShows());
    panel.update(0.001F, 0);
    EXPECT_LT(panel.contentRowHeight(), 1);
    EXPECT_TRUE(panel.contentShows());
}

TEST_F(SearchPanelTest, APanelThatNobodyLaysOutUnfoldsAllTheSame) {
    panel.onResized = nullptr;
    pressExpander();
    rest();
    EXPECT_EQ(panel.contentRowHeight(), 30);
}

TEST_F(SearchPanelTest, TheMouseWorksInTheSecondFieldWhileItIsOpen) {
    panel.contentField.setText(L"word");
    input.cursorX = 100;
    input.cursorY = 120;
    panel.onDoubleClick();
    EXPECT_FALSE(panel.contentField.hasSelection()) << "closed";
    pressExpander();
    input.cursorX = 15;
    input.cursorY = 120;
    panel.onMouseDown();
    input.cursorX = 36;
    panel.onMouseMove(true);
    panel.onMouseUp();
    input.cursorX = 46;
    panel.onMouseMove(true);
    EXPECT_EQ(panel.contentField.selectionEnd(), 2) << "the release ends the drag";
    panel.onDoubleClick();
    EXPECT_EQ(panel.contentField.selectionEnd(), 4);
    panel.onRightClick();
    EXPECT_TRUE(menu.shown.has_value());
}

TEST_F(SearchPanelTest, APressOnTheExpanderUnfoldsTheSecondRowByEighteenTimesTheGapASecond) {
    pressExpander();
    EXPECT_EQ(panel.expanderText(), L"\u25bc contents");
    EXPECT_TRUE(panel.update(0.02F, 0.02F));
    EXPECT_FLOAT_EQ(panel.contentRowHeight(), (1 - std::exp(-0.36F)) * 30);
    EXPECT_FLOAT_EQ(panel.contentField.collapsedHeight, panel.contentRowHeight());
    EXPECT_EQ(resized, 1);
    rest();
    EXPECT_EQ(panel.contentRowHeight(), 30);
    EXPECT_EQ(panel.contentField.collapsedHeight, -1);
    EXPECT_EQ(panel.contentField.shownHeight(), 30);
}

TEST_F(SearchPanelTest, TheFoldSnapsWithinHalfAPixel) {
    pressExpander();
    int frames = 0;
    while (panel.update(0.01F, 0.01F)) ++frames;
    // 30 * exp(-0.18 n) <= 0.5 for the first time at n = 23.
    EXPECT_EQ(frames, 22);
    EXPECT_EQ(panel.contentRowHeight(), 30);
}

TEST_F(SearchPanelTest, ASecondPressFoldsItBackAndTakesTheFocus) {
    pressExpander();
    rest();
    pressAt(120);
    ASSERT_TRUE(panel.contentField.focused());
    pressExpander();
    EXPECT_FALSE(panel.contentField.focused());
    EXPECT_FALSE(panel.hasFocus());
    rest();
    EXPECT_EQ(panel.contentRowHeight(), 0);
    EXPECT_FALSE(panel.contentShows());
}

TEST_F(SearchPanelTest, APressOnTheExpanderLeavesTheNameFieldsFocus) {
    pressAt(60);
    ASSERT_TRUE(panel.nameField.focused());
    pressExpander();
    EXPECT_TRUE(panel.nameField.focused());
}

TEST_F(SearchPanelTest, AClosedSecondRowTakesNoPress) {
    pressAt(120);
    EXPECT_FALSE(panel.contentField.focused());
}

TEST_F(SearchPanelTest, APressInOneFieldTakesTheOthersFocus) {
    pressExpander();
    pressAt(60);
    pressAt(120);
    EXPECT_FALSE(panel.nameField.focused());
    EXPECT_TRUE(panel.contentField.focused());
    pressAt(60);
    EXPECT_TRUE(panel.nameField.focused());
    EXPECT_FALSE(panel.contentField.focused());
}

TEST_F(SearchPanelTest, CharactersAndKeysGoToTheFieldWithTheFocus) {
    pressExpander();
    pressAt(120);
    panel.onChar(L'a');
    panel.onChar(L'b');
    panel.onKeyDown(37);
    panel.onKeyDown(46);
    EXPECT_EQ(panel.contentField.text(), L"a");
    EXPECT_EQ(panel.nameField.text(), L"");
}

TEST_F(SearchPanelTest, ADoubleClickOnTheExpanderReachesNoField) {
    panel.nameField.setText(L"word");
    pressAt(60);
    input.cursorY = 95;
    panel.onDoubleClick();
    EXPECT_FALSE(panel.nameField.hasSelection());
    EXPECT_FALSE(panel.isContentExpanded());
    input.cursorY = 60;
    panel.onDoubleClick();
    EXPECT_TRUE(panel.nameField.hasSelection());
}

TEST_F(SearchPanelTest, ADragSelectsInTheFieldThatWasPressed) {
    panel.nameField.setText(L"word");
    input.cursorX = 15;
    input.cursorY = 60;
    panel.onMouseDown();
    input.cursorX = 36;
    panel.onMouseMove(true);
    panel.onMouseUp();
    input.cursorX = 46;
    panel.onMouseMove(true);
    EXPECT_EQ(panel.nameField.selectionStart(), 0);
    EXPECT_EQ(panel.nameField.selectionEnd(), 2);
}

TEST_F(SearchPanelTest, TheEditMenuOpensForTheFieldWithTheFocus) {
    pressAt(60);
    panel.onRightClick();
    EXPECT_TRUE(menu.shown.has_value());
}

TEST_F(SearchPanelTest, UntilItIsReadyNoFieldTakesInput) {
    panel.setReady(false);
    pressAt(60);
    EXPECT_FALSE(panel.hasFocus());
    pressExpander();
    pressAt(120);
    EXPECT_FALSE(panel.hasFocus());
    panel.setReady(true);
    for (const float field : {60.0F, 120.0F}) {
        pressAt(field);
        EXPECT_TRUE(panel.hasFocus());
    }
}

TEST_F(SearchPanelTest, TheCaretBlinksByTheClockAlsoWhenFramesAreCapped) {
    pressAt(60);
    ASSERT_TRUE(panel.nameField.caretVisible());
    panel.update(0.1F, 0.265F);
    EXPECT_TRUE(panel.nameField.caretVisible());
    panel.update(0.1F, 0.265F);
    EXPECT_FALSE(panel.nameField.caretVisible());
}

TEST_F(SearchPanelTest, ALongPauseIsOneBlink) {
    pressAt(60);
    panel.update(0.1F, 3600);
    EXPECT_FALSE(panel.nameField.caretVisible());
    panel.update(0.1F, 0.5F);
    EXPECT_FALSE(panel.nameField.caretVisible());
}

TEST_F(SearchPanelTest, ASpinnerNeedsFramesAndABlinkingCaretDoesNot) {
    pressAt(60);
    EXPECT_FALSE(panel.update(0.1F, 0.6F));
    for (TextField* field : {&panel.nameField, &panel.contentField}) {
        field->busy = true;
        EXPECT_TRUE(panel.update(0.1F, 0.1F));
        field->busy = false;
    }
}

TEST_F(SearchPanelTest, ClearingTheFocusClearsBoth) {
    pressAt(60);
    panel.clearFocus();
    EXPECT_FALSE(panel.hasFocus());
    EXPECT_FALSE(panel.nameField.focused());
    pressExpander();
    pressAt(120);
    panel.clearFocus();
    EXPECT_FALSE(panel.contentField.focused());
}

}  // namespace
}  // namespace varnelo
