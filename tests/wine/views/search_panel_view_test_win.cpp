#include "views/search_panel_view_win.h"

#include "host/views/text_field_test.h"
#include "support/widget_fixture_win.h"
#include "views/search_panel.h"

namespace varnelo {
namespace {

// A panel in a tabbed area of 420 by 300: name field at y 50, expander at 86, content field at 110.
class SearchPanelViewTest : public WidgetFixture {
protected:
    SearchPanelViewTest() {
        ViewLayoutInput place;
        place.surfaceWidth = kWidth;
        place.surfaceHeight = kHeight;
        place.firstRect = {0, 0, float{kWidth}, float{kHeight}};
        panel.place(layOutView(place));
        panel.setTexts(L"names", L"contents");
    }
    void TearDown() override {
        view.releaseResources();
        WidgetFixture::TearDown();
    }

    TextField::Services services(TextMeasure& measure) {
        return {input, measure, clipboard, menu, [] { return 0U; }};
    }
    void pressExpander() {
        input.cursorX = 100;
        input.cursorY = 95;
        panel.onMouseDown();
        panel.onMouseUp();
    }
    Picture shown() {
        return frame([this] { view.draw(false); });
    }
    int drawnBelow(const Picture& picture, float y) const {
        return differing(picture, wallpaper, {0, y, float{kWidth}, kHeight - y}, Where::Inside);
    }

    FrameInput input;
    ScriptedClipboard clipboard;
    ScriptedMenu menu;
    TextMeasureWin nameMeasure{canvas};
    TextMeasureWin contentMeasure{canvas};
    SearchPanel panel{input, services(nameMeasure), services(contentMeasure)};
    SearchPanelView view{canvas, panel, nameMeasure, contentMeasure};
};

TEST_F(SearchPanelViewTest, ClosedItIsTheNameFieldAndTheExpander) {
    const Picture picture = shown();
    EXPECT_GT(differing(picture, wallpaper, panel.nameField.rect(), Where::Inside), 1000);
    EXPECT_TRUE(hasInk(picture, panel.expanderRect()));
    EXPECT_EQ(drawnBelow(picture, panel.expanderRect().bottom()), 0);
}

TEST_F(SearchPanelViewTest, TheContentFieldShowsFromHalfAPixelOnAsFarAsItIsUnfolded) {
    const float top = panel.contentField.rect().y;
    pressExpander();
    panel.update(0.0005F, 0);
    ASSERT_LT(panel.contentRowHeight(), 0.5F);
    EXPECT_EQ(drawnBelow(shown(), top), 0);
    panel.update(0.02F, 0);
    const float height = panel.contentRowHeight();
    ASSERT_LT(height, 20);
    const Picture unfolding = shown();
    EXPECT_GT(drawnBelow(unfolding, top), 500);
    EXPECT_EQ(drawnBelow(unfolding, std::ceil(top + height)), 0);
    while (panel.update(0.1F, 0)) {
    }
    EXPECT_GT(drawnBelow(shown(), top + 25), 500);
}

}  // namespace
}  // namespace varnelo
