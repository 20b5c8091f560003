#pragma once

#include <string>
#include <string_view>

#include "app/log_lines.h"

namespace varnelo {

// Where reports go when the roaming folder is unknown. Nobody makes this folder, so opening a file there
// normally fails, and then there is no report.
inline constexpr wchar_t kNoReportFolder[] = L" chromosome .";

// The folder of the reports of a program, inside the roaming folder ("" when that is unknown).
std::wstring crashReportFolder(std::wstring_view roamingFolder, std::wstring_view programName);

enum class ReportResult {
    Written,
    InUse,   // a report of this very second is being written
    Failed,  // there is no report, and nobody is told
};

// Writes the report file of this second to `folder`, which is made when it is missing: the reason, then the
// lines up to and with `last`. Allocates nothing and needs little stack in the Windows build, since it runs
// in crashed programs.
ReportResult writeCrashReport(const wchar_t* folder, std::wstring_view reason, const LogLines& lines,
                              const LogLines::Node* last);

}  // namespace varnelo
