#include "views/text_field_view_win.h"

#include <optional>

#include "support/widget_fixture_win.h"
#include "views/clipboard_text.h"
#include "views/edit_menu.h"
#include "views/frame_input.h"
#include "views/text_field.h"

namespace varnelo {
namespace {

struct NoClipboard final : ClipboardText {
    bool hasText() const override { return false; }
    std::optional<std::wstring> read() override { return std::nullopt; }
    bool write(std::wstring_view) override { return false; }
};

struct NoMenu final : EditMenu {
    EditCommand choose(const EditMenuState&) override { return EditCommand::None; }
};

class TextFieldViewTest : public WidgetFixture {
protected:
    static constexpr int kHome = 36, kEnd = 35;

    void SetUp() override {
        WidgetFixture::SetUp();
        place(30);
    }
    void TearDown() override {
        view.releaseResources();
        WidgetFixture::TearDown();
    }

    void place(float height) {
        field.place({20, 40, 300, height});
        view.createResources();
    }
    void given(const std::wstring& text) {
        place(field.rect().h);
        field.setText(text);
    }
    void focus() {
        input.cursorX = 30;
        input.cursorY = 45;
        field.onMouseDown();
        field.onMouseUp();
        field.onKeyDown(kHome);
    }
    void selectAll() {
        focus();
        input.shiftDown = true;
        field.onKeyDown(kEnd);
        input.shiftDown = false;
    }
    Picture shown() {
        return frame([this] { view.draw(false); });
    }
    ViewRect box() const { return layOutTextField(field).textBox; }

    FrameInput input;
    NoClipboard clipboard;
    NoMenu menu;
    TextMeasureWin measure{canvas};
    TextField field{{input, measure, clipboard, menu, [] { return 0U; }}};
    TextFieldView view{canvas, field, measure};
};

TEST_F(TextFieldViewTest, AnEmptyFieldIsGlassInsideAnOutline) {
    for (const float height : {30.0F, 40.0F, 60.0F}) {
        place(height);
        const Picture picture = shown();
        EXPECT_EQ(differing(picture, wallpaper, field.rect(), Where::Outside, 1), 0);
        Picture glass = wallpaper;
        blurOn(glass, wallpaper, field.rect(), kTextFieldTint);
        const ViewRect inside{field.rect().x + 2, field.rect().y + 2, field.rect().w - 4, height - 4};
        EXPECT_EQ(differing(picture, glass, inside, Where::Inside), 0);
        // The outline lies half on either side of the edge.
        EXPECT_GT(differing(picture, glass, inside, Where::Outside), 300);
    }
}

TEST_F(TextFieldViewTest, TheTextStandsInItsBox) {
    for (const float height : {30.0F, 40.0F, 60.0F}) {
        place(height);
        given(L"\u00C4pfel and \u65E5\u672C\u8A9E");
        const Picture picture = shown();
        EXPECT_TRUE(hasInk(picture, box())) << height;
        const ViewRect& rect = field.rect();
        EXPECT_FALSE(hasInk(picture, {rect.x, rect.y, field.padding(), height}));
        EXPECT_EQ(differing(picture, wallpaper, rect, Where::Outside, 1), 0);
    }
}

TEST_F(TextFieldViewTest, ALongTextStaysInItsBoxAtBothEnds) {
    given(std::wstring(100, L'W'));
    focus();
    for (const int key : {kHome, kEnd}) {
        field.onKeyDown(key);
        const Picture picture = shown();
        EXPECT_TRUE(hasInk(picture, box()));
        const ViewRect& rect = field.rect();
        EXPECT_FALSE(hasInk(picture, {rect.x + 1, rect.y, field.padding() - 2, rect.h}));
        EXPECT_FALSE(hasInk(picture, {box().right() + 1, rect.y, field.padding() - 2, rect.h}));
    }
    EXPECT_GT(field.scrollX(), 500);
}

TEST_F(TextFieldViewTest, APlaceholderIsFainterThanAText) {
    field.placeholder = L"Search";
    Picture glass = wallpaper;
    blurOn(glass, wallpaper, field.rect(), kTextFieldTint);
    place(30);
    const Picture faint = shown();
    EXPECT_GT(differing(faint, glass, box(), Where::Inside), 50);
    EXPECT_FALSE(hasInk(faint, box()));
    given(L"Search");
    EXPECT_TRUE(hasInk(shown(), box()));
    field.enabled = false;
    EXPECT_FALSE(hasInk(shown(), box()));
}

TEST_F(TextFieldViewTest, TheSelectionLiesUnderTheSelectedText) {
    given(L"some words");
    focus();
    const Picture plain = shown();
    selectAll();
    const Picture selected = shown();
    const std::optional<ViewRect> plate = layOutTextField(field).selection;
    ASSERT_TRUE(plate);
    EXPECT_GT(plate->w, 40);
    EXPECT_GT(differing(selected, plain, *plate, Where::Inside), 300);
    // The carets stand outside of it, or at its edges.
    EXPECT_EQ(differing(selected, plain, *plate, Where::Outside, 2), 0);
    EXPECT_TRUE(hasInk(selected, *plate)) << "the text lies over it";
}

TEST_F(TextFieldViewTest, TheCaretIsALineAtItsPrefix) {
    given(L"iiii");
    focus();
    field.onKeyDown(kEnd);
    const Picture with = shown();
    const std::optional<CaretLine> caret = layOutTextField(field).caret;
    ASSERT_TRUE(caret);
    field.update(0.53F);
    const Picture without = shown();
    const ViewRect line{caret->x - 0.75F, caret->top, 1.5F, caret->bottom - caret->top};
    EXPECT_GE(differing(with, without, line, Where::Inside), 18);
    EXPECT_EQ(differing(with, without, line, Where::Outside, 1), 0);
    float covered = 0;
    const int middle = static_cast<int>((caret->top + caret->bottom) / 2);
    for (int x = 0; x < kWidth; ++x) {
        const float below = without.at(x, middle).g;
        covered += (with.at(x, middle).g - below) / (1 - below);
    }
    // Not every engine smooths a line's edges.
    EXPECT_NEAR(covered, kTextFieldCaretWidth, 0.6F) << "its width";
}

TEST_F(TextFieldViewTest, TheSpinnerIsThreeQuartersOfARing) {
    field.busy = true;
    const Picture busy = shown();
    field.busy = false;
    const Picture idle = shown();
    field.busy = true;
    const SpinnerArc arc = *layOutTextField(field).spinner;
    // From the right clockwise over the bottom and the left to the top: the upper right quarter is open.
    const auto drawnAt = [&](float degrees) {
        const float radians = degrees * 3.14159265F / 180;
        const int x = static_cast<int>(arc.centre.x + arc.radius * std::cos(radians));
        const int y = static_cast<int>(arc.centre.y + arc.radius * std::sin(radians));
        return std::abs(busy.at(x, y).b - idle.at(x, y).b) > 0.1F;
    };
    for (const float degrees : {20.0F, 45.0F, 90.0F, 135.0F, 180.0F, 225.0F, 250.0F})
        EXPECT_TRUE(drawnAt(degrees)) << degrees;
    for (const float degrees : {300.0F, 315.0F, 330.0F}) EXPECT_FALSE(drawnAt(degrees)) << degrees;
    const float reach = arc.radius + arc.strokeWidth;
    const ViewRect around{arc.centre.x - reach, arc.centre.y - reach, 2 * reach, 2 * reach};
    EXPECT_EQ(differing(busy, idle, around, Where::Outside), 0);

    field.update(0.25F);
    const Picture turned = shown();
    EXPECT_GT(differing(turned, busy, around, Where::Inside), 20);
    EXPECT_EQ(differing(turned, busy, around, Where::Outside), 0);
}

TEST_F(TextFieldViewTest, AFoldedFieldIsCut) {
    field.collapsedHeight = 6;
    field.busy = true;
    given(L"WWWW");
    selectAll();
    const Picture picture = shown();
    // Not even the outer half of the outline shows.
    EXPECT_EQ(differing(picture, wallpaper, {20, 40, 300, 6}, Where::Outside), 0);
    EXPECT_GT(differing(picture, wallpaper, {20, 40, 300, 6}, Where::Inside), 1000);
}

TEST_F(TextFieldViewTest, AtRestNothingIsCreated) {
    given(L"some words");
    selectAll();
    field.busy = true;
    const Picture first = shown();
    const WidgetStatistics before = canvas.made;
    expectSame(shown(), first, 0);
    field.update(0.1F);
    shown();
    EXPECT_EQ(canvas.made, before) << "the spinner turns without anything new";
    EXPECT_EQ(before.brushes, 8U);
    field.onChar(L'x');
    shown();
    EXPECT_EQ(canvas.made.layouts, before.layouts + 1) << "another text is laid out once";
}

TEST_F(TextFieldViewTest, TheTextSurvivesTheResources) {
    given(L"some words");
    const Picture first = shown();
    view.releaseResources();
    EXPECT_EQ(field.text(), L"some words");
    expectSame(shown(), first, 0);
}

TEST_F(TextFieldViewTest, InTheScenePassTheSceneIsDrawnTo) {
    given(L"some words");
    selectAll();
    const Picture direct = shown();
    expectSame(frame([this] { window.surface.renderScene([this] { view.draw(true); }); }), wallpaper, 0);
    expectSame(window.contentOf(window.surface.sceneSRV.get()), direct, 1);
}

TEST_F(TextFieldViewTest, WithoutATargetNothingIsDrawn) {
    given(L"some words");
    expectSame(frame([this] { view.draw(true); }), wallpaper, 0);
    window.surface.d2dRT.reset();
    expectSame(shown(), wallpaper, 0);
}

TEST_F(TextFieldViewTest, WithoutATextEngineTheFieldHasNoTextAndStillDraws) {
    const ComRef<IDWriteFactory> engine = window.surface.dwriteFactory;
    window.surface.dwriteFactory.reset();
    view.releaseResources();
    field.setText(L"some words");
    focus();
    const Picture picture = shown();
    window.surface.dwriteFactory = engine;
    Picture glass = wallpaper;
    blurOn(glass, wallpaper, field.rect(), kTextFieldTint);
    EXPECT_GT(differing(picture, wallpaper, field.rect(), Where::Inside), 1000);
    EXPECT_EQ(differing(picture, glass, {40, 45, 270, 20}, Where::Inside), 0);
}

}  // namespace
}  // namespace varnelo
