#pragma once

#include <atomic>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace varnelo {

// A list that only grows. Appending and walking need no lock: a crashed thread adds its last line and reads
// the whole list while other threads go on logging, and it may not wait for a lock that it holds itself.
class LogLines {
public:
    // One line. Its text never changes once it is in a list.
    struct Node {
        std::wstring_view text;
        std::atomic<Node*> next{nullptr};
    };

    LogLines() = default;
    LogLines(const LogLines&) = delete;
    LogLines& operator=(const LogLines&) = delete;
    ~LogLines() { clear(); }

    // Any thread. The node belongs to the list.
    const Node* append(std::wstring line);
    // Any thread; allocates nothing. The node stays the caller's and must outlive the list, which takes only
    // one such node: the last line of a crashed program.
    void appendBorrowed(Node& node);

    // Any thread. Null when there is no line.
    const Node* first() const { return after(&head); }
    static const Node* after(const Node* node) { return node->next.load(std::memory_order_acquire); }

    // Any thread. The first `skipped` lines are left out.
    std::vector<std::wstring> copy(std::size_t skipped = 0) const;
    std::size_t count() const;

    // Forgets all lines. Nobody else may use the list meanwhile.
    void clear();

private:
    struct OwnedNode : Node {
        explicit OwnedNode(std::wstring line) : storage(std::move(line)) { text = storage; }
        std::wstring storage;
    };

    void link(Node& node);

    Node head;
    // A node in the list, the last one unless two threads append at once: the search for the end begins here.
    std::atomic<Node*> hint{&head};
    std::atomic<Node*> borrowed{nullptr};
};

}  // namespace varnelo
