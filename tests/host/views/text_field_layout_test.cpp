#include "views/text_field_layout.h"

#include <cmath>

#include "host/views/text_field_test.h"

namespace varnelo {
namespace {

// The field is 300 by 30 at (100, 50): its text begins at 104.5 and has 291 pixels.
class TextFieldLayoutTest : public TextFieldTest {
protected:
    TextFieldLayout layout() { return layOutTextField(field); }
};

void expectRect(const ViewRect& rect, const ViewRect& wanted) {
    EXPECT_FLOAT_EQ(rect.x, wanted.x);
    EXPECT_FLOAT_EQ(rect.y, wanted.y);
    EXPECT_FLOAT_EQ(rect.w, wanted.w);
    EXPECT_FLOAT_EQ(rect.h, wanted.h);
}

TEST_F(TextFieldLayoutTest, AFieldAtRestIsItsRectangleWithATextBoxInside) {
    field.setText(L"abc");
    const TextFieldLayout shown = layout();
    expectRect(shown.outline, {100, 50, 300, 30});
    expectRect(shown.textBox, {104.5F, 50, 291, 30});
    EXPECT_FALSE(shown.cut);
    EXPECT_FLOAT_EQ(shown.textX, 104.5F);
    EXPECT_EQ(shown.outlineBrush, TextFieldBrush::Border);
    EXPECT_EQ(shown.textBrush, TextFieldBrush::Text);
    EXPECT_FALSE(shown.showsPlaceholder || shown.spinner || shown.selection || shown.caret);
}

TEST_F(TextFieldLayoutTest, AFoldedFieldIsCutAtItsHeight) {
    field.collapsedHeight = 12;
    EXPECT_TRUE(layout().cut);
    expectRect(layout().outline, {100, 50, 300, 12});
    EXPECT_FLOAT_EQ(layout().textBox.h, 12);
    for (const float height : {0.0F, -1.0F, 30.0F, 40.0F}) {
        field.collapsedHeight = height;
        EXPECT_FALSE(layout().cut);
        EXPECT_FLOAT_EQ(layout().outline.h, 30);
    }
}

TEST_F(TextFieldLayoutTest, TheOutlineTellsWhetherTheFieldTakesInput) {
    given(L"a|");
    EXPECT_EQ(layout().outlineBrush, TextFieldBrush::FocusBorder);
    field.enabled = false;
    EXPECT_EQ(layout().outlineBrush, TextFieldBrush::Disabled);
    EXPECT_EQ(layout().textBrush, TextFieldBrush::Disabled);
}

TEST_F(TextFieldLayoutTest, AnEmptyFieldShowsItsPlaceholderWithAndWithoutFocus) {
    EXPECT_TRUE(layout().showsPlaceholder);
    EXPECT_EQ(layout().textBrush, TextFieldBrush::Placeholder);
    given(L"|");
    EXPECT_TRUE(layout().showsPlaceholder);
    EXPECT_EQ(layout().textBrush, TextFieldBrush::Placeholder);
    EXPECT_TRUE(layout().caret);
    type(L"a");
    EXPECT_FALSE(layout().showsPlaceholder);
}

TEST_F(TextFieldLayoutTest, TheSpinnerTakesASquareAtTheRightEnd) {
    field.busy = true;
    field.update(0.25F);
    const TextFieldLayout shown = layout();
    ASSERT_TRUE(shown.spinner);
    EXPECT_FLOAT_EQ(shown.spinner->centre.x, 385);
    EXPECT_FLOAT_EQ(shown.spinner->centre.y, 65);
    EXPECT_FLOAT_EQ(shown.spinner->radius, 9);
    EXPECT_FLOAT_EQ(shown.spinner->strokeWidth, 2.4F);
    EXPECT_FLOAT_EQ(shown.spinner->turnedDegrees, 90);
    EXPECT_FLOAT_EQ(shown.textBox.w, 261);
    field.collapsedHeight = 10;
    EXPECT_FLOAT_EQ(layout().spinner->centre.x, 395);
    EXPECT_FLOAT_EQ(layout().spinner->centre.y, 55);
    EXPECT_FLOAT_EQ(layout().spinner->radius, 3);
    EXPECT_FLOAT_EQ(layout().textBox.w, 281);
}

TEST_F(TextFieldLayoutTest, TheSpinnersCurvesAreThreeQuartersOfACircle) {
    const auto points = spinnerCurves(9);
    EXPECT_EQ(points.front().x, 9);
    EXPECT_EQ(points.front().y, 0);
    EXPECT_EQ(points.back().x, 0);
    EXPECT_EQ(points.back().y, -9);
    float turned = 0;
    Float2 last = points.front();
    for (std::size_t curve = 0; curve < 3; ++curve) {
        const Float2* p = &points[3 * curve];
        for (int i = 0; i <= 20; ++i) {
            const float t = static_cast<float>(i) / 20;
            const float s = 1 - t;
            const float a = s * s * s, b = 3 * s * s * t, c = 3 * s * t * t, d = t * t * t;
            const Float2 at{a * p[0].x + b * p[1].x + c * p[2].x + d * p[3].x,
                            a * p[0].y + b * p[1].y + c * p[2].y + d * p[3].y};
            EXPECT_NEAR(std::hypot(at.x, at.y), 9, 0.01F);
            turned += std::atan2(last.x * at.y - last.y * at.x, last.x * at.x + last.y * at.y);
            last = at;
        }
    }
    EXPECT_NEAR(turned, 4.71239F, 0.001F);
}

TEST_F(TextFieldLayoutTest, TheSelectionSpansItsPrefixesWhicheverWayItWasMade) {
    for (const wchar_t* picture : {L"a[bcd]e", L"a]bcd[e"}) {
        given(picture);
        ASSERT_TRUE(layout().selection);
        expectRect(*layout().selection, {114.5F, 53, 30, 24});
    }
}

TEST_F(TextFieldLayoutTest, TheSelectionStaysInsideTheBox) {
    given(L"]" + std::wstring(60, L'x') + L"[");
    expectRect(*layout().selection, {104.5F, 53, 291, 24});
    given(L"[" + std::wstring(60, L'x') + L"]");
    expectRect(*layout().selection, {104.5F, 53, 289.5F, 24});
    EXPECT_LT(layout().textX, 104.5F);
    given(L"[xx]" + std::wstring(60, L'x'));
    field.place({100, 50, 10, 30});
    const ViewRect box = layout().textBox;
    const ViewRect selection = *layout().selection;
    EXPECT_GE(selection.x, box.x);
    EXPECT_LE(selection.right(), box.right());
    EXPECT_GE(selection.w, 0);
}

TEST_F(TextFieldLayoutTest, SelectionAndCaretShowOnlyWithTheFocus) {
    given(L"a[b]c");
    EXPECT_TRUE(layout().selection && layout().caret);
    field.loseFocus();
    EXPECT_FALSE(layout().selection || layout().caret);
}

TEST_F(TextFieldLayoutTest, TheCaretsLineStandsAtItsPrefix) {
    given(L"abc|de");
    ASSERT_TRUE(layout().caret);
    EXPECT_FLOAT_EQ(layout().caret->x, 134.5F);
    EXPECT_FLOAT_EQ(layout().caret->top, 54.5F);
    EXPECT_FLOAT_EQ(layout().caret->bottom, 75.5F);
    field.update(0.53F);
    EXPECT_FALSE(layout().caret) << "blinked away";
}

TEST_F(TextFieldLayoutTest, OfAFoldedFieldSelectionAndCaretFollowWhatShows) {
    given(L"a[bcd]e");
    field.collapsedHeight = 10;
    expectRect(*layout().selection, {114.5F, 51, 30, 8});
    EXPECT_FLOAT_EQ(layout().caret->top, 51.5F);
    EXPECT_FLOAT_EQ(layout().caret->bottom, 58.5F);
}

TEST_F(TextFieldLayoutTest, OfAScrolledTextTheCaretStandsInTheBox) {
    given(std::wstring(60, L'x') + L"|");
    const TextFieldLayout shown = layout();
    EXPECT_FLOAT_EQ(shown.textX, 104.5F - field.scrollX());
    EXPECT_LE(shown.caret->x + kTextFieldCaretWidth / 2, shown.textBox.right());
    EXPECT_GE(shown.caret->x, shown.textBox.x);
}

TEST_F(TextFieldLayoutTest, TheBrushesHaveTheirColours) {
    const auto expectColor = [](TextFieldBrush brush, float r, float g, float b, float a) {
        const Float4& color = kTextFieldColors[static_cast<std::size_t>(brush)];
        EXPECT_EQ(color.r, r);
        EXPECT_EQ(color.g, g);
        EXPECT_EQ(color.b, b);
        EXPECT_EQ(color.a, a);
    };
    expectColor(TextFieldBrush::Text, 1, 1, 1, 1);
    expectColor(TextFieldBrush::Caret, 1, 1, 1, 1);
    expectColor(TextFieldBrush::Border, 0.5F, 0.5F, 0.5F, 0.6F);
    expectColor(TextFieldBrush::FocusBorder, 0.7F, 0.7F, 0.9F, 0.8F);
    expectColor(TextFieldBrush::Disabled, 0.4F, 0.4F, 0.4F, 0.4F);
    expectColor(TextFieldBrush::Spinner, 0.35F, 0.55F, 1, 1);
    expectColor(TextFieldBrush::Placeholder, 0.8F, 0.8F, 0.8F, 0.45F);
    expectColor(TextFieldBrush::Selection, 0.26F, 0.52F, 0.96F, 0.45F);
    EXPECT_EQ(kTextFieldFontShare, 0.45F);
    EXPECT_EQ(kTextFieldOutlineWidth, 1);
    EXPECT_EQ(kTextFieldCaretWidth, 1.5F);
}

}  // namespace
}  // namespace varnelo
