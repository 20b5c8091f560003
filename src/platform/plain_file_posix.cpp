#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "platform/plain_file.h"
#include "platform/utf.h"

namespace varnelo {

PlainFile::~PlainFile() { close(); }

void PlainFile::close() {
    if (handle >= 0) ::close(static_cast<int>(handle));
    handle = -1;
}

bool PlainFile::flush() { return ::fsync(static_cast<int>(handle)) == 0; }

PlainFile::Opened PlainFile::create(const wchar_t* path) {
    handle = ::open(utf8FromWide(path).c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    return handle >= 0 ? Opened::Yes : Opened::No;
}

bool PlainFile::write(std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(static_cast<int>(handle), bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return true;
}

bool moveFileOver(const wchar_t* from, const wchar_t* to) {
    return ::rename(utf8FromWide(from).c_str(), utf8FromWide(to).c_str()) == 0;
}

bool copyFileOver(const wchar_t* from, const wchar_t* to) {
    std::error_code error;
    return std::filesystem::copy_file(utf8FromWide(from), utf8FromWide(to),
                                      std::filesystem::copy_options::overwrite_existing, error);
}

bool removeFile(const wchar_t* path) { return ::unlink(utf8FromWide(path).c_str()) == 0; }

void makeFolder(const wchar_t* path) { ::mkdir(utf8FromWide(path).c_str(), 0755); }

}  // namespace varnelo
