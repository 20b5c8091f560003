#pragma once

// Hands a server's reply, step by step, from the thread that talks to the server to the one that waits for
// it. The two take turns: the talking thread stands still while a step is dealt with, so no more than one
// step is in memory. The waiting thread can leave at any time; the relay must outlive both, so they share it.

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>

namespace varnelo {

struct ReplyStep {
    enum class Kind {
        Sent,    // the request is out
        Status,  // the reply has begun; `status` is its HTTP status
        Bytes,   // `bytes` is the next part of its body
        Whole,   // the last step: the body is complete
        Failed,  // the last step: something went wrong on the way
    };

    Kind kind = Kind::Sent;
    std::uint32_t status = 0;
    std::string bytes = {};

    bool isLast() const { return kind == Kind::Whole || kind == Kind::Failed; }
};

class ReplyRelay {
public:
    using Time = std::chrono::steady_clock::time_point;

    // Of the talking thread. Returns when the step has been dealt with; false when nobody wants another one.
    // After a last step there is nothing to wait for, and the answer is false.
    bool pass(ReplyStep step);

    // Of the waiting thread. Asking means that the step before is dealt with. Nothing when none came in time.
    std::optional<ReplyStep> take(Time deadline);

    // Of the waiting thread: no step but the last is wanted any more.
    void refuse();

private:
    std::mutex mutex;
    std::condition_variable changed;
    std::optional<ReplyStep> waiting;  // these three are guarded by mutex
    bool taken = false;                // a step is being dealt with
    bool refused = false;
};

}  // namespace varnelo
