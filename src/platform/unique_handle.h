#pragma once

#include <utility>

namespace varnelo {

// Owns one handle and closes it once. Traits name the handle type and its rules:
//   using Raw = ...;  static Raw invalid();  static void close(Raw);
// close() is never called with the invalid value. handles_win.h has one line for each kind of handle.
template <class Traits>
class UniqueHandle {
public:
    using Raw = typename Traits::Raw;

    UniqueHandle() = default;
    explicit UniqueHandle(Raw handle) : raw(handle) {}
    UniqueHandle(UniqueHandle&& other) noexcept : raw(other.release()) {}
    UniqueHandle& operator=(UniqueHandle&& other) noexcept {
        if (this != &other) reset(other.release());
        return *this;
    }
    UniqueHandle(const UniqueHandle&) = delete;
    UniqueHandle& operator=(const UniqueHandle&) = delete;
    ~UniqueHandle() { reset(); }

    Raw get() const { return raw; }
    explicit operator bool() const { return raw != Traits::invalid(); }

    // For functions that hand a handle out: closes what is held and gives the address to fill in.
    Raw* put() {
        reset();
        return &raw;
    }
    void reset(Raw handle = Traits::invalid()) {
        Raw old = std::exchange(raw, handle);
        if (old != Traits::invalid()) Traits::close(old);
    }
    // Gives the handle up to the caller, who must close it.
    [[nodiscard]] Raw release() { return std::exchange(raw, Traits::invalid()); }

private:
    Raw raw = Traits::invalid();
};

}  // namespace varnelo
