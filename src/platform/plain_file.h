#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace varnelo {

// A new file, written once from its beginning. The Windows build allocates nothing here: a crashed program
// writes its report this way. Others use replaceFile(), except for a file that is too large to be put
// together in memory.
class PlainFile {
public:
    enum class Opened { Yes, InUse, No };

    PlainFile() = default;
    PlainFile(const PlainFile&) = delete;
    PlainFile& operator=(const PlainFile&) = delete;
    ~PlainFile();

    // Makes the file or empties the one that is there. InUse: somebody else has it open.
    Opened create(const wchar_t* path);
    bool write(std::span<const std::uint8_t> bytes);
    // Waits until the disk has what was written.
    bool flush();
    // Only needed before the file is moved; harmless when repeated.
    void close();

private:
    std::intptr_t handle = -1;
};

// One file takes the place of another, or of none, in one step.
bool moveFileOver(const wchar_t* from, const wchar_t* to);
// The same in more than one step; `from` stays.
bool copyFileOver(const wchar_t* from, const wchar_t* to);
bool removeFile(const wchar_t* path);

// Makes one folder in an existing one; without effect when it exists or cannot be made.
void makeFolder(const wchar_t* path);

}  // namespace varnelo
