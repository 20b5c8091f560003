#include "views/edit_menu_win.h"

#include "app/language_table.h"

namespace varnelo {

namespace {

constexpr UINT kTrackFlags = TPM_RETURNCMD | TPM_NONOTIFY | TPM_RIGHTBUTTON;
static_assert(kTrackFlags == 386);

}  // namespace

MenuHandle makeEditMenu(const EditMenuState& state, const LanguageTable& language) {
    MenuHandle menu(CreatePopupMenu());
    if (!menu) return menu;
    for (const EditMenuRow& row : kEditMenuRows) {
        if (!row.languageKey) {
            AppendMenuW(menu.get(), MF_SEPARATOR, 0, nullptr);
            continue;
        }
        AppendMenuW(menu.get(), MF_STRING | (available(row.command, state) ? MF_ENABLED : MF_GRAYED),
                    static_cast<UINT_PTR>(row.command), language.translate(row.languageKey).c_str());
    }
    return menu;
}

EditCommand PopupEditMenu::choose(const EditMenuState& state) {
    const MenuHandle menu = makeEditMenu(state, language);
    POINT cursor{};
    if (!menu || !GetCursorPos(&cursor)) return EditCommand::None;
    return static_cast<EditCommand>(
        TrackPopupMenu(menu.get(), kTrackFlags, cursor.x, cursor.y, 0, owner, nullptr));
}

}  // namespace varnelo
