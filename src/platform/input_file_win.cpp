#include <windows.h>

#include <algorithm>

#include "platform/input_file.h"

namespace varnelo {

namespace {

// One call reads at most this much: sizes are 32 bits wide there, and network drives refuse more.
constexpr std::size_t kBlockBytes = std::size_t{16} << 20;

HANDLE fileOf(std::intptr_t handle) { return reinterpret_cast<HANDLE>(handle); }

}  // namespace

InputFile::~InputFile() {
    if (fileOf(handle) != INVALID_HANDLE_VALUE) CloseHandle(fileOf(handle));
}

bool InputFile::open(const wchar_t* path) {
    handle = reinterpret_cast<std::intptr_t>(
        CreateFileW(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                    OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    return fileOf(handle) != INVALID_HANDLE_VALUE;
}

std::int64_t InputFile::size() const {
    LARGE_INTEGER size{};
    return GetFileSizeEx(fileOf(handle), &size) ? size.QuadPart : -1;
}

std::size_t InputFile::read(std::uint8_t* to, std::size_t count) {
    std::size_t done = 0;
    while (done < count) {
        const auto wanted = static_cast<DWORD>(std::min(count - done, kBlockBytes));
        DWORD got = 0;
        if (!ReadFile(fileOf(handle), to + done, wanted, &got, nullptr) || got == 0) break;
        done += got;
    }
    return done;
}

}  // namespace varnelo
