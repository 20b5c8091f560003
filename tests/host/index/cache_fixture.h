#pragma once

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "host/index/index_world.h"
#include "platform/binary_stream.h"
#include "support/log_capture.h"
#include "support/temp_folder.h"

namespace varnelo {

using Bytes = std::vector<std::uint8_t>;

// A cache file of a test's own, and what loads of it say.
class CacheFixture {
public:
    static constexpr const wchar_t* kName = L"ntfs.cache";

    std::wstring path() const { return folder.file(kName); }
    bool save(const NTFSIndex& index) const { return index.saveCache(folder.path(), kName); }
    bool load(NTFSIndex& index) const { return index.loadCache(folder.path(), kName); }
    // Loads a file of these bytes.
    bool load(NTFSIndex& index, const Bytes& bytes) const {
        write(path(), bytes);
        return load(index);
    }
    // What such a load logs, without the line of the size.
    std::vector<std::wstring> linesOf(const Bytes& bytes) const {
        NTFSIndex index;
        const LogCapture log;
        load(index, bytes);
        std::vector<std::wstring> lines = log.lines();
        std::erase_if(lines,
                      [](const std::wstring& line) { return line.find(L"file size = ") != line.npos; });
        return lines;
    }
    Bytes bytes() const { return read(path()); }
    bool exists(const wchar_t* name) const { return std::filesystem::exists(folder.file(name)); }

    static Bytes read(const std::wstring& from) {
        std::ifstream file(std::filesystem::path(from), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    static void write(const std::wstring& to, const Bytes& bytes) {
        std::ofstream file(std::filesystem::path(to), std::ios::binary);
        file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    }

    test::TempFolder folder;
};

// Loads these bytes without a file.
inline bool loadBytes(NTFSIndex& index, const Bytes& bytes) {
    auto from = bytes.begin();
    return index.readCache(static_cast<std::int64_t>(bytes.size()), [&](std::uint8_t* to, std::size_t count) {
        const auto got = std::min<std::ptrdiff_t>(static_cast<std::ptrdiff_t>(count), bytes.end() - from);
        std::copy_n(from, got, to);
        from += got;
        return static_cast<std::size_t>(got);
    });
}

// A file that is right up to some field, and then says what a test wants.
struct CacheBytes : BinaryWriter {
    CacheBytes& header(std::uint32_t version = 4) {
        u32(0x4E544653);
        u32(version);
        return *this;
    }
    // The header and so many counts of 0: 1 the volumes, 2 the files, 3 the pool, 4 the extensions, 5 to 7
    // maps.
    CacheBytes& emptyUpTo(int counts) {
        header();
        for (int i = 0; i < counts; ++i) u64(0);
        return *this;
    }
    CacheBytes& count(std::uint64_t value) {
        u64(value);
        return *this;
    }
    CacheBytes& filled(std::size_t size) {
        while (bytes().size() < size) u8(0);
        return *this;
    }
};

}  // namespace varnelo
