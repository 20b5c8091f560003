#include <windows.h>

#include <memory>
#include <utility>

#include "support/file_steps.h"
#include "support/import_patch_win.h"

extern "C" void* __imp_FlushFileBuffers;
extern "C" void* __imp_MoveFileExW;
extern "C" void* __imp_DeleteFileW;

namespace varnelo::test {

namespace {

bool refused(FileStep step);

BOOL WINAPI flush(HANDLE file);
BOOL WINAPI move(LPCWSTR from, LPCWSTR to, DWORD flags);
BOOL WINAPI erase(LPCWSTR path);

struct Watch {
    FileSteps::Allow allow;
    ImportPatch flushing{__imp_FlushFileBuffers, flush};
    ImportPatch moving{__imp_MoveFileExW, move};
    ImportPatch erasing{__imp_DeleteFileW, erase};
};
std::unique_ptr<Watch> watch;

bool refused(FileStep step) {
    if (watch->allow(step)) return false;
    SetLastError(ERROR_ACCESS_DENIED);
    return true;
}

BOOL WINAPI flush(HANDLE file) {
    return !refused(FileStep::Flush) && reinterpret_cast<decltype(&flush)>(watch->flushing.real())(file);
}

BOOL WINAPI move(LPCWSTR from, LPCWSTR to, DWORD flags) {
    return !refused(FileStep::Move) &&
           reinterpret_cast<decltype(&move)>(watch->moving.real())(from, to, flags);
}

BOOL WINAPI erase(LPCWSTR path) {
    return !refused(FileStep::Delete) && reinterpret_cast<decltype(&erase)>(watch->erasing.real())(path);
}

}  // namespace

FileSteps::FileSteps(Allow allow) { watch.reset(new Watch{std::move(allow)}); }
FileSteps::~FileSteps() { watch.reset(); }

}  // namespace varnelo::test
