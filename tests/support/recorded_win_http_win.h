#pragma once

// WinHTTP with somebody looking on: every call is written down, and then made with what a test has changed.

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "model/win_http_calls_win.h"

namespace varnelo::test {

// What is changed on the way. None of it is seen in what is written down.
struct WinHttpChanges {
    std::uint16_t port = 0;          // in place of the one asked for
    int timeoutMs = 0;               // in place of those set for the session, unless 0
    std::map<DWORD, DWORD> options;  // option, value in place of the one set
    DWORD refusedOption = 0;         // the value that no option may be set to, unless 0
    std::string failing;             // the call of this name fails instead of being made
};

// A table whose calls go to the one record of this process, which is emptied. No recorded call may be under
// way.
WinHttpCalls recordedWinHttp(const WinHttpChanges& changes);

// One line a call since then: its name, then its arguments; handles by what they are, texts in quotes, flags
// in hexadecimal. Reads of the body that follow each other are written down once.
std::vector<std::string> recordedCalls();

}  // namespace varnelo::test
