#pragma once

#include <array>

namespace varnelo {

// The popup menu of a text field. The values are the commands' ids in the menu.
enum class EditCommand { None = 0, Cut = 1, Copy = 2, Paste = 3, Delete = 4, SelectAll = 5 };

// What a text field has to offer when its menu opens.
struct EditMenuState {
    bool hasSelection = false;
    bool hasText = false;
    bool clipboardHasText = false;
};

// Greyed when false.
bool available(EditCommand command, const EditMenuState& state);

// The rows from the top. The separator has the command None and no key.
struct EditMenuRow {
    EditCommand command;
    const wchar_t* languageKey;
};
extern const std::array<EditMenuRow, 6> kEditMenuRows;

// Shows the menu and waits for the choice. Messages are served meanwhile, so anything may have changed when
// it returns.
class EditMenu {
public:
    virtual ~EditMenu() = default;
    virtual EditCommand choose(const EditMenuState& state) = 0;
};

}  // namespace varnelo
