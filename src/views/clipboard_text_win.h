#pragma once

#include <windows.h>

#include "views/clipboard_text.h"

namespace varnelo {

// The system's clipboard. While another program has it open, a call tries for some milliseconds.
class SystemClipboardText final : public ClipboardText {
public:
    // `ownerWindow` holds the window that owns what is written; it is read at each call and may be null.
    explicit SystemClipboardText(const HWND& ownerWindow) : owner(ownerWindow) {}

    bool hasText() const override;
    std::optional<std::wstring> read() override;
    bool write(std::wstring_view text) override;

private:
    const HWND& owner;
};

}  // namespace varnelo
