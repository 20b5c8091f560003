#include "views/item_menu_win.h"

#include <string>

#include "platform/com_apartment.h"
#include "platform/handles_win.h"
#include "views/shell_launch_win.h"

namespace varnelo {
namespace {

enum Choice : int { kNothing = 0, kExecute = 1, kExecuteAsAdministrator = 2, kUninstall = 3 };

MenuHandle menuWith(bool uninstall, const LanguageTable& language) {
    MenuHandle menu(CreatePopupMenu());
    if (!menu) return menu;
    AppendMenuW(menu.get(), MF_STRING, kExecute, language.translate(L"EXECUTE").c_str());
    AppendMenuW(menu.get(), MF_STRING, kExecuteAsAdministrator, language.translate(L"EXECUTE_ADMIN").c_str());
    if (uninstall) {
        AppendMenuW(menu.get(), MF_SEPARATOR, 0, nullptr);
        AppendMenuW(menu.get(), MF_STRING, kUninstall, language.translate(L"UNINSTALL").c_str());
    }
    return menu;
}

int choiceFrom(MenuHandle menu, HWND window, ShellCalls& calls) {
    if (!menu) return kNothing;
    POINT cursor = {};
    GetCursorPos(&cursor);
    SetForegroundWindow(window);  // or a click beside the menu would not close it
    return calls.trackMenu(menu.get(), TPM_RETURNCMD | TPM_RIGHTBUTTON, cursor, window);
}

// Uninstallers look for their files where they lie themselves.
void runUninstaller(const std::wstring& command, HWND window, ShellCalls& calls) {
    const std::size_t separator = command.find_last_of(L"\\/");
    const std::wstring folder = separator == std::wstring::npos ? L"" : command.substr(0, separator);
    calls.open(window, command.c_str(), nullptr, folder.empty() ? nullptr : folder.c_str(), SW_SHOWNORMAL);
}

}  // namespace

void showItemMenu(const FileEntry& entry, HWND window, const LanguageTable& language, ShellCalls& calls) {
    if (entry.pidl.empty()) return;
    const std::wstring uninstaller = entry.metaData ? entry.metaData->uninstallPath() : std::wstring();
    const int choice = choiceFrom(menuWith(!uninstaller.empty(), language), window, calls);
    const ComApartment apartment(ComApartment::Kind::Single);
    switch (choice) {
        case kExecute:
            executeItem(entry.pidl, L"open", window, calls);
            break;
        case kExecuteAsAdministrator:
            executeItem(entry.pidl, L"runas", window, calls);
            break;
        case kUninstall:
            runUninstaller(uninstaller, window, calls);
            break;
        default:
            break;
    }
}

}  // namespace varnelo
