#pragma once

#include <span>
#include <string_view>

namespace varnelo {

// How wide a text is in one font. User-interface thread only.
class TextMeasure {
public:
    virtual ~TextMeasure() = default;

    // Pixel widths of the text's prefixes of 0, 1, ... units: one value more than the text has units,
    // ascending, blanks at the end counted. Valid until the next call. Without a font all are 0.
    virtual std::span<const float> prefixWidths(std::wstring_view text) = 0;
};

}  // namespace varnelo
