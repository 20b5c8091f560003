#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>

namespace varnelo {

// A file as memory, for a short while. Its pages come from the disk as they are read, and a page that cannot
// be read ends the program: for files of a local disk alone. Writing changes the memory and never the file.
//
// Windows admits no writer meanwhile, and nobody can replace or delete the file. Elsewhere whoever changes
// the file must replace it: one that becomes shorter must not be read.
class MappedFile {
public:
    MappedFile() = default;
    MappedFile(MappedFile&& other) noexcept { swap(other); }
    MappedFile& operator=(MappedFile&& other) noexcept {
        MappedFile taken(std::move(other));
        swap(taken);
        return *this;
    }
    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;
    ~MappedFile() { close(); }

    // Only once. False for a file without bytes, too. Windows begins to fetch all of it from the disk.
    bool open(const wchar_t* path);
    bool isOpen() const { return view != nullptr; }
    std::span<std::uint8_t> bytes() const { return {view, size}; }
    // What was read so far no longer counts as memory of this process; it is there again when it is read.
    // Before anything was written to it.
    void trim();
    void close();

private:
    void swap(MappedFile& other) noexcept {
        std::swap(view, other.view);
        std::swap(size, other.size);
        std::swap(file, other.file);
    }

    std::uint8_t* view = nullptr;
    std::size_t size = 0;
    std::intptr_t file = -1;  // open as long as the view: on Windows nobody can write then
};

}  // namespace varnelo
