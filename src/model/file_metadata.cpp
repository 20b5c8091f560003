#include "model/file_metadata.h"

namespace varnelo {

std::wstring FileMetaData::uninstallPath() const { return {}; }

void DesktopFileInfo::setTimes(const FileTimes& times) {
    creationTime = times.creation;
    lastAccessTime = times.lastAccess;
    lastWriteTime = times.lastWrite;
}

std::int64_t unixFromFileTime(std::uint64_t fileTime) {
    constexpr std::uint64_t kTicksAt1970 = 116444736000000000;
    constexpr std::uint64_t kTicksPerSecond = 10000000;
    constexpr std::int64_t kSecondsFrom1601To1970 = 11644473600;
    if (fileTime < kTicksAt1970) return 0;
    return static_cast<std::int64_t>(fileTime / kTicksPerSecond) - kSecondsFrom1601To1970;
}

}  // namespace varnelo
