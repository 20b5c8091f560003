#include "model/file_probe_win.h"

#include <windows.h>

#include <algorithm>

#include "platform/handles_win.h"

namespace varnelo {
namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

FileHandle openForReading(const std::wstring& path, DWORD sharing, DWORD flags) {
    return FileHandle(
        CreateFileW(path.c_str(), GENERIC_READ, sharing, nullptr, OPEN_EXISTING, flags, nullptr));
}

std::uint64_t ticksOf(const FILETIME& time) {
    return std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
}

FileTimes timesOf(const FILETIME& creation, const FILETIME& lastAccess, const FILETIME& lastWrite) {
    return {ticksOf(creation), ticksOf(lastAccess), ticksOf(lastWrite)};
}

}  // namespace

std::optional<std::uint32_t> WindowsFileProbe::attributes(const std::wstring& path) const {
    const DWORD bits = GetFileAttributesW(path.c_str());
    if (bits == INVALID_FILE_ATTRIBUTES) return std::nullopt;
    return bits;
}

std::optional<FileProbe::Facts> WindowsFileProbe::facts(const std::wstring& path) const {
    // Only with backup semantics can a directory be opened.
    const FileHandle file = openForReading(path, kShareAll, FILE_FLAG_BACKUP_SEMANTICS);
    BY_HANDLE_FILE_INFORMATION info;
    if (!file || !GetFileInformationByHandle(file.get(), &info)) return std::nullopt;
    return Facts{timesOf(info.ftCreationTime, info.ftLastAccessTime, info.ftLastWriteTime),
                 std::uint64_t{info.nFileSizeHigh} << 32 | info.nFileSizeLow};
}

std::optional<FileTimes> WindowsFileProbe::fileTimes(const std::wstring& path) const {
    const FileHandle file = openForReading(path, kShareAll, FILE_ATTRIBUTE_NORMAL);
    FILETIME creation, lastAccess, lastWrite;
    if (!file || !GetFileTime(file.get(), &creation, &lastAccess, &lastWrite)) return std::nullopt;
    return timesOf(creation, lastAccess, lastWrite);
}

bool WindowsFileProbe::hasZoneIdentifier(const std::wstring& path) const {
    const std::wstring stream = path + L":Zone.Identifier";
    return static_cast<bool>(openForReading(stream, FILE_SHARE_READ, FILE_ATTRIBUTE_NORMAL));
}

std::vector<std::uint8_t> WindowsFileProbe::beginning(const std::wstring& path,
                                                      std::size_t limitBytes) const {
    const FileHandle file = openForReading(path, kShareAll, FILE_ATTRIBUTE_NORMAL);
    if (!file) return {};
    LARGE_INTEGER sizeBytes;
    if (!GetFileSizeEx(file.get(), &sizeBytes) || sizeBytes.QuadPart <= 0) return {};
    const auto wanted = std::min<std::uint64_t>(limitBytes, static_cast<std::uint64_t>(sizeBytes.QuadPart));
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(wanted));
    DWORD read = 0;
    if (!ReadFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr)) return {};
    bytes.resize(read);
    return bytes;
}

}  // namespace varnelo
