#include "index/volume_source_win.h"

#include <windows.h>

#include <winioctl.h>

#include <algorithm>
#include <utility>

#include "platform/handles_win.h"

namespace varnelo {
namespace {

constexpr std::size_t kLongestRequest = 64;

class WindowsVolume final : public Volume {
public:
    explicit WindowsVolume(FileHandle opened) : handle(std::move(opened)) {}

    Answer volumeData(std::span<std::uint8_t> answer) override {
        return control(FSCTL_GET_NTFS_VOLUME_DATA, {}, answer);
    }
    Answer journalData(std::span<std::uint8_t> answer) override {
        return control(FSCTL_QUERY_USN_JOURNAL, {}, answer);
    }
    Answer enumerate(std::span<const std::uint8_t> request, std::span<std::uint8_t> answer) override {
        return control(FSCTL_ENUM_USN_DATA, request, answer);
    }
    Answer fileRecord(std::uint64_t frn, std::span<std::uint8_t> answer) override {
        NTFS_FILE_RECORD_INPUT_BUFFER request{};
        request.FileReferenceNumber.QuadPart = static_cast<LONGLONG>(frn);
        return control(FSCTL_GET_NTFS_FILE_RECORD,
                       {reinterpret_cast<const std::uint8_t*>(&request), sizeof request}, answer);
    }
    Answer readJournal(std::span<const std::uint8_t> request, std::span<std::uint8_t> answer) override {
        return control(FSCTL_READ_USN_JOURNAL, request, answer);
    }

private:
    Answer control(DWORD code, std::span<const std::uint8_t> request, std::span<std::uint8_t> answer) {
        // Some of the codes hand the caller's own memory to the file system, which wants it aligned.
        alignas(8) std::uint8_t input[kLongestRequest];
        const auto end = std::copy_n(request.begin(), std::min(request.size(), kLongestRequest), input);
        DWORD count = 0;
        const BOOL done = DeviceIoControl(handle.get(), code, request.empty() ? nullptr : input,
                                          static_cast<DWORD>(end - input), answer.data(),
                                          static_cast<DWORD>(answer.size()), &count, nullptr);
        return done ? Answer(count) : std::nullopt;
    }

    FileHandle handle;
};

}  // namespace

std::uint32_t WindowsVolumeSource::drives() { return GetLogicalDrives(); }

bool WindowsVolumeSource::fixedDrive(wchar_t letter) {
    const wchar_t root[] = {letter, L':', L'\\', L'\0'};
    return GetDriveTypeW(root) == DRIVE_FIXED;
}

std::unique_ptr<Volume> WindowsVolumeSource::open(const std::wstring& name) {
    FileHandle handle(CreateFileW((L"\\\\.\\" + name).c_str(), GENERIC_READ,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                                  FILE_ATTRIBUTE_READONLY, nullptr));
    if (!handle) return nullptr;
    return std::make_unique<WindowsVolume>(std::move(handle));
}

std::optional<std::uint64_t> WindowsVolumeSource::fileSize(const std::wstring& path) {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data)) return std::nullopt;
    return std::uint64_t{data.nFileSizeHigh} << 32 | data.nFileSizeLow;
}

}  // namespace varnelo
