#pragma once

#include <cstddef>
#include <functional>

namespace varnelo {

// A stretch of a pass over records: their names take so long that to start a thread counts for little.
inline constexpr std::size_t kRecordsInStretch = 65'536;

// Divides a long pass over memory among the processor's cores.
//
// Calls use(begin, end) for stretches of `length` or less that together are 0 to `count`, in no order; up to
// four threads, this one among them, call it at the same time, each for one stretch after the other. Returns
// when all calls have. Threads that cannot be started leave the work to the others. Of what calls throw, one
// exception is thrown here; the thread that met it does no further stretch.
void inStretches(std::size_t count, std::size_t length,
                 const std::function<void(std::size_t begin, std::size_t end)>& use);

}  // namespace varnelo
