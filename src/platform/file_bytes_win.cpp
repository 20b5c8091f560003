#include "platform/file_bytes.h"

#include <algorithm>
#include <atomic>

#include "platform/handles_win.h"
#include "platform/text.h"

namespace varnelo {

namespace {

// One call reads or writes at most this much: sizes are 32 bits wide there, and network drives refuse more.
constexpr std::size_t kBlockBytes = std::size_t{16} << 20;

bool writeAll(HANDLE file, std::span<const std::uint8_t> content) {
    while (!content.empty()) {
        const auto size = static_cast<DWORD>(std::min(content.size(), kBlockBytes));
        DWORD written = 0;
        if (!WriteFile(file, content.data(), size, &written, nullptr) || written == 0) return false;
        content = content.subspan(written);
    }
    return true;
}

// A name of its own for each attempt, so that two writers of one file never share the file aside.
std::wstring asidePath(const std::wstring& path) {
    static std::atomic<unsigned> serial{0};
    return path + formatText(L".%lu-%u.new", GetCurrentProcessId(), ++serial);
}

bool writeAside(const std::wstring& path, std::span<const std::uint8_t> content) {
    const FileHandle file(
        CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
    return file && writeAll(file.get(), content) && FlushFileBuffers(file.get());
}

}  // namespace

std::optional<std::vector<std::uint8_t>> readWholeFile(const std::wstring& path, std::uint64_t limitBytes) {
    const FileHandle file(CreateFileW(path.c_str(), GENERIC_READ,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                      OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    LARGE_INTEGER size{};
    if (!file || !GetFileSizeEx(file.get(), &size)) return std::nullopt;
    if (static_cast<std::uint64_t>(size.QuadPart) > limitBytes) return std::nullopt;

    std::vector<std::uint8_t> content(static_cast<std::size_t>(size.QuadPart));
    std::size_t done = 0;
    while (done < content.size()) {
        DWORD count = 0;
        const auto wanted = static_cast<DWORD>(std::min(content.size() - done, kBlockBytes));
        if (!ReadFile(file.get(), content.data() + done, wanted, &count, nullptr)) return std::nullopt;
        if (count == 0) break;  // it became shorter meanwhile
        done += count;
    }
    content.resize(done);
    return content;
}

bool replaceFile(const std::wstring& path, std::span<const std::uint8_t> content) {
    const std::wstring aside = asidePath(path);
    if (writeAside(aside, content) &&
        MoveFileExW(aside.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
        return true;
    }
    const LastErrorKeeper keeper;
    DeleteFileW(aside.c_str());
    return false;
}

}  // namespace varnelo
