#include "platform/resources.h"

namespace varnelo {

std::span<const std::uint8_t> resourceBytes(void*, std::uint32_t) { return {}; }

}  // namespace varnelo
