// Any bytes as an Internet shortcut: the address is one line of the file.

#include <cstdint>
#include <cstdlib>
#include <span>

#include "model/url_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto target = varnelo::urlFileTarget({data, size});
    if (target && target->find(L'\n') != target->npos) std::abort();
    if (target && target->size() + 4 > size) std::abort();
    return 0;
}
