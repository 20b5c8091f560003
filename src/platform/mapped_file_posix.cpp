#include "platform/mapped_file.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/utf.h"

namespace varnelo {

bool MappedFile::open(const wchar_t* path) {
    const int descriptor = ::open(utf8FromWide(path).c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) return false;
    struct stat status {};
    void* mapped = MAP_FAILED;
    if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_size > 0) {
        mapped = ::mmap(nullptr, static_cast<std::size_t>(status.st_size), PROT_READ | PROT_WRITE,
                        MAP_PRIVATE, descriptor, 0);
    }
    if (mapped == MAP_FAILED) {
        ::close(descriptor);
        return false;
    }
    view = static_cast<std::uint8_t*>(mapped);
    size = static_cast<std::size_t>(status.st_size);
    file = descriptor;
    return true;
}

void MappedFile::trim() {
    if (isOpen()) ::madvise(view, size, MADV_DONTNEED);
}

void MappedFile::close() {
    if (!isOpen()) return;
    ::munmap(view, size);
    ::close(static_cast<int>(file));
    view = nullptr;
    size = 0;
    file = -1;
}

}  // namespace varnelo
