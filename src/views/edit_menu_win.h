#pragma once

#include <windows.h>

#include "platform/handles_win.h"
#include "views/edit_menu.h"

namespace varnelo {

class LanguageTable;

// The popup menu of the text fields, at the cursor.
class PopupEditMenu final : public EditMenu {
public:
    // `ownerWindow` holds the window of the surface; it is read at each call. Both must outlive this object.
    PopupEditMenu(const HWND& ownerWindow, const LanguageTable& languageTable)
        : owner(ownerWindow), language(languageTable) {}

    EditCommand choose(const EditMenuState& state) override;

private:
    const HWND& owner;
    const LanguageTable& language;
};

// The menu's rows in the user's language.
MenuHandle makeEditMenu(const EditMenuState& state, const LanguageTable& language);

}  // namespace varnelo
