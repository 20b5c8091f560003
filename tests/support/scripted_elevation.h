#pragma once

#include <functional>
#include <string>
#include <vector>

#include "index/elevated_run.h"

namespace varnelo::test {

// A user without administrator rights, unless a test says otherwise, and the run that they are asked for.
class ScriptedElevation final : public ElevatedRun {
public:
    bool admin = false;
    bool agrees = true;            // when asked
    std::function<void()> helper;  // what the elevated run does
    std::function<void(const std::function<bool()>&)> waiting;
    std::vector<std::wstring> runs;  // asked for: the arguments and the milliseconds

    bool isUserAdmin() override { return admin; }
    bool runElevated(const std::wstring& arguments, std::uint32_t timeoutMs,
                     const std::function<bool()>& stopRequested) override {
        runs.push_back(arguments + L" " + std::to_wstring(timeoutMs));
        if (!agrees) return false;
        if (helper) helper();
        if (waiting) waiting(stopRequested);
        return true;
    }
};

}  // namespace varnelo::test
