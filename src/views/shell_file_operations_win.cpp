#include "views/shell_file_operations_win.h"

#include <shlobj.h>

#include <optional>
#include <string>

#include "platform/item_id_list_win.h"
#include "views/path_list.h"
#include "views/shell_clipboard_win.h"

namespace varnelo {
namespace {

constexpr FILEOP_FLAGS kPasteFlags = FOF_ALLOWUNDO | FOF_NOCONFIRMMKDIR | FOF_RENAMEONCOLLISION;
constexpr FILEOP_FLAGS kRecycleFlags = FOF_ALLOWUNDO | FOF_WANTNUKEWARNING;

std::optional<std::wstring> pathOfChild(const ItemIdList& parent, const ItemIdList& child) {
    const ShellIdList whole(ILCombine(shellIdList(parent), shellIdList(child)));
    return itemPath(itemIdListFrom(whole.get()));
}

}  // namespace

void pasteInto(const ItemIdList& folder, HWND window, ShellCalls& calls) {
    if (folder.empty()) return;
    const auto found = itemsOnClipboard(window);
    if (!found) return;
    const auto target = itemPath(folder);
    if (!target) return;
    PathList sources;
    for (const ItemIdList& item : found->array.items) {
        if (const auto path = pathOfChild(found->array.parent, item)) sources.add(*path);
    }
    if (sources.empty()) return;

    PathList targets;
    targets.add(*target);
    SHFILEOPSTRUCTW operation = {};
    operation.hwnd = window;
    operation.wFunc = found->effect == DropEffect::Move ? FO_MOVE : FO_COPY;
    operation.pFrom = sources.text();
    operation.pTo = targets.text();
    operation.fFlags = kPasteFlags;
    calls.fileOperation(operation);
}

void recycleItems(const std::vector<ItemIdList>& items, HWND window, ShellCalls& calls) {
    PathList sources;
    for (const ItemIdList& item : items) {
        if (const auto path = itemPath(item)) sources.add(*path);
    }
    if (sources.empty()) return;
    SHFILEOPSTRUCTW operation = {};
    operation.hwnd = window;
    operation.wFunc = FO_DELETE;
    operation.pFrom = sources.text();
    operation.fFlags = kRecycleFlags;
    calls.fileOperation(operation);
}

}  // namespace varnelo
