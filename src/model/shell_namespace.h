#pragma once

// The shell's namespace as the model needs it. The real one is in shell_namespace_win.h; tests script theirs.
// An implementation keeps no state, so one object serves all threads; the real one needs COM initialised on
// the thread that calls it.

#include <optional>
#include <string>
#include <vector>

#include "platform/item_id_list.h"

namespace varnelo {

class ShellNamespace {
public:
    virtual ~ShellNamespace() = default;

    // The items of the desktop, hidden ones too, as absolute lists in the shell's order, and the list of the
    // desktop itself. False, and both arguments untouched, when the shell does not give its desktop folder.
    virtual bool enumerateDesktop(ItemIdList& root, std::vector<ItemIdList>& children) const = 0;

    // The name as the shell shows it.
    virtual std::optional<std::wstring> displayName(const ItemIdList& item) const = 0;

    // Nothing for a virtual item.
    virtual std::optional<std::wstring> fileSystemPath(const ItemIdList& item) const = 0;

    // Whether both name the same item, also where their bytes differ. An empty list equals nothing.
    virtual bool equal(const ItemIdList& a, const ItemIdList& b) const = 0;

    virtual bool isImmediateParent(const ItemIdList& parent, const ItemIdList& child) const = 0;

    // The absolute list of the desktop's item with this parsing name.
    virtual std::optional<ItemIdList> parseDesktopName(const std::wstring& name) const = 0;

    // What a .lnk file points at, as stored in it; nothing when it cannot be read or points at no file.
    virtual std::optional<std::wstring> linkTarget(const std::wstring& linkPath) const = 0;
};

}  // namespace varnelo
