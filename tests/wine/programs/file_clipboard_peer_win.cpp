// The other program at the clipboard. Exit code 0 when all was done.
//   copy PATH... | cut PATH...   puts files of one folder there by the shell's own menu
//   paths PATH...                puts only their paths there, as some programs do
//   paste FOLDER                 copies or moves the files that are there into the folder, as their paths and
//   the
//                                preferred effect say
//   hold FILE                    keeps the clipboard open; FILE comes when it does, and when FILE has gone
//   the
//                                program ends

#include <windows.h>

#include <shellapi.h>
#include <shlobj.h>

#include <cstring>
#include <string>
#include <vector>

#include "platform/com_ref.h"
#include "platform/item_id_list_win.h"

namespace {

using varnelo::ComRef;

bool invokeOnFiles(const char* verb, const std::vector<std::wstring>& paths) {
    std::vector<varnelo::ShellIdList> lists(paths.size());
    std::vector<const ITEMIDLIST*> children;
    for (std::size_t i = 0; i < paths.size(); ++i) {
        if (FAILED(SHParseDisplayName(paths[i].c_str(), nullptr, lists[i].put(), 0, nullptr))) return false;
        children.push_back(ILFindLastID(lists[i].get()));
    }
    ComRef<IShellFolder> folder;
    ComRef<IContextMenu> menu;
    if (FAILED(SHBindToParent(lists.at(0).get(), IID_IShellFolder, folder.putVoid(), nullptr)) ||
        FAILED(folder->GetUIObjectOf(nullptr, static_cast<UINT>(children.size()),
                                     reinterpret_cast<PCUITEMID_CHILD_ARRAY>(children.data()),
                                     IID_IContextMenu, nullptr, menu.putVoid()))) {
        return false;
    }
    const HMENU shown = CreatePopupMenu();
    CMINVOKECOMMANDINFO command = {};
    command.cbSize = sizeof command;
    command.lpVerb = verb;
    command.nShow = SW_SHOWNORMAL;
    const bool good = SUCCEEDED(menu->QueryContextMenu(shown, 0, 1, 32767, CMF_NORMAL)) &&
                      SUCCEEDED(menu->InvokeCommand(&command)) && SUCCEEDED(OleFlushClipboard());
    DestroyMenu(shown);
    return good;
}

// Wine's menu command leaves out that it was a cut.
bool putMoveEffect() {
    const HGLOBAL memory = GlobalAlloc(GHND, sizeof(DWORD));
    *static_cast<DWORD*>(GlobalLock(memory)) = DROPEFFECT_MOVE;
    GlobalUnlock(memory);
    if (!OpenClipboard(nullptr)) return false;
    const bool good =
        SetClipboardData(RegisterClipboardFormatW(CFSTR_PREFERREDDROPEFFECT), memory) != nullptr;
    CloseClipboard();
    return good;
}

bool putPaths(const std::vector<std::wstring>& paths) {
    std::wstring text;
    for (const std::wstring& path : paths) text.append(path).push_back(L'\0');
    text.push_back(L'\0');
    const HGLOBAL memory = GlobalAlloc(GHND, sizeof(DROPFILES) + sizeof(wchar_t) * text.size());
    auto* const header = static_cast<DROPFILES*>(GlobalLock(memory));
    if (!header) return false;
    header->pFiles = sizeof *header;
    header->fWide = TRUE;
    std::memcpy(header + 1, text.data(), sizeof(wchar_t) * text.size());
    GlobalUnlock(memory);
    if (!OpenClipboard(nullptr)) return false;
    const bool good = EmptyClipboard() && SetClipboardData(CF_HDROP, memory);
    CloseClipboard();
    return good;
}

bool pasteInto(std::wstring target) {
    if (!OpenClipboard(nullptr)) return false;
    const HANDLE effectMemory = GetClipboardData(RegisterClipboardFormatW(CFSTR_PREFERREDDROPEFFECT));
    const auto* const effect = effectMemory ? static_cast<const DWORD*>(GlobalLock(effectMemory)) : nullptr;
    auto* const drop = static_cast<HDROP>(GetClipboardData(CF_HDROP));
    std::wstring from;
    const UINT count = drop ? DragQueryFileW(drop, 0xFFFFFFFF, nullptr, 0) : 0;
    for (UINT i = 0; i < count; ++i) {
        wchar_t path[MAX_PATH] = {};
        if (DragQueryFileW(drop, i, path, MAX_PATH)) from.append(path).push_back(L'\0');
    }
    target.push_back(L'\0');
    SHFILEOPSTRUCTW operation = {};
    operation.wFunc = effect && (*effect & DROPEFFECT_MOVE) ? FO_MOVE : FO_COPY;
    CloseClipboard();
    if (from.empty()) return false;
    operation.pFrom = from.c_str();
    operation.pTo = target.c_str();
    operation.fFlags = FOF_SILENT | FOF_NOCONFIRMATION;
    return SHFileOperationW(&operation) == 0;
}

// With a window of its own: Wine lets everybody in who opens the clipboard for none.
bool holdUntilGone(const std::wstring& path) {
    const HWND owner =
        CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    if (!OpenClipboard(owner)) return false;
    CloseHandle(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
    while (GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES) Sleep(5);
    return CloseClipboard() != FALSE;
}

bool act(const std::wstring& verb, const std::vector<std::wstring>& arguments) {
    if (verb == L"copy") return invokeOnFiles("copy", arguments);
    if (verb == L"cut") return invokeOnFiles("cut", arguments) && putMoveEffect();
    if (verb == L"paths") return putPaths(arguments);
    if (verb == L"paste") return pasteInto(arguments.at(0));
    if (verb == L"hold") return holdUntilGone(arguments.at(0));
    return false;
}

}  // namespace

// Names can hold any character, so the arguments are those of the wide command line.
int main() {
    int count = 0;
    wchar_t** const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    if (!arguments || count < 3 || FAILED(OleInitialize(nullptr))) return 2;
    const bool good = act(arguments[1], {arguments + 2, arguments + count});
    OleUninitialize();
    return good ? 0 : 1;
}
