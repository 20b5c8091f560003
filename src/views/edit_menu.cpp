#include "views/edit_menu.h"

namespace varnelo {

const std::array<EditMenuRow, 6> kEditMenuRows = {{{EditCommand::Cut, L"EDIT_CUT"},
                                                   {EditCommand::Copy, L"EDIT_COPY"},
                                                   {EditCommand::Paste, L"EDIT_PASTE"},
                                                   {EditCommand::Delete, L"EDIT_DELETE"},
                                                   {EditCommand::None, nullptr},
                                                   {EditCommand::SelectAll, L"EDIT_SELECT_ALL"}}};

bool available(EditCommand command, const EditMenuState& state) {
    switch (command) {
        case EditCommand::Cut:
        case EditCommand::Copy:
        case EditCommand::Delete:
            return state.hasSelection;
        case EditCommand::Paste:
            return state.clipboardHasText;
        case EditCommand::SelectAll:
            return state.hasText;
        case EditCommand::None:
            break;
    }
    return false;
}

}  // namespace varnelo
