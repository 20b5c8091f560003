#pragma once

#include <cstdint>

namespace varnelo {

// How often the calling thread has asked for memory so far, by operator new or anything above it.
std::uint64_t allocationsOfThisThread();

}  // namespace varnelo
