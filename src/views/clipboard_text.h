#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

namespace varnelo {

// The text on the user's clipboard.
class ClipboardText {
public:
    virtual ~ClipboardText() = default;

    // Whether there is text, without opening the clipboard.
    virtual bool hasText() const = 0;
    // Nothing when there is no text or the clipboard cannot be opened.
    virtual std::optional<std::wstring> read() = 0;
    // Replaces everything on the clipboard. False when it cannot be opened: it is then as before.
    virtual bool write(std::wstring_view text) = 0;
};

// What a block of clipboard memory of `units` units says: all before its first zero, or all of it when it has
// none, as blocks of other programs may.
inline std::wstring_view clipboardTextOf(const wchar_t* block, std::size_t units) {
    const std::wstring_view all(block, units);
    return all.substr(0, all.find(L'\0'));
}

// The other way round: fills a block of text.size() + 1 units with the text and the zero that ends it.
inline void fillClipboardBlock(wchar_t* block, std::wstring_view text) {
    *std::copy(text.begin(), text.end(), block) = L'\0';
}

}  // namespace varnelo
