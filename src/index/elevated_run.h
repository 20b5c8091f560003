#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace varnelo {

// The program's way to administrator rights: another run of itself.
class ElevatedRun {
public:
    virtual ~ElevatedRun() = default;

    // Whether the Administrators group counts for this process. A member whose process was not started with
    // its rights gets false.
    virtual bool isUserAdmin() = 0;
    // Starts the program with these arguments and those rights, without a window, and waits at most so long
    // for its end, or until `stopRequested` answers true, which is asked now and then and may be empty. False
    // only when it could not be started, as when the user refuses: how it ended is not told.
    virtual bool runElevated(const std::wstring& arguments, std::uint32_t timeoutMs,
                             const std::function<bool()>& stopRequested) = 0;
};

}  // namespace varnelo
