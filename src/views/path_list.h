#pragma once

#include <string>
#include <string_view>

namespace varnelo {

// Paths as the shell's file operations take them: each ended by a zero, the list by one more.
class PathList {
public:
    // Leaves out what an operation would not take for exactly one file: a path that is not whole, which would
    // also pass the recycle bin by, and one with a wildcard, which an id list from another program could
    // hold.
    void add(std::wstring_view path);

    bool empty() const { return paths.empty(); }
    // Valid until the next add().
    const wchar_t* text() const { return paths.c_str(); }

private:
    std::wstring paths;  // the second zero of its end is the string's own
};

}  // namespace varnelo
