#include "model/file_metadata.h"

#include <algorithm>

#include "platform/clock.h"

namespace varnelo {

std::wstring FileMetaData::uninstallPath() const { return {}; }

void DesktopFileInfo::setTimes(const FileTimes& times) {
    creationTime = times.creation;
    lastAccessTime = times.lastAccess;
    lastWriteTime = times.lastWrite;
}

std::int64_t unixFromFileTime(std::uint64_t fileTime) {
    return std::max<std::int64_t>(
        0, static_cast<std::int64_t>(fileTimeSeconds(fileTime)) - kSecondsFrom1601To1970);
}

}  // namespace varnelo
