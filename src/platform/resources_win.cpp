#include <windows.h>

#include "platform/resources.h"

namespace varnelo {

std::span<const std::uint8_t> resourceBytes(void* module, std::uint32_t id) {
    const auto instance = static_cast<HMODULE>(module);
    const HRSRC found = FindResourceW(instance, MAKEINTRESOURCEW(id), RT_RCDATA);
    const HGLOBAL loaded = found ? LoadResource(instance, found) : nullptr;
    const void* bytes = loaded ? LockResource(loaded) : nullptr;
    if (!bytes) return {};
    return {static_cast<const std::uint8_t*>(bytes), SizeofResource(instance, found)};
}

}  // namespace varnelo
