#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "platform/input_file.h"
#include "platform/utf.h"

namespace varnelo {

namespace {

// What one call of read() takes at most on some systems.
constexpr std::size_t kBlockBytes = std::size_t{1} << 30;

}  // namespace

InputFile::~InputFile() {
    if (handle >= 0) ::close(static_cast<int>(handle));
}

bool InputFile::open(const wchar_t* path) {
    handle = ::open(utf8FromWide(path).c_str(), O_RDONLY | O_CLOEXEC);
    return handle >= 0;
}

std::int64_t InputFile::size() const {
    struct stat status {};
    if (::fstat(static_cast<int>(handle), &status) != 0 || !S_ISREG(status.st_mode)) return -1;
    return status.st_size;
}

std::size_t InputFile::read(std::uint8_t* to, std::size_t count) {
    std::size_t done = 0;
    while (done < count) {
        const ssize_t got = ::read(static_cast<int>(handle), to + done, std::min(count - done, kBlockBytes));
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) break;
        done += static_cast<std::size_t>(got);
    }
    return done;
}

}  // namespace varnelo
