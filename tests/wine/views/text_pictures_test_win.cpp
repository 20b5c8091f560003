#include "views/text_pictures_win.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "support/surface_window_win.h"

namespace varnelo {
namespace {

using reference::Picture;

constexpr int kWidth = 400;
constexpr int kHeight = 160;
constexpr float kLabelWidth = 94;
// Every pass of a direct drawing rounds to eight bits; the picture's rounds once.
constexpr int kTolerance = 6;

const wchar_t* const kNames[] = {L"notes.txt",
                                 L"A report of many words.docx",
                                 L"\u00C4rger mit \u00DCbung.txt",
                                 L"\u65E5\u672C\u8A9E\u306E\u30D5\u30A1\u30A4\u30EB",
                                 L"smile \xD83D\xDE00.png",
                                 L"x"};

class TextPicturesTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(window.ready);
        pictures.init();
        quads.init();
        ASSERT_TRUE(formats.create(window.surface.dwriteFactory.get()));
        direct = window.surface.d2dRT.get();
        direct->CreateSolidColorBrush(D2D1_COLOR_F{1, 1, 1, 1}, white.put());
        direct->CreateSolidColorBrush(D2D1_COLOR_F{0, 0, 0, 1}, black.put());
        direct->CreateSolidColorBrush(D2D1_COLOR_F{0.2F, 0.45F, 0.9F, 0.5F}, blue.put());
    }
    void TearDown() override {
        pictures.release();
        quads.release();
    }

    // A picture of what `draw` puts over a coloured window.
    template <class Draw>
    Picture shown(Draw draw) {
        const float colour[] = {0.5F, 0.25F, 0.75F, 1};
        window.layer.context->ClearRenderTargetView(window.layer.backBufferView.get(), colour);
        draw();
        return window.backBuffer();
    }

    Picture labelFromPicture(const std::wstring& text, const TextPictures::LabelLook& look, float x,
                             float y) {
        return shown([&] {
            pictures.beginFrame();
            if (const auto quad = pictures.label(text, look, x, y)) quads.add(*quad);
            quads.flush();
        });
    }

    Picture labelDrawnDirectly(const std::wstring& text, const TextPictures::LabelLook& look, float x,
                               float y) {
        const ComRef<IDWriteTextLayout> layout = formats.layOutLabel(text, look.width, layouts);
        return shown([&] {
            direct->BeginDraw();
            if (look.selected) {
                DWRITE_TEXT_METRICS m{};
                layout->GetMetrics(&m);
                const D2D1_RECT_F plate{x + m.left - 4, y + m.top - 2, x + m.left + m.width + 4,
                                        y + m.top + m.height + 2};
                direct->FillRectangle(&plate, blue.get());
            }
            black->SetOpacity(look.dragged ? 0.6F : 0.45F);
            const float offsets[8][2] = {{-2, 0},  {2, 0},  {0, -2}, {0, 2},
                                         {-1, -1}, {1, -1}, {-1, 1}, {1, 1}};
            for (const auto& o : offsets) drawLayout(x + o[0], y + o[1], layout.get(), black.get());
            drawLayout(x, y, layout.get(), white.get());
            direct->EndDraw();
        });
    }

    Picture headerDrawnDirectly(const std::wstring& text, float x, float y) {
        const ComRef<IDWriteTextLayout> layout = formats.layOutHeader(text, 390, 24, layouts);
        return shown([&] {
            direct->BeginDraw();
            for (int dx = -3; dx <= 3; ++dx) {
                for (int dy = -3; dy <= 3; ++dy) {
                    const float distance = std::sqrt(static_cast<float>(dx * dx + dy * dy));
                    if (distance > 3) continue;
                    black->SetOpacity((1 - distance / 3) * 0.35F);
                    drawLayout(x + static_cast<float>(dx), y + static_cast<float>(dy), layout.get(),
                               black.get());
                }
            }
            drawLayout(x, y, layout.get(), white.get());
            direct->EndDraw();
        });
    }

    // Whether the rightmost white ink of the label's second line is low and flat.
    bool endsInDots(const Picture& picture, int x, int y) {
        const int lineHeight =
            static_cast<int>(std::lround(formats.labelBoxHeight() / TextFormats::kLabelLines));
        const int top = y + lineHeight;
        for (int column = x + static_cast<int>(kLabelWidth) + 4; column > x; --column) {
            int first = -1;
            int last = -1;
            for (int row = top; row < top + lineHeight + 2; ++row) {
                if (picture.at(column, row).g < 0.5F) continue;
                if (first < 0) first = row;
                last = row;
            }
            if (first >= 0) return last - first <= 2 && first > top + lineHeight / 2;
        }
        return false;
    }

    void drawLayout(float x, float y, IDWriteTextLayout* layout, ID2D1Brush* brush) {
        direct->DrawTextLayout({x, y}, layout, brush, D2D1_DRAW_TEXT_OPTIONS_NONE);
    }

    // How many lines a label takes, and whether it stays in its box.
    UINT32 linesOf(const std::wstring& text, float width) {
        const ComRef<IDWriteTextLayout> layout = formats.layOutLabel(text, width, layouts);
        DWRITE_TEXT_METRICS m{};
        layout->GetMetrics(&m);
        EXPECT_LE(m.height, formats.labelBoxHeight());
        EXPECT_GE(m.left, -0.01F);
        EXPECT_LE(m.left + m.width, width + 0.01F);
        return m.lineCount;
    }

    SurfaceWindow window{kWidth, kHeight};
    TextPictures pictures{window.surface};
    QuadBatch quads{window.surface};
    TextFormats formats;
    std::uint64_t layouts = 0;
    ID2D1RenderTarget* direct = nullptr;
    ComRef<ID2D1SolidColorBrush> white, black, blue;
};

TEST_F(TextPicturesTest, ALabelsPictureLooksLikeTheLabelDrawnDirectly) {
    for (const wchar_t* name : kNames) {
        for (const bool dragged : {false, true}) {
            const TextPictures::LabelLook look{kLabelWidth, dragged, false};
            const Picture direct1 = labelDrawnDirectly(name, look, 37, 21);
            const auto difference =
                reference::greatestDifference(labelFromPicture(name, look, 37, 21), direct1);
            EXPECT_LE(difference.steps, kTolerance) << difference.x << ", " << difference.y;
            const Picture nothing = shown([] {});
            EXPECT_GT(reference::greatestDifference(direct1, nothing).steps, 60);
        }
    }
}

TEST_F(TextPicturesTest, ASelectedLabelStandsOnItsPlate) {
    const TextPictures::LabelLook look{kLabelWidth, false, true};
    const auto difference = reference::greatestDifference(labelFromPicture(kNames[1], look, 37, 21),
                                                          labelDrawnDirectly(kNames[1], look, 37, 21));
    EXPECT_LE(difference.steps, kTolerance) << difference.x << ", " << difference.y;
    const auto plain =
        reference::greatestDifference(labelFromPicture(kNames[1], look, 37, 21),
                                      labelFromPicture(kNames[1], {kLabelWidth, false, false}, 37, 21));
    EXPECT_GT(plain.steps, 30);
}

TEST_F(TextPicturesTest, AHeadersPictureLooksLikeTheHeaderDrawnDirectly) {
    for (const wchar_t* name : {L"\u25B6 Downloads", L"\u25BC Rechnungen", L"\u6700\u8FD1"}) {
        const Picture fromPicture = shown([&] {
            pictures.beginFrame();
            if (const auto quad = pictures.header(name, 10, 12)) quads.add(*quad);
            quads.flush();
        });
        const auto difference = reference::greatestDifference(fromPicture, headerDrawnDirectly(name, 10, 12));
        EXPECT_LE(difference.steps, kTolerance) << difference.x << ", " << difference.y;
    }
}

TEST_F(TextPicturesTest, ADraggedLabelHasTheStrongerHalo) {
    const Picture resting = labelFromPicture(L"name", {kLabelWidth, false, false}, 37, 21);
    const Picture dragged = labelFromPicture(L"name", {kLabelWidth, true, false}, 37, 21);
    EXPECT_GT(reference::greatestDifference(resting, dragged).steps, 8);
}

TEST_F(TextPicturesTest, TheUnderlineFadesFromLeftToRight) {
    const Picture line = shown([&] {
        if (const auto quad = pictures.underline(20, 50.5F)) quads.add(*quad);
        quads.flush();
    });
    // White at alpha 0.4 over 0.5 at its start, nothing left at its end, nothing beside its one row.
    EXPECT_NEAR(line.at(21, 50).r, 0.7F, 0.02F);
    EXPECT_NEAR(line.at(170, 50).r, 0.6F, 0.02F);
    EXPECT_NEAR(line.at(318, 50).r, 0.5F, 0.02F);
    EXPECT_NEAR(line.at(18, 50).r, 0.5F, 0.01F);
    EXPECT_NEAR(line.at(21, 49).r, 0.5F, 0.01F);
    EXPECT_NEAR(line.at(21, 51).r, 0.5F, 0.01F);
}

TEST_F(TextPicturesTest, AnUnderlineBetweenTwoRowsIsSharedOutAmongThem) {
    const Picture line = shown([&] {
        if (const auto quad = pictures.underline(20, 50)) quads.add(*quad);
        quads.flush();
    });
    EXPECT_NEAR(line.at(21, 49).r, 0.6F, 0.02F);
    EXPECT_NEAR(line.at(21, 50).r, 0.6F, 0.02F);
}

TEST_F(TextPicturesTest, ATextIsDrawnOnceWhileNothingChanges) {
    const TextPictures::LabelLook look{kLabelWidth, false, false};
    const Picture first = labelFromPicture(L"notes.txt", look, 37, 21);
    const DrawStatistics before = pictures.drawStatistics();
    EXPECT_EQ(before.pictures, 1U);
    const Picture second = labelFromPicture(L"notes.txt", look, 37, 21);
    EXPECT_EQ(pictures.drawStatistics(), before);
    EXPECT_EQ(reference::greatestDifference(first, second).steps, 0);
}

TEST_F(TextPicturesTest, AnotherTextWidthOrLookIsAnotherPicture) {
    const auto drawn = [&](const std::wstring& text, const TextPictures::LabelLook& look) {
        labelFromPicture(text, look, 10, 10);
        return pictures.drawStatistics().pictures;
    };
    EXPECT_EQ(drawn(L"a", {94, false, false}), 1U);
    EXPECT_EQ(drawn(L"b", {94, false, false}), 2U);
    EXPECT_EQ(drawn(L"a", {142, false, false}), 3U);
    EXPECT_EQ(drawn(L"a", {94, true, false}), 4U);
    EXPECT_EQ(drawn(L"a", {94, false, true}), 5U);
    EXPECT_EQ(drawn(L"a", {94, false, false}), 5U);
}

TEST_F(TextPicturesTest, NothingIsDrawnWithoutTextOrWidth) {
    EXPECT_FALSE(pictures.label(L"", {94, false, false}, 0, 0));
    EXPECT_FALSE(pictures.label(L"a", {0, false, false}, 0, 0));
    EXPECT_FALSE(pictures.label(L"a", {-5, false, false}, 0, 0));
    EXPECT_FALSE(pictures.header(L"", 0, 0));
    EXPECT_EQ(pictures.drawStatistics().layouts, 0U);
}

TEST_F(TextPicturesTest, ManyPicturesShareAFewPages) {
    for (int i = 0; i < 200; ++i) {
        pictures.beginFrame();
        EXPECT_TRUE(pictures.label(L"n" + std::to_wstring(i), {94, false, false}, 0, 0));
    }
    EXPECT_LE(pictures.drawStatistics().textures, 7U);
}

TEST_F(TextPicturesTest, NeighboursOnAPageDoNotShowInEachOther) {
    const TextPictures::LabelLook look{kLabelWidth, false, false};
    const Picture alone = labelFromPicture(L"middle", look, 37, 21);
    for (int i = 0; i < 30; ++i) labelFromPicture(L"MMMMMMMM MMMMMMM " + std::to_wstring(i), look, 37, 21);
    EXPECT_EQ(reference::greatestDifference(labelFromPicture(L"middle", look, 37, 21), alone).steps, 0);
}

TEST_F(TextPicturesTest, AMissingFontFamilyIsReplacedAndStillDraws) {
    ASSERT_TRUE(formats.create(window.surface.dwriteFactory.get(), L"No Such Family"));
    const ComRef<IDWriteTextLayout> layout = formats.layOutLabel(L"still here", kLabelWidth, layouts);
    ASSERT_TRUE(layout);
    const Picture drawn = shown([&] {
        direct->BeginDraw();
        drawLayout(20, 20, layout.get(), white.get());
        direct->EndDraw();
    });
    EXPECT_GT(reference::greatestDifference(drawn, shown([] {})).steps, 60);
}

TEST_F(TextPicturesTest, WithoutATextEngineThereAreNoPictures) {
    window.surface.dwriteFactory.reset();
    pictures.init();
    EXPECT_FALSE(pictures.label(L"a", {94, false, false}, 0, 0));
    EXPECT_FALSE(pictures.header(L"a", 0, 0));
    const DrawStatistics before = pictures.drawStatistics();
    EXPECT_FALSE(pictures.label(L"a", {94, false, false}, 0, 0));
    EXPECT_EQ(pictures.drawStatistics(), before) << "what cannot be drawn is not tried again";
}

TEST_F(TextPicturesTest, NoLabelIsClippedAtAnyIconScale) {
    const std::set<std::wstring> names(std::begin(kNames), std::end(kNames));
    for (const float scale : {0.5F, 1.0F, 2.0F}) {
        const float iconSize = 48 * scale;
        const float width = iconSize + 46;
        for (const std::wstring& name : names) EXPECT_LE(linesOf(name, width), 2U);
        EXPECT_LE(linesOf(std::wstring(200, L'W'), width), 2U);
        // The box ends above the bottom of the cell, halo included.
        EXPECT_LE(iconSize + 8 + formats.labelBoxHeight() + 2, iconSize + 62);
    }
}

TEST_F(TextPicturesTest, ANameOfTwoHundredCharactersTakesTwoLinesAndEndsInDots) {
    std::wstring words;
    while (words.size() < 200) words += L"some words ";
    for (const std::wstring& name : {std::wstring(200, L'x'), words}) {
        EXPECT_EQ(linesOf(name, kLabelWidth), 2U);
        const TextPictures::LabelLook look{kLabelWidth, false, false};
        const Picture drawn = labelFromPicture(name, look, 37, 21);
        EXPECT_LE(reference::greatestDifference(drawn, labelDrawnDirectly(name, look, 37, 21)).steps,
                  kTolerance);
        // Dots stand at the bottom of the second line alone: its last ink has empty rows above it.
        EXPECT_TRUE(endsInDots(drawn, 37, 21)) << name.size();
    }
    EXPECT_FALSE(
        endsInDots(labelFromPicture(L"xxxxxxxxxxxx xxxxxxxxx", {kLabelWidth, false, false}, 37, 21), 37, 21));
}

TEST_F(TextPicturesTest, TheLineHeightIsThatOfTheFirstFontOfTheCollection) {
    ComRef<IDWriteFontCollection> fonts;
    ComRef<IDWriteFontFamily> family;
    ComRef<IDWriteFont> font;
    ASSERT_TRUE(SUCCEEDED(formats.labelFormat->GetFontCollection(fonts.put())));
    ASSERT_TRUE(SUCCEEDED(fonts->GetFontFamily(0, family.put())));
    ASSERT_TRUE(SUCCEEDED(family->GetFont(0, font.put())));
    DWRITE_FONT_METRICS m{};
    font->GetMetrics(&m);
    const float expected =
        static_cast<float>(m.ascent + m.descent + m.lineGap) * 12 / static_cast<float>(m.designUnitsPerEm);
    EXPECT_FLOAT_EQ(lineHeightOf(formats.labelFormat.get()), expected);
    EXPECT_FLOAT_EQ(formats.labelBoxHeight(), 2.8F * expected);
}

TEST_F(TextPicturesTest, TheFormatsAreThoseOfTheDesign) {
    const auto expectFormat = [](IDWriteTextFormat* format, float size, int weight,
                                 DWRITE_TEXT_ALIGNMENT alignment, DWRITE_WORD_WRAPPING wrapping) {
        wchar_t family[32] = {};
        format->GetFontFamilyName(family, 32);
        EXPECT_EQ(std::wstring(family), L"Segoe UI");
        EXPECT_EQ(format->GetFontSize(), size);
        EXPECT_EQ(format->GetFontWeight(), weight);
        EXPECT_EQ(format->GetFontStretch(), DWRITE_FONT_STRETCH_NORMAL);
        EXPECT_EQ(format->GetFontStyle(), DWRITE_FONT_STYLE_NORMAL);
        EXPECT_EQ(format->GetTextAlignment(), alignment);
        EXPECT_EQ(format->GetParagraphAlignment(), DWRITE_PARAGRAPH_ALIGNMENT_NEAR);
        EXPECT_EQ(format->GetWordWrapping(), wrapping);
    };
    expectFormat(formats.labelFormat.get(), 12, 400, DWRITE_TEXT_ALIGNMENT_CENTER, DWRITE_WORD_WRAPPING_WRAP);
    expectFormat(formats.headerFormat.get(), 15, 600, DWRITE_TEXT_ALIGNMENT_LEADING,
                 DWRITE_WORD_WRAPPING_NO_WRAP);
}

TEST_F(TextPicturesTest, AHeaderBeyondAnyScreenIsCutNotRefused) {
    EXPECT_TRUE(pictures.header(std::wstring(2000, L'W'), 0, 0));
}

}  // namespace
}  // namespace varnelo
