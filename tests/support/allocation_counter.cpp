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

}  // namespace

namespace varnelo {

#if VARNELO_SANITIZED

// The sanitizers' own operator new stays in place: it checks more than ours.
std::uint64_t allocationsOfThisThread() {
    static const int installed = __sanitizer_install_malloc_and_free_hooks(
        [](const volatile void*, std::size_t) { ++allocations; }, [](const volatile void*) {});
    static_cast<void>(installed);
    return allocations;
}

#else

std::uint64_t allocationsOfThisThread() { return allocations; }

#endif

}  // namespace varnelo

#if !VARNELO_SANITIZED

// The forms that are not replaced here end in these.
void* operator new(std::size_t size) {
    ++allocations;
    if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

#endif
