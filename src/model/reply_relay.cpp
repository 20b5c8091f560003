#include "model/reply_relay.h"

#include <utility>

namespace varnelo {

bool ReplyRelay::pass(ReplyStep step) {
    std::unique_lock lock(mutex);
    const bool last = step.isLast();
    if (refused && !last) return false;
    waiting = std::move(step);
    taken = false;
    changed.notify_all();
    if (last) return false;
    changed.wait(lock, [this] { return refused || (!waiting && !taken); });
    return !refused;
}

std::optional<ReplyStep> ReplyRelay::take(Time deadline) {
    std::unique_lock lock(mutex);
    taken = false;
    changed.notify_all();
    if (!changed.wait_until(lock, deadline, [this] { return waiting.has_value(); })) return std::nullopt;
    taken = true;
    return std::exchange(waiting, std::nullopt);
}

void ReplyRelay::refuse() {
    const std::scoped_lock lock(mutex);
    refused = true;
    if (waiting && !waiting->isLast()) waiting.reset();
    changed.notify_all();
}

}  // namespace varnelo
