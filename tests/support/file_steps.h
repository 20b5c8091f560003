#pragma once

#include <functional>

namespace varnelo::test {

// The steps by which one file takes the place of another; a copy is none.
enum class FileStep { Flush, Move, Delete };

// Asks a test about each such step of this program while it lives, from before the step is made. Whatever is
// answered false fails instead. One at a time, and no other thread works on files meanwhile.
class FileSteps {
public:
    using Allow = std::function<bool(FileStep)>;

    explicit FileSteps(Allow allow);
    FileSteps(const FileSteps&) = delete;
    FileSteps& operator=(const FileSteps&) = delete;
    ~FileSteps();
};

}  // namespace varnelo::test
