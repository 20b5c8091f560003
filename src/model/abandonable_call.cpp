#include "model/abandonable_call.h"

#include <algorithm>
#include <atomic>
#include <memory>
#include <system_error>
#include <thread>
#include <utility>

#include "app/crash_guard.h"

namespace varnelo {
namespace {

using Clock = std::chrono::steady_clock;

// How often a caller that waits looks whether it is to stop.
constexpr std::chrono::milliseconds kStopLook{100};

std::atomic<int> abandoned = 0;

bool isStopped(const CallLimits& limits) { return limits.stopped && *limits.stopped; }

// What the two threads share, for as long as either of them lives.
struct Call {
    ReplyRelay relay;
    // Set by the first of the two to leave: the caller when it gives up, the thread when it comes to its end.
    std::atomic<bool> left = false;
};

void runThread(const std::shared_ptr<Call>& call, std::function<bool(ReplyRelay&)> talk) {
    installThreadCrashGuard();
    bool whole = false;
    try {
        whole = talk(call->relay);
    } catch (...) {
        whole = false;
    }
    talk = nullptr;  // what it owns ends before the caller hears of the end
    call->relay.pass({whole ? ReplyStep::Kind::Whole : ReplyStep::Kind::Failed});
    if (call->left.exchange(true)) --abandoned;
}

bool takeOne(const std::function<bool(const ReplyStep&)>& take, const ReplyStep& step) {
    try {
        return take(step);
    } catch (...) {
        return false;
    }
}

// Nothing when the deadline has passed or the call is stopped.
std::optional<ReplyStep> nextStep(ReplyRelay& relay, ReplyRelay::Time deadline, const CallLimits& limits) {
    while (!isStopped(limits)) {
        const auto look = std::min(deadline, Clock::now() + kStopLook);
        if (auto step = relay.take(look)) return step;
        if (look == deadline) break;
    }
    return std::nullopt;
}

// True when the last step has come.
bool takeSteps(ReplyRelay& relay, const CallLimits& limits, const std::function<bool(const ReplyStep&)>& take,
               bool& accepted) {
    const auto end = Clock::now() + limits.total;
    auto limit = limits.firstStep;
    while (const auto step = nextStep(relay, std::min(end, Clock::now() + limit), limits)) {
        if (step->isLast()) {
            accepted = accepted && step->kind == ReplyStep::Kind::Whole;
            return true;
        }
        if (accepted && !takeOne(take, *step)) {
            accepted = false;
            relay.refuse();
        }
        limit = limits.nextStep;
    }
    return false;
}

}  // namespace

bool runAbandonable(std::function<bool(ReplyRelay&)> talk, const CallLimits& limits,
                    const std::function<bool(const ReplyStep&)>& take) {
    if (isStopped(limits) || abandonedCalls() >= kAbandonedCallLimit) return false;
    const auto call = std::make_shared<Call>();
    std::thread thread;
    try {
        thread = std::thread([call, work = std::move(talk)]() mutable { runThread(call, std::move(work)); });
    } catch (const std::system_error&) {
        return false;
    }
    bool accepted = true;
    if (takeSteps(call->relay, limits, take, accepted)) {
        thread.join();
        return accepted;
    }
    call->relay.refuse();
    ++abandoned;
    if (call->left.exchange(true)) --abandoned;
    thread.detach();
    return false;
}

int abandonedCalls() { return abandoned; }

}  // namespace varnelo
