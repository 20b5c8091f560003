#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/plain_file.h"
#include "platform/utf.h"

namespace varnelo {

PlainFile::~PlainFile() {
    if (handle >= 0) ::close(static_cast<int>(handle));
}

PlainFile::Opened PlainFile::create(const wchar_t* path) {
    handle = ::open(utf8FromWide(path).c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    return handle >= 0 ? Opened::Yes : Opened::No;
}

bool PlainFile::write(std::span<const std::uint8_t> bytes) {
    return ::write(static_cast<int>(handle), bytes.data(), bytes.size()) ==
           static_cast<ssize_t>(bytes.size());
}

void makeFolder(const wchar_t* path) { ::mkdir(utf8FromWide(path).c_str(), 0755); }

}  // namespace varnelo
