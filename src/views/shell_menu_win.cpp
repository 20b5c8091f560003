#include "views/shell_menu_win.h"

#include <optional>
#include <string>

#include "platform/com_apartment.h"
#include "platform/com_ref.h"
#include "platform/handles_win.h"
#include "platform/item_id_list_win.h"
#include "views/menu_messages_win.h"

namespace varnelo {
namespace {

constexpr UINT kFirstCommand = 1;
constexpr UINT kLastCommand = 32767;
constexpr UINT kVerbBytes = 256;  // of the buffer

ComRef<IContextMenu> contextMenuOf(const std::vector<ItemIdList>& items, HWND window) {
    ComRef<IContextMenu> contextMenu;
    ComRef<IShellFolder> folder;
    if (FAILED(SHBindToParent(shellIdList(items.front()), IID_IShellFolder, folder.putVoid(), nullptr))) {
        return contextMenu;
    }
    std::vector<const ITEMIDLIST*> children;
    for (const ItemIdList& item : items) children.push_back(ILFindLastID(shellIdList(item)));
    if (FAILED(folder->GetUIObjectOf(window, static_cast<UINT>(children.size()),
                                     reinterpret_cast<PCUITEMID_CHILD_ARRAY>(children.data()),
                                     IID_IContextMenu, nullptr, contextMenu.putVoid()))) {
        contextMenu.reset();
    }
    return contextMenu;
}

// The offset of the chosen command from the first.
std::optional<UINT> chosenCommand(IContextMenu& contextMenu, HMENU menu, HWND window, ShellCalls& calls) {
    if (FAILED(contextMenu.QueryContextMenu(menu, 0, kFirstCommand, kLastCommand, CMF_NORMAL))) {
        return std::nullopt;
    }
    POINT cursor = {};
    GetCursorPos(&cursor);
    const MenuMessages messages(window, contextMenu);
    const int command = calls.trackMenu(menu, TPM_RETURNCMD | TPM_RIGHTBUTTON, cursor, window);
    if (command < static_cast<int>(kFirstCommand)) return std::nullopt;
    return static_cast<UINT>(command) - kFirstCommand;
}

std::optional<std::string> verbOf(IContextMenu& contextMenu, UINT command) {
    char verb[kVerbBytes + 1] = {};  // ended also where the extension did not leave room for the end
    if (FAILED(contextMenu.GetCommandString(command, GCS_VERBA, nullptr, verb, kVerbBytes))) {
        return std::nullopt;
    }
    return std::string(verb);
}

void invoke(IContextMenu& contextMenu, UINT command, HWND window) {
    CMINVOKECOMMANDINFO info = {};
    static_assert(sizeof info == 56);
    info.cbSize = sizeof info;
    info.hwnd = window;
    info.lpVerb = MAKEINTRESOURCEA(command);
    info.nShow = SW_SHOWNORMAL;
    contextMenu.InvokeCommand(&info);
}

}  // namespace

void showShellMenu(const std::vector<ItemIdList>& items, HWND window, const CopyItems& copy,
                   ShellCalls& calls) {
    if (items.empty()) return;
    const ComApartment apartment(ComApartment::Kind::Single);
    if (const ComRef<IContextMenu> contextMenu = contextMenuOf(items, window)) {
        showContextMenu(*contextMenu, window, copy, calls);
    }
}

void showContextMenu(IContextMenu& contextMenu, HWND window, const CopyItems& copy, ShellCalls& calls) {
    const MenuHandle menu(CreatePopupMenu());
    if (!menu) return;
    const auto command = chosenCommand(contextMenu, menu.get(), window, calls);
    if (!command) return;
    // A command without a verb is not carried out.
    const auto verb = verbOf(contextMenu, *command);
    if (!verb) return;
    // The shell would put fewer formats on the clipboard.
    if (*verb == "cut") return copy(true);
    if (*verb == "copy") return copy(false);
    invoke(contextMenu, *command, window);
}

}  // namespace varnelo
