#include "support/file_steps.h"

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <utility>

namespace varnelo::test {

namespace {

FileSteps::Allow allowed;

bool refused(FileStep step) {
    if (!allowed || allowed(step)) return false;
    errno = EIO;
    return true;
}

}  // namespace

FileSteps::FileSteps(Allow allow) { allowed = std::move(allow); }
FileSteps::~FileSteps() { allowed = nullptr; }

}  // namespace varnelo::test

// The program's own calls find these before those of the C library.
using varnelo::test::FileStep;

extern "C" int fsync(int file) {
    return varnelo::test::refused(FileStep::Flush) ? -1 : static_cast<int>(::syscall(SYS_fsync, file));
}

extern "C" int rename(const char* from, const char* to) noexcept {
    return varnelo::test::refused(FileStep::Move) ? -1 : ::renameat(AT_FDCWD, from, AT_FDCWD, to);
}

extern "C" int unlink(const char* path) noexcept {
    return varnelo::test::refused(FileStep::Delete) ? -1 : ::unlinkat(AT_FDCWD, path, 0);
}
