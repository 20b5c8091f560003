#pragma once

namespace varnelo {

// What ends a program without its consent ends in one place: an exception that nobody handles, hardware or
// software. There the pre-crash callback of the logger runs, the crash report is written and the process ends
// with exit code 1, without a dialog. The host build has no such guard; its crashes belong to the sanitizers.

// For the process and the calling thread. Sends uncaught C++ exceptions and abort() the same way, as the
// exceptions kTerminateCode and kAbortCode.
void installCrashGuard();

// Every thread that the program starts calls this first: it sets a part of the stack aside, without which a
// stack overflow on that thread would end the process without a report.
void installThreadCrashGuard();

inline constexpr unsigned kTerminateCode = 0xE0544552;
inline constexpr unsigned kAbortCode = 0xE0414254;

// True on a thread that has crashed and is on its way out: it must not wait for a lock, which it may hold.
bool onCrashedThread();

}  // namespace varnelo
