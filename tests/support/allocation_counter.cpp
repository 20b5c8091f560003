#include "support/allocation_counter.h"

#include <cstdlib>
#include <new>

#if defined(__has_feature)
#define VARNELO_HAS_FEATURE(x) __has_feature(x)
#else
#define VARNELO_HAS_FEATURE(x) 0
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || \
    VARNELO_HAS_FEATURE(address_sanitizer) || VARNELO_HAS_FEATURE(thread_sanitizer)
#define VARNELO_SANITIZED 1
#include <sanitizer/allocator_interface.h>
#else
#define VARNELO_SANITIZED 0
#endif

namespace {

thread_local std::uint64_t allocations = 0;
thread_local std::uint64_t allocatedBytes = 0;

}  // namespace

namespace varnelo {

#if VARNELO_SANITIZED

// The sanitizers' own operator new stays in place: it checks more than ours.
namespace {

void installHooks() {
    static const int installed = __sanitizer_install_malloc_and_free_hooks(
        [](const volatile void*, std::size_t size) {
            ++allocations;
            allocatedBytes += size;
        },
        [](const volatile void*) {});
    static_cast<void>(installed);
}

}  // namespace

std::uint64_t allocationsOfThisThread() {
    installHooks();
    return allocations;
}

std::uint64_t allocatedBytesOfThisThread() {
    installHooks();
    return allocatedBytes;
}

#else

std::uint64_t allocationsOfThisThread() { return allocations; }
std::uint64_t allocatedBytesOfThisThread() { return allocatedBytes; }

#endif

}  // namespace varnelo

#if !VARNELO_SANITIZED

// The forms that are not replaced here end in these.
void* operator new(std::size_t size) {
    ++allocations;
    allocatedBytes += size;
    if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

#endif
