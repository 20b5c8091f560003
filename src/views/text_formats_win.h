#pragma once

#include <dwrite.h>

#include <cstdint>
#include <string>

#include "platform/com_ref.h"

namespace varnelo {

// The fonts of a pane's labels and headers. Belongs to the user-interface thread.
class TextFormats {
public:
    static constexpr float kLabelSize = 12;     // pixels
    static constexpr float kHeaderSize = 15;    // pixels
    static constexpr float kLabelLines = 2.8F;  // height of a label's box

    // Without that family another one of the system is taken: some text engines draw nothing in a font that
    // they do not have. False when a format could not be made; what could be is there.
    bool create(IDWriteFactory* factory, const wchar_t* family = L"Segoe UI");
    void release();

    // Height of the box that a label's lines must fit into, pixels.
    float labelBoxHeight() const;

    // A label of `width` pixels: centred, broken into lines, and what does not fit in the box ends in dots.
    // Null when the text engine refuses. `layoutsMade` counts every layout that it takes.
    ComRef<IDWriteTextLayout> layOutLabel(const std::wstring& text, float width,
                                          std::uint64_t& layoutsMade) const;
    // A header, on one line whatever its length.
    ComRef<IDWriteTextLayout> layOutHeader(const std::wstring& text, float width, float height,
                                           std::uint64_t& layoutsMade) const;

    ComRef<IDWriteTextFormat> labelFormat;
    ComRef<IDWriteTextFormat> headerFormat;
    ComRef<IDWriteInlineObject> ellipsisSign;

private:
    std::wstring fitted(IDWriteTextLayout& layout, const std::wstring& text, float width, float height,
                        std::uint64_t& layoutsMade) const;

    ComRef<IDWriteFactory> dwriteFactory;
};

// The line height, in pixels, of the first font in the collection that `format` takes its fonts from. That is
// not the font of `format` itself: every label has the same box, whatever its script. Computed once in the
// process for a font size.
float lineHeightOf(IDWriteTextFormat* format);

}  // namespace varnelo
