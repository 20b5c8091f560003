#pragma once

#include "model/shell_namespace.h"

namespace varnelo {

// The shell itself. A thread that calls it has COM initialised.
class WindowsShellNamespace final : public ShellNamespace {
public:
    bool enumerateDesktop(ItemIdList& root, std::vector<ItemIdList>& children) const override;
    std::optional<std::wstring> displayName(const ItemIdList& item) const override;
    std::optional<std::wstring> fileSystemPath(const ItemIdList& item) const override;
    bool equal(const ItemIdList& a, const ItemIdList& b) const override;
    bool isImmediateParent(const ItemIdList& parent, const ItemIdList& child) const override;
    std::optional<ItemIdList> parseDesktopName(const std::wstring& name) const override;
    std::optional<std::wstring> linkTarget(const std::wstring& linkPath) const override;
};

}  // namespace varnelo
