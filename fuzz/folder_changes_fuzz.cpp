// Any bytes as the records of ReadDirectoryChangesW.

#include <cstdint>
#include <cstdlib>
#include <span>

#include "model/folder_changes.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::size_t nameUnits = 0;
    const auto changes = varnelo::decodeFolderChanges({data, size});
    for (const auto& change : changes) {
        if (change.name.empty()) std::abort();
        if (2 * change.name.size() + 12 > size) std::abort();
        nameUnits += change.name.size();
    }
    if (changes.size() > size) std::abort();
    return nameUnits == SIZE_MAX;
}
