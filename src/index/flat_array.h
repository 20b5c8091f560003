#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <new>
#include <span>
#include <type_traits>
#include <utility>

namespace varnelo {

// A growing array of plain values that, unlike std::vector, can be resized without being written first: an
// array of a hundred megabytes is then filled by one read. Growth moves the elements. It may also borrow them
// from elsewhere; they are its own from the first time that it grows.
template <class T>
class FlatArray {
    static_assert(std::is_trivially_copyable_v<T>);

public:
    FlatArray() = default;
    FlatArray(FlatArray&& other) noexcept { swap(other); }
    FlatArray& operator=(FlatArray&& other) noexcept {
        FlatArray taken(std::move(other));
        swap(taken);
        return *this;
    }
    FlatArray(const FlatArray&) = delete;
    FlatArray& operator=(const FlatArray&) = delete;
    ~FlatArray() { release(); }

    std::size_t size() const { return count; }
    bool empty() const { return count == 0; }
    T* data() { return elements; }
    const T* data() const { return elements; }
    T& operator[](std::size_t i) { return elements[i]; }
    const T& operator[](std::size_t i) const { return elements[i]; }
    T* begin() { return elements; }
    T* end() { return elements + count; }
    const T* begin() const { return elements; }
    const T* end() const { return elements + count; }
    T& back() { return elements[count - 1]; }

    void push_back(const T& value) {
        const T copy = value;  // it may be one of ours
        makeRoom(1);
        elements[count++] = copy;
    }
    // Room for so many elements more, with some to spare, so that a row of small additions moves them seldom.
    void makeRoom(std::size_t more) {
        if (count + more > capacity()) reserve(std::max(count + more, capacity() + capacity() / 2 + 16));
    }
    // Room for exactly that many elements.
    void reserve(std::size_t wanted) {
        if (wanted <= capacity()) return;
        T* larger = static_cast<T*>(::operator new(wanted * sizeof(T)));
        if (count != 0) std::memcpy(static_cast<void*>(larger), elements, count * sizeof(T));
        release();
        elements = larger;
        room = wanted;
    }
    // Elements that are new hold anything.
    void resizeUnwritten(std::size_t wanted) {
        reserve(wanted);
        count = wanted;
    }
    void assign(std::size_t wanted, const T& value) {
        const T copy = value;
        resizeUnwritten(wanted);
        std::fill_n(elements, wanted, copy);
    }
    // Refers to elements that stay alive, and are written to where they are.
    void borrow(std::span<T> others) {
        clear();
        elements = others.data();
        count = others.size();
    }
    // Gives the memory back.
    void clear() { *this = FlatArray(); }

private:
    std::size_t capacity() const { return std::max(room, count); }
    void release() {
        if (room != 0) ::operator delete(elements);
    }
    void swap(FlatArray& other) {
        std::swap(elements, other.elements);
        std::swap(count, other.count);
        std::swap(room, other.room);
    }

    T* elements = nullptr;
    std::size_t count = 0;
    std::size_t room = 0;  // 0: the elements are borrowed, or there are none
};

}  // namespace varnelo
