#pragma once

#include "index/path_policy.h"

namespace varnelo {

// The machine that the program runs on.
class WindowsPolicyMachine final : public PathPolicyMachine {
public:
    std::optional<std::wstring> knownFolder(Folder folder) const override;
    // Fails when the result has more than 259 units.
    std::optional<std::wstring> expanded(std::wstring_view text) const override;
    std::vector<std::wstring> subfolders(const std::wstring& folder) const override;
    std::wstring driveLetters() const override;
};

}  // namespace varnelo
