#include "views/menu_bar_view_win.h"

#include "views/menu_bar.h"
#include "views/widget_canvas_win.h"

namespace varnelo {

namespace {

constexpr float kMeasureWidth = 1000;  // of the box that a label is measured in, pixels
const std::wstring kGlyphText = MenuBar::kGlyph;

}  // namespace

void MenuBarView::createResources() {
    const float height = menu.rowHeight;
    if (glyphFormat && itemFormat && formatHeight == height) return;
    releaseResources();
    glyphFormat = canvas.makeFormat(MenuBar::kGlyphFontShare * height, DWRITE_TEXT_ALIGNMENT_CENTER);
    itemFormat = canvas.makeFormat(MenuBar::kRowFontShare * height, DWRITE_TEXT_ALIGNMENT_LEADING);
    formatHeight = height;
    if (itemFormat) menu.measureWith([this](const std::wstring& label) { return labelWidth(label); });
}

void MenuBarView::releaseResources() {
    menu.measureWith(nullptr);
    labels.clear();
    glyph.release();
    itemFormat.reset();
    glyphFormat.reset();
}

float MenuBarView::labelWidth(const std::wstring& label) {
    const ComRef<IDWriteTextLayout> layout =
        canvas.layOut(label, itemFormat.get(), kMeasureWidth, menu.rowHeight);
    DWRITE_TEXT_METRICS metrics{};
    if (!layout || FAILED(layout->GetMetrics(&metrics))) return 0;
    return metrics.widthIncludingTrailingWhitespace;
}

void MenuBarView::draw(bool toScene) {
    if (!canvas.target(toScene)) return;
    createResources();
    canvas.blur(menu.rect, menu.hovered ? kMenuButtonHoveredTint : kMenuButtonTint);
    glyph.add(canvas, kGlyphText, glyphFormat.get(), menu.rect,
              {MenuBar::kGlyphShadowShift, MenuBar::kGlyphShadowOpacity});
    if (menu.panelShows()) drawPanel();
    canvas.quads.flush();
}

void MenuBarView::drawPanel() {
    canvas.blur(menu.panelRect(), kMenuPanelTint);
    labels.resize(menu.items.size());
    for (std::size_t row = 0; row < menu.items.size(); ++row) {
        if (static_cast<std::int32_t>(row) == menu.hotRow) canvas.blur(menu.rowRect(row), kMenuHotRowTint);
        labels[row].add(canvas, menu.items[row].label, itemFormat.get(), menu.labelRect(row), {});
    }
}

}  // namespace varnelo
