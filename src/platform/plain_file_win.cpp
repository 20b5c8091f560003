#include <windows.h>

#include <algorithm>

#include "platform/plain_file.h"

namespace varnelo {

namespace {

// One call writes at most this much: sizes are 32 bits wide there, and network drives refuse more.
constexpr std::size_t kBlockBytes = std::size_t{16} << 20;

HANDLE fileOf(std::intptr_t handle) { return reinterpret_cast<HANDLE>(handle); }

}  // namespace

PlainFile::~PlainFile() { close(); }

void PlainFile::close() {
    if (fileOf(handle) != INVALID_HANDLE_VALUE) CloseHandle(fileOf(handle));
    handle = -1;
}

bool PlainFile::flush() { return FlushFileBuffers(fileOf(handle)); }

PlainFile::Opened PlainFile::create(const wchar_t* path) {
    handle = reinterpret_cast<std::intptr_t>(
        CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (fileOf(handle) != INVALID_HANDLE_VALUE) return Opened::Yes;
    return GetLastError() == ERROR_SHARING_VIOLATION ? Opened::InUse : Opened::No;
}

bool PlainFile::write(std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const auto size = static_cast<DWORD>(std::min(bytes.size(), kBlockBytes));
        DWORD written = 0;
        if (!WriteFile(fileOf(handle), bytes.data(), size, &written, nullptr) || written == 0) return false;
        bytes = bytes.subspan(written);
    }
    return true;
}

bool moveFileOver(const wchar_t* from, const wchar_t* to) {
    return MoveFileExW(from, to, MOVEFILE_REPLACE_EXISTING | MOVEFILE_COPY_ALLOWED);
}

bool copyFileOver(const wchar_t* from, const wchar_t* to) { return CopyFileW(from, to, FALSE); }

bool removeFile(const wchar_t* path) { return DeleteFileW(path); }

void makeFolder(const wchar_t* path) { CreateDirectoryW(path, nullptr); }

}  // namespace varnelo
