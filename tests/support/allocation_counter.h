#pragma once

#include <cstdint>

namespace varnelo {

// How often the calling thread has asked for memory so far, by operator new or anything above it.
std::uint64_t allocationsOfThisThread();
// The bytes of all of them, whether or not they were given back.
std::uint64_t allocatedBytesOfThisThread();

}  // namespace varnelo
