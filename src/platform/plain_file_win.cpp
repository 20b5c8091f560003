#include <windows.h>

#include "platform/plain_file.h"

namespace varnelo {

namespace {

HANDLE fileOf(std::intptr_t handle) { return reinterpret_cast<HANDLE>(handle); }

}  // namespace

PlainFile::~PlainFile() {
    if (fileOf(handle) != INVALID_HANDLE_VALUE) CloseHandle(fileOf(handle));
}

PlainFile::Opened PlainFile::create(const wchar_t* path) {
    handle = reinterpret_cast<std::intptr_t>(
        CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (fileOf(handle) != INVALID_HANDLE_VALUE) return Opened::Yes;
    return GetLastError() == ERROR_SHARING_VIOLATION ? Opened::InUse : Opened::No;
}

bool PlainFile::write(std::span<const std::uint8_t> bytes) {
    DWORD written = 0;
    const auto size = static_cast<DWORD>(bytes.size());
    return WriteFile(fileOf(handle), bytes.data(), size, &written, nullptr) && written == size;
}

void makeFolder(const wchar_t* path) { CreateDirectoryW(path, nullptr); }

}  // namespace varnelo
