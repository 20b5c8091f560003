// Any bytes as a desktop.cache: the reader neither crashes nor believes a size, and what it took is written
// back the same.

#include <cstdint>
#include <cstdlib>
#include <deque>
#include <span>
#include <vector>

#include "model/entry_cache.h"

using namespace varnelo;

namespace {

ItemIdList listOf(std::uint8_t letter) {
    const std::uint8_t bytes[] = {3, 0, letter, 0, 0};
    return ItemIdList::fromBytes(bytes).value();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::deque<DesktopFileInfo> infos;
    for (const char letter : {'a', 'b', 'c'}) {
        infos.emplace_back().pidl = listOf(static_cast<std::uint8_t>(letter));
    }
    infos.emplace_back();  // one without a list
    std::vector<CachedEntry> entries;
    for (DesktopFileInfo& info : infos) entries.push_back({&info.pidl, &info});

    // A shell to which the case of a letter makes no difference.
    const SameItem sameItem = [](const ItemIdList& a, const ItemIdList& b) {
        if (a.bytes().size() != b.bytes().size()) return false;
        for (std::size_t i = 0; i < a.bytes().size(); ++i) {
            if ((a.bytes()[i] | 0x20) != (b.bytes()[i] | 0x20)) return false;
        }
        return true;
    };
    decodeEntryCache({data, size}, entries, sameItem);
    if (infos.back().slot != -1) std::abort();

    const std::vector<std::uint8_t> written = encodeEntryCache(entries);
    if (!decodeEntryCache(written, entries, sameItem)) std::abort();
    if (encodeEntryCache(entries) != written) std::abort();
    return 0;
}
