#pragma once

// What the model asks of single files. The real one is in file_probe_win.h; tests script theirs. An
// implementation keeps no state, so one object serves all threads.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "model/file_metadata.h"

namespace varnelo {

class FileProbe {
public:
    static constexpr std::uint32_t kDirectoryAttribute = 0x10;

    struct Facts {
        FileTimes times;
        std::uint64_t sizeBytes = 0;
    };

    virtual ~FileProbe() = default;

    // The attribute bits; nothing when there is no such file or directory.
    virtual std::optional<std::uint32_t> attributes(const std::wstring& path) const = 0;

    // Of a file or a directory that can be opened for reading.
    virtual std::optional<Facts> facts(const std::wstring& path) const = 0;

    // Of a file that can be opened for reading; nothing for a directory.
    virtual std::optional<FileTimes> fileTimes(const std::wstring& path) const = 0;

    // Whether the file has a readable `:Zone.Identifier` stream, the mark of a download.
    virtual bool hasZoneIdentifier(const std::wstring& path) const = 0;

    // The file's beginning, at most `limitBytes` of it; empty when it cannot be read.
    virtual std::vector<std::uint8_t> beginning(const std::wstring& path, std::size_t limitBytes) const = 0;

    bool exists(const std::wstring& path) const { return attributes(path).has_value(); }
};

}  // namespace varnelo
