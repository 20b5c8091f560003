#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace varnelo {

// The raw data (RCDATA) resource of that id in `module`, an HINSTANCE; null is the program itself. Empty when
// there is none. Valid while the module is loaded. The host build has no resources.
std::span<const std::uint8_t> resourceBytes(void* module, std::uint32_t id);

}  // namespace varnelo
