#pragma once

// A call that may hang, with a caller that may not.

#include <atomic>
#include <chrono>
#include <functional>

#include "model/reply_relay.h"

namespace varnelo {

// How long the caller waits. Each step is waited for anew; `total` ends the call however lively it is.
struct CallLimits {
    std::chrono::milliseconds firstStep;
    std::chrono::milliseconds nextStep;
    std::chrono::milliseconds total;
    // Once this is true, the call fails within a tenth of a second. Null for never; looked at on the calling
    // thread alone.
    const std::atomic<bool>* stopped = nullptr;
};

// So many calls may hang at one time. While they do, further ones fail at once instead of adding to them.
inline constexpr int kAbandonedCallLimit = 8;

// Runs `talk` on a thread of its own, which passes on what happens, and hands every step but the last to
// `take` on the calling thread. True when `talk` says that its reply is whole and `take` has accepted every
// step. When `take` answers false, the call fails; `talk` learns of it as the answer of its next pass().
//
// When a step does not come in time, or the call is stopped meanwhile, the caller goes on alone and the
// thread is abandoned. This is the one thread of the program that is not joined: a system call that does not
// return cannot be ended from outside, not even by closing its handles, and killing the thread would leave
// the locks that it holds locked for good. Therefore `talk` must own everything that it touches, by value or
// by shared ownership, and close its handles itself when the system call returns after all. An exception of
// either function is a failure.
bool runAbandonable(std::function<bool(ReplyRelay&)> talk, const CallLimits& limits,
                    const std::function<bool(const ReplyStep&)>& take);

// How many abandoned calls have not come back so far.
int abandonedCalls();

}  // namespace varnelo
