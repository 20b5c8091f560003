#include "platform/file_bytes.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>

#include "platform/unique_handle.h"
#include "platform/utf.h"

namespace varnelo {

namespace {

struct DescriptorTraits {
    using Raw = int;
    static Raw invalid() { return -1; }
    static void close(Raw descriptor) { ::close(descriptor); }
};
using Descriptor = UniqueHandle<DescriptorTraits>;

bool writeAll(int descriptor, std::span<const std::uint8_t> content) {
    while (!content.empty()) {
        const ssize_t written = ::write(descriptor, content.data(), content.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        content = content.subspan(static_cast<std::size_t>(written));
    }
    return true;
}

}  // namespace

std::optional<std::vector<std::uint8_t>> readWholeFile(const std::wstring& path, std::uint64_t limitBytes) {
    const Descriptor file(::open(utf8FromWide(path).c_str(), O_RDONLY | O_CLOEXEC));
    struct stat status {};
    if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
    if (static_cast<std::uint64_t>(status.st_size) > limitBytes) return std::nullopt;

    std::vector<std::uint8_t> content(static_cast<std::size_t>(status.st_size));
    std::size_t done = 0;
    while (done < content.size()) {
        const ssize_t count = ::read(file.get(), content.data() + done, content.size() - done);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return std::nullopt;
        if (count == 0) break;  // it became shorter meanwhile
        done += static_cast<std::size_t>(count);
    }
    content.resize(done);
    return content;
}

bool replaceFile(const std::wstring& path, std::span<const std::uint8_t> content) {
    const std::string target = utf8FromWide(path);
    std::string aside = target + "." + std::string(6, 'X');
    Descriptor file(::mkostemp(aside.data(), O_CLOEXEC));
    if (!file) return false;
    const bool written =
        writeAll(file.get(), content) && ::fsync(file.get()) == 0 && ::fchmod(file.get(), 0644) == 0;
    file.reset();
    if (written && ::rename(aside.c_str(), target.c_str()) == 0) return true;
    ::unlink(aside.c_str());
    return false;
}

}  // namespace varnelo
