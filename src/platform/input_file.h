#pragma once

#include <cstddef>
#include <cstdint>

namespace varnelo {

// A file that is read in pieces, while others may read, write, rename or delete it.
class InputFile {
public:
    InputFile() = default;
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;
    ~InputFile();

    bool open(const wchar_t* path);
    // In bytes; -1 when it is none of a file.
    std::int64_t size() const;
    // From where the last read ended. Answers the bytes read: fewer than `count` only at the end of the file
    // or after a fault.
    std::size_t read(std::uint8_t* to, std::size_t count);

private:
    std::intptr_t handle = -1;
};

}  // namespace varnelo
