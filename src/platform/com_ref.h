#pragma once

#include <cstddef>
#include <utility>

namespace varnelo {

// Owns one reference to a counted object, that is anything with AddRef() and Release(): COM interfaces in the
// program, plain fakes in tests. Copying adds a reference, moving hands it over. Like a raw pointer it is not
// safe to share between threads; the object's own rules say whether copies may live on different threads.
template <class T>
class ComRef {
public:
    ComRef() = default;
    ComRef(std::nullptr_t) {}
    // Adds a reference of its own; the caller keeps the one it has. For a reference received from a
    // function result use attach().
    explicit ComRef(T* object) : pointer(object) { addRef(); }
    ComRef(const ComRef& other) : pointer(other.pointer) { addRef(); }
    ComRef(ComRef&& other) noexcept : pointer(std::exchange(other.pointer, nullptr)) {}
    ComRef& operator=(const ComRef& other) {
        ComRef(other).swap(*this);
        return *this;
    }
    ComRef& operator=(ComRef&& other) noexcept {
        ComRef(std::move(other)).swap(*this);
        return *this;
    }
    ~ComRef() { reset(); }

    T* get() const { return pointer; }
    T* operator->() const { return pointer; }
    T& operator*() const { return *pointer; }
    explicit operator bool() const { return pointer != nullptr; }

    // For functions that hand an object out: releases what is held and gives the address to fill in.
    T** put() {
        reset();
        return &pointer;
    }
    // put() for the functions that take void**, as QueryInterface does.
    void** putVoid() { return reinterpret_cast<void**>(put()); }
    // The held pointer's address for functions that read an array of interfaces. Does not release.
    T* const* address() const { return &pointer; }

    // Takes over a reference that the caller owns, without adding one.
    void attach(T* object) {
        T* old = std::exchange(pointer, object);
        if (old) old->Release();
    }
    // Gives the reference up to the caller, who must release it.
    [[nodiscard]] T* detach() { return std::exchange(pointer, nullptr); }
    void reset() { attach(nullptr); }
    void swap(ComRef& other) noexcept { std::swap(pointer, other.pointer); }

    friend bool operator==(const ComRef& a, const ComRef& b) { return a.pointer == b.pointer; }
    friend bool operator==(const ComRef& a, std::nullptr_t) { return a.pointer == nullptr; }

private:
    void addRef() {
        if (pointer) pointer->AddRef();
    }

    T* pointer = nullptr;
};

}  // namespace varnelo
