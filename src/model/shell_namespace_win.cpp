#include "model/shell_namespace_win.h"

#include <windows.h>

#include <shlobj.h>

#include "platform/com_ref.h"
#include "platform/item_id_list_win.h"

namespace varnelo {
namespace {

constexpr int kLinkTargetUnits = 260;  // of the buffer, terminator included; a longer target is no target

std::optional<std::wstring> nameOf(const ItemIdList& item, SIGDN form) {
    if (item.empty()) return std::nullopt;
    CoTaskString name;
    if (FAILED(SHGetNameFromIDList(shellIdList(item), form, name.put())) || !name) return std::nullopt;
    return std::wstring(name.get());
}

ShellIdList desktopList() {
    ShellIdList root;
    SHGetSpecialFolderLocation(nullptr, CSIDL_DESKTOP, root.put());
    return root;
}

}  // namespace

bool WindowsShellNamespace::enumerateDesktop(ItemIdList& root, std::vector<ItemIdList>& children) const {
    ComRef<IShellFolder> desktop;
    if (FAILED(SHGetDesktopFolder(desktop.put()))) return false;
    const ShellIdList rootList = desktopList();
    if (!rootList) return false;
    root = itemIdListFrom(rootList.get());

    // S_FALSE, and no enumerator, when the folder has nothing to show.
    ComRef<IEnumIDList> items;
    const SHCONTF kinds = SHCONTF_FOLDERS | SHCONTF_NONFOLDERS | SHCONTF_INCLUDEHIDDEN;
    if (FAILED(desktop->EnumObjects(nullptr, kinds, items.put())) || !items) return true;
    for (;;) {
        ShellIdList child;
        if (items->Next(1, child.put(), nullptr) != S_OK || !child) return true;
        const ShellIdList absolute(ILCombine(rootList.get(), child.get()));
        if (absolute) children.push_back(itemIdListFrom(absolute.get()));
    }
}

std::optional<std::wstring> WindowsShellNamespace::displayName(const ItemIdList& item) const {
    return nameOf(item, SIGDN_NORMALDISPLAY);
}

std::optional<std::wstring> WindowsShellNamespace::fileSystemPath(const ItemIdList& item) const {
    return nameOf(item, SIGDN_FILESYSPATH);
}

bool WindowsShellNamespace::equal(const ItemIdList& a, const ItemIdList& b) const {
    if (a.empty() || b.empty()) return false;
    return a == b || ILIsEqual(shellIdList(a), shellIdList(b));
}

bool WindowsShellNamespace::isImmediateParent(const ItemIdList& parent, const ItemIdList& child) const {
    if (parent.empty() || child.empty()) return false;
    return ILIsParent(shellIdList(parent), shellIdList(child), TRUE);
}

std::optional<ItemIdList> WindowsShellNamespace::parseDesktopName(const std::wstring& name) const {
    ComRef<IShellFolder> desktop;
    if (FAILED(SHGetDesktopFolder(desktop.put()))) return std::nullopt;
    const ShellIdList root = desktopList();
    ShellIdList item;
    std::wstring parsed = name;  // the shell asks for a text that it could write to
    if (!root ||
        FAILED(desktop->ParseDisplayName(nullptr, nullptr, parsed.data(), nullptr, item.put(), nullptr)) ||
        !item) {
        return std::nullopt;
    }
    const ShellIdList absolute(ILCombine(root.get(), item.get()));
    if (!absolute) return std::nullopt;
    return itemIdListFrom(absolute.get());
}

std::optional<std::wstring> WindowsShellNamespace::linkTarget(const std::wstring& linkPath) const {
    ComRef<IShellLinkW> link;
    if (FAILED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                                link.putVoid()))) {
        return std::nullopt;
    }
    ComRef<IPersistFile> file;
    if (FAILED(link->QueryInterface(IID_IPersistFile, file.putVoid()))) {
        return std::nullopt;
    }
    wchar_t target[kLinkTargetUnits] = {};
    if (FAILED(file->Load(linkPath.c_str(), STGM_READ))) return std::nullopt;
    if (FAILED(link->GetPath(target, kLinkTargetUnits, nullptr, SLGP_RAWPATH))) return std::nullopt;
    target[kLinkTargetUnits - 1] = L'\0';
    if (target[0] == L'\0') return std::nullopt;
    return std::wstring(target);
}

}  // namespace varnelo
