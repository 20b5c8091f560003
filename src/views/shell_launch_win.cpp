#include "views/shell_launch_win.h"

#include <shlobj.h>
#include <shlwapi.h>

#include <algorithm>
#include <string>

#include "platform/com_ref.h"
#include "platform/item_id_list_win.h"
#include "platform/text.h"
#include "views/launch_command.h"

namespace varnelo {
namespace {

// Empty without one.
std::wstring parsingName(const ItemIdList& item) {
    ComRef<IShellFolder> desktop;
    if (FAILED(SHGetDesktopFolder(desktop.put()))) return {};
    STRRET form = {};
    if (FAILED(desktop->GetDisplayNameOf(reinterpret_cast<PCUITEMID_CHILD>(shellIdList(item)),
                                         SHGDN_FORPARSING, &form))) {
        return {};
    }
    wchar_t name[kLaunchNameUnits] = {};
    const auto child = reinterpret_cast<PCUITEMID_CHILD>(shellIdList(item));
    if (FAILED(StrRetToBufW(&form, child, name, kLaunchNameUnits))) return {};
    name[kLaunchNameUnits - 1] = L'\0';
    return name;
}

constexpr std::size_t kClassNameUnits = 256;

// What the command processor itself takes when the variable is missing.
constexpr wchar_t kDefaultExtensions[] = L".COM;.EXE;.BAT;.CMD;.VBS;.VBE;.JS;.JSE;.WSF;.WSH;.MSC";

std::wstring pathExtensions() {
    std::wstring value(GetEnvironmentVariableW(L"PATHEXT", nullptr, 0), L'\0');
    value.resize(GetEnvironmentVariableW(L"PATHEXT", value.data(), static_cast<DWORD>(value.size())));
    return value.empty() ? kDefaultExtensions : value;
}

// A program beside the file, which "start" would take for it.
bool hasProgramOfSameName(const std::wstring& name) {
    const auto programs = programsTriedFor(name, pathExtensions());
    return std::any_of(programs.begin(), programs.end(), [](const std::wstring& program) {
        return GetFileAttributesW(program.c_str()) != INVALID_FILE_ATTRIBUTES;
    });
}

bool isExpanded(const std::wstring& path) {
    if (path.find(L'%') == std::wstring::npos) return false;
    std::wstring expanded(ExpandEnvironmentStringsW(path.c_str(), nullptr, 0), L'\0');
    expanded.resize(
        ExpandEnvironmentStringsW(path.c_str(), expanded.data(), static_cast<DWORD>(expanded.size())));
    return expanded.c_str() != path;
}

// The class that opens files of this type. Wine's shell does not tell; there the type's own key names it.
RegKey classOf(const std::wstring& path) {
    const std::wstring type(extensionOf(path));
    RegKey key;
    if (type.empty() ||
        SUCCEEDED(AssocQueryKeyW(ASSOCF_NONE, ASSOCKEY_SHELLEXECCLASS, type.c_str(), nullptr, key.put()))) {
        return key;
    }
    wchar_t name[kClassNameUnits] = {};
    DWORD bytes = sizeof name;
    if (RegGetValueW(HKEY_CLASSES_ROOT, type.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, name, &bytes) ==
        ERROR_SUCCESS) {
        RegOpenKeyExW(HKEY_CLASSES_ROOT, name, 0, KEY_READ, key.put());
    }
    return key;
}

SHELLEXECUTEINFOW executionOf(const ItemIdList& item) {
    SHELLEXECUTEINFOW info = {};
    info.cbSize = sizeof info;
    info.fMask = SEE_MASK_IDLIST;
    info.nShow = SW_SHOWNORMAL;
    info.lpIDList = const_cast<ITEMIDLIST*>(shellIdList(item));
    return info;
}

// Wine's shell expands variables in the path behind an id list too, and then opens another file or none,
// unless it is told the class.
void executeWithClass(const ItemIdList& item, const std::wstring& path, ShellCalls& calls) {
    SHELLEXECUTEINFOW info = executionOf(item);
    const RegKey key = classOf(path);
    if (key) {
        info.fMask |= SEE_MASK_CLASSKEY;
        info.hkeyClass = key.get();
    }
    calls.execute(info);
}

}  // namespace

void launchItem(const ItemIdList& item, ShellCalls& calls) {
    if (item.empty()) return;
    // The parsing name of a virtual item is one of class ids, "::{...}", which is no path: it is treated as
    // none, and the item goes by its list. "start" opens some of these names, but not those inside of folders
    // such as the Control Panel.
    const std::wstring name = parsingName(item);
    if (isSafeToLaunchByName(name) && !hasProgramOfSameName(name)) {
        calls.open(nullptr, L"cmd.exe", launchCommand(name).c_str(), nullptr, SW_HIDE);
        return;
    }
    const bool whole = name.size() + 1 < kLaunchNameUnits;
    if (whole && isExpanded(name)) {
        executeWithClass(item, name, calls);
    } else {
        executeItem(item, nullptr, nullptr, calls);
    }
}

bool executeItem(const ItemIdList& item, const wchar_t* verb, HWND window, ShellCalls& calls) {
    if (item.empty()) return false;
    SHELLEXECUTEINFOW info = executionOf(item);
    info.hwnd = window;
    info.lpVerb = verb;
    return calls.execute(info);
}

}  // namespace varnelo
