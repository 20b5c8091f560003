#pragma once

#include "index/elevated_run.h"

namespace varnelo {

// Asks the user through the system's own prompt.
class WindowsElevatedRun final : public ElevatedRun {
public:
    bool isUserAdmin() override;
    bool runElevated(const std::wstring& arguments, std::uint32_t timeoutMs,
                     const std::function<bool()>& stopRequested) override;
};

}  // namespace varnelo
