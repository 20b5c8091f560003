#include "views/shell_clipboard_win.h"

#include <shlobj.h>

#include <cstring>
#include <span>

#include "platform/com_ref.h"
#include "platform/global_memory_win.h"
#include "platform/item_id_list_win.h"

namespace varnelo {
namespace {

constexpr UINT kSharedMemory = GMEM_MOVEABLE | GMEM_ZEROINIT | GMEM_SHARE;

class OpenedClipboard {
public:
    explicit OpenedClipboard(HWND window) : opened(OpenClipboard(window) != FALSE) {}
    ~OpenedClipboard() {
        if (opened) CloseClipboard();
    }
    OpenedClipboard(const OpenedClipboard&) = delete;
    OpenedClipboard& operator=(const OpenedClipboard&) = delete;

    explicit operator bool() const { return opened; }

    void set(UINT format, UINT memoryFlags, std::span<const std::uint8_t> block) {
        GlobalMemory memory(GlobalAlloc(memoryFlags, block.size()));
        void* const bytes = memory ? GlobalLock(memory.get()) : nullptr;
        if (!bytes) return;
        std::memcpy(bytes, block.data(), block.size());
        GlobalUnlock(memory.get());
        // What the clipboard took is its own from now on.
        if (SetClipboardData(format, memory.get())) static_cast<void>(memory.release());
    }

    // A copy; empty when the format is not there.
    std::vector<std::uint8_t> get(UINT format) {
        const HANDLE memory = GetClipboardData(format);
        const void* const bytes = memory ? GlobalLock(memory) : nullptr;
        if (!bytes) return {};
        std::vector<std::uint8_t> block(GlobalSize(memory));
        std::memcpy(block.data(), bytes, block.size());
        GlobalUnlock(memory);
        return block;
    }

private:
    const bool opened;
};

UINT dropEffectFormat() { return RegisterClipboardFormatW(CFSTR_PREFERREDDROPEFFECT); }
UINT shellIdListFormat() { return RegisterClipboardFormatW(CFSTR_SHELLIDLIST); }

}  // namespace

std::optional<std::wstring> itemPath(const ItemIdList& item) {
    if (item.empty()) return std::nullopt;
    wchar_t path[MAX_PATH + 1] = {};
    if (!SHGetPathFromIDListW(shellIdList(item), path) || path[0] == L'\0') return std::nullopt;
    return std::wstring(path);
}

void copyToClipboard(const std::vector<ItemIdList>& items, DropEffect effect) {
    if (items.empty()) return;
    OpenedClipboard clipboard(nullptr);
    if (!clipboard) return;
    EmptyClipboard();

    std::vector<std::wstring> paths;
    for (const ItemIdList& item : items) {
        if (auto path = itemPath(item)) paths.push_back(std::move(*path));
    }
    if (!paths.empty()) clipboard.set(CF_HDROP, kSharedMemory, dropFilesBlock(paths));
    clipboard.set(dropEffectFormat(), kSharedMemory, dropEffectBlock(effect));

    ComRef<IShellFolder> folder;
    if (FAILED(SHBindToParent(shellIdList(items.front()), IID_IShellFolder, folder.putVoid(), nullptr))) {
        return;
    }
    clipboard.set(shellIdListFormat(), GMEM_MOVEABLE, shellIdListArrayBlock(asChildrenOfFirst(items)));
}

std::optional<ClipboardItems> itemsOnClipboard(HWND window) {
    OpenedClipboard clipboard(window);
    if (!clipboard) return std::nullopt;
    ClipboardItems found;
    found.effect = parseDropEffect(clipboard.get(dropEffectFormat()));
    auto array = parseShellIdListArray(clipboard.get(shellIdListFormat()));
    if (!array) return std::nullopt;
    found.array = std::move(*array);
    return found;
}

}  // namespace varnelo
