#include "app/log_lines.h"

#include <utility>

namespace varnelo {

const LogLines::Node* LogLines::append(std::wstring line) {
    auto* node = new OwnedNode(std::move(line));
    link(*node);
    return node;
}

void LogLines::appendBorrowed(Node& node) {
    borrowed.store(&node);
    link(node);
}

void LogLines::link(Node& node) {
    Node* last = hint.load(std::memory_order_acquire);
    for (;;) {
        Node* next = nullptr;
        if (last->next.compare_exchange_weak(next, &node, std::memory_order_acq_rel)) break;
        if (next) last = next;
    }
    hint.store(&node, std::memory_order_release);
}

std::vector<std::wstring> LogLines::copy(std::size_t skipped) const {
    std::vector<std::wstring> result;
    for (const Node* node = first(); node; node = after(node)) {
        if (skipped == 0) {
            result.emplace_back(node->text);
        } else {
            --skipped;
        }
    }
    return result;
}

std::size_t LogLines::count() const {
    std::size_t lines = 0;
    for (const Node* node = first(); node; node = after(node)) ++lines;
    return lines;
}

void LogLines::clear() {
    Node* node = head.next.exchange(nullptr);
    const Node* kept = borrowed.exchange(nullptr);
    hint.store(&head);
    while (node) {
        Node* following = node->next.load();
        if (node != kept) delete static_cast<OwnedNode*>(node);
        node = following;
    }
}

}  // namespace varnelo
