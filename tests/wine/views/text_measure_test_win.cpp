#include "views/text_measure_win.h"

#include <string>
#include <vector>

#include "support/widget_fixture_win.h"
#include "views/word_boundaries.h"

namespace varnelo {
namespace {

const wchar_t* const kTexts[] = {L"notes.txt",
                                 L"A report of many words ",
                                 L"  blanks at both ends   ",
                                 L"\u00C4rger mit \u00DCbung",
                                 L"\u65E5\u672C\u8A9E\u306E\u30D5\u30A1\u30A4\u30EB",
                                 L"smile \xD83D\xDE00 end",
                                 L"lone \xD83D and \xDE00",
                                 L"u\u0308ber office",
                                 L"tab\there",
                                 L""};

class TextMeasureWinTest : public WidgetFixture {
protected:
    void SetUp() override {
        WidgetFixture::SetUp();
        format = canvas.makeFormat(13.5F, DWRITE_TEXT_ALIGNMENT_LEADING);
        ASSERT_TRUE(format);
        measure.setFormat(format.get(), 30);
    }
    float widthOf(const std::wstring& text) {
        DWRITE_TEXT_METRICS metrics{};
        canvas.layOut(text, format.get(), 1000, 30)->GetMetrics(&metrics);
        return metrics.widthIncludingTrailingWhitespace;
    }

    ComRef<IDWriteTextFormat> format;
    TextMeasureWin measure{canvas};
};

TEST_F(TextMeasureWinTest, PrefixesGrowFromZeroToTheTextsWidth) {
    for (const std::wstring text : kTexts) {
        const auto widths = measure.prefixWidths(text);
        ASSERT_EQ(widths.size(), text.size() + 1);
        EXPECT_EQ(widths[0], 0);
        for (std::size_t i = 1; i < widths.size(); ++i) EXPECT_GE(widths[i], widths[i - 1]);
        EXPECT_NEAR(widths.back(), widthOf(text), 0.01F) << text.size();
    }
}

TEST_F(TextMeasureWinTest, APrefixIsAsWideAsItWouldBeAlone) {
    const std::wstring text = L"A report of many words, and  more. ";
    for (std::size_t i = 0; i <= text.size(); ++i)
        EXPECT_NEAR(measure.prefixWidths(text)[i], widthOf(text.substr(0, i)), 0.6F) << i;
}

TEST_F(TextMeasureWinTest, BlanksAtTheEndCount) {
    const float bare = measure.prefixWidths(L"ab").back();
    EXPECT_GT(measure.prefixWidths(L"ab  ").back(), bare + 2);
}

TEST_F(TextMeasureWinTest, WidthsScaleWithTheFont) {
    const float at96 = measure.prefixWidths(L"some words").back();
    const auto large = canvas.makeFormat(27, DWRITE_TEXT_ALIGNMENT_LEADING);
    measure.setFormat(large.get(), 60);
    EXPECT_NEAR(measure.prefixWidths(L"some words").back(), 2 * at96, 0.03F * at96);
}

TEST_F(TextMeasureWinTest, WithoutAFontNothingHasWidth) {
    measure.setFormat(nullptr, 30);
    const auto widths = measure.prefixWidths(L"abc");
    EXPECT_EQ(std::vector<float>(widths.begin(), widths.end()), std::vector<float>(4, 0.0F));
    EXPECT_FALSE(measure.layoutOf(L"abc"));
}

TEST_F(TextMeasureWinTest, ATextIsLaidOutOnce) {
    measure.prefixWidths(L"some words");
    const WidgetStatistics before = canvas.made;
    measure.prefixWidths(L"some words");
    EXPECT_TRUE(measure.layoutOf(L"some words"));
    EXPECT_EQ(canvas.made, before);
    measure.prefixWidths(L"other words");
    EXPECT_EQ(canvas.made.layouts, before.layouts + 1);
}

TEST_F(TextMeasureWinTest, WhatWouldBreakALineIsShownAsABlank) {
    EXPECT_EQ(onOneLine(L"a\vb\u2028c\u2029d\x85\x65\tf"), L"a b c d \x65\tf");
    DWRITE_TEXT_METRICS metrics{};
    measure.layoutOf(L"two\u2028lines\vthree")->GetMetrics(&metrics);
    EXPECT_EQ(metrics.lineCount, 1U);
}

TEST_F(TextMeasureWinTest, TheFormatIsThatOfTheDesign) {
    wchar_t family[32] = {};
    format->GetFontFamilyName(family, 32);
    EXPECT_EQ(std::wstring(family), L"Segoe UI");
    EXPECT_EQ(format->GetFontSize(), 13.5F);
    EXPECT_EQ(format->GetFontWeight(), 400);
    EXPECT_EQ(format->GetFontStyle(), DWRITE_FONT_STYLE_NORMAL);
    EXPECT_EQ(format->GetFontStretch(), DWRITE_FONT_STRETCH_NORMAL);
    EXPECT_EQ(format->GetTextAlignment(), DWRITE_TEXT_ALIGNMENT_LEADING);
    EXPECT_EQ(format->GetParagraphAlignment(), DWRITE_PARAGRAPH_ALIGNMENT_CENTER);
    EXPECT_EQ(format->GetWordWrapping(), DWRITE_WORD_WRAPPING_NO_WRAP);
}

// The portable table says what the system's own classification says.
TEST(WordCharactersOnWindows, AgreeWithTheSystemOnLettersAndDigits) {
    int disagreements = 0;
    int words = 0;
    for (unsigned unit = 0; unit < 0xD800; ++unit) {
        WORD type = 0;
        const wchar_t text = static_cast<wchar_t>(unit);
        GetStringTypeW(CT_CTYPE1, &text, 1, &type);
        if ((type & C1_DEFINED) == 0) continue;
        const bool systemsWord = unit == L'_' || (type & (C1_ALPHA | C1_DIGIT)) != 0;
        words += systemsWord;
        disagreements += systemsWord && !isWordCharacter(unit);
        if (unit < 128) {
            EXPECT_EQ(systemsWord, isWordCharacter(unit)) << unit;
        }
    }
    EXPECT_GT(words, 40000);
    EXPECT_LT(disagreements, 300) << "numbers that are no digits, and what younger tables know";
}

}  // namespace
}  // namespace varnelo
