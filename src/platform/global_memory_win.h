#pragma once

#include "platform/handles_win.h"

namespace varnelo {

// A block of GlobalAlloc, until a clipboard takes it over.
struct GlobalMemoryTraits {
    using Raw = HGLOBAL;
    static Raw invalid() { return nullptr; }
    static void close(Raw memory) {
        const LastErrorKeeper keeper;
        GlobalFree(memory);
    }
};
using GlobalMemory = UniqueHandle<GlobalMemoryTraits>;

}  // namespace varnelo
