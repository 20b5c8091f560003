// Any bytes as the items that another program put on the clipboard: what is taken is no longer than the
// block, and written anew it is read the same.

#include <cstdint>
#include <cstdlib>
#include <span>

#include "views/clipboard_formats.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace varnelo;
    const auto array = parseShellIdListArray({data, size});
    if (!array) return 0;
    std::size_t taken = array->parent.bytes().size();
    for (const ItemIdList& item : array->items) {
        if (item.empty() || item.lastItem().empty()) std::abort();
        taken += item.bytes().size();
    }
    if (taken > size) std::abort();

    const auto again = parseShellIdListArray(shellIdListArrayBlock(*array));
    if (!again || again->parent != array->parent || again->items != array->items) std::abort();
    return 0;
}
