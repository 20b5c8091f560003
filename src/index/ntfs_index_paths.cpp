#include <algorithm>
#include <array>

#include "index/ntfs_index.h"

namespace varnelo {

namespace {

constexpr int kMostLevels = 256;

}  // namespace

std::wstring NTFSIndex::fullPath(const FileRecord& record) {
    const std::uint64_t key = recordKey(record);
    if (const auto known = pathCache.find(key); known != pathCache.end()) return known->second;

    // Upwards from the record; the path is put together the other way round.
    std::array<NameUnits, kMostLevels> levels;
    std::size_t used = 0;
    std::wstring path;
    bool prefixed = false;
    const FileRecord* current = &record;
    for (int level = 0; level < kMostLevels; ++level) {
        const NameUnits name = nameUnits(*current);
        if (!name.empty()) levels[used++] = name;
        const std::uint64_t frn = current->frn & kFrnMask;
        const std::uint64_t parentFrn = current->parentFrn & kFrnMask;
        if (frn == kRootFrn || parentFrn == frn) break;
        const std::uint64_t parentKey = recordKey(current->volume, parentFrn);
        const auto parent = recordByKey(parentKey);
        if (!parent) break;
        current = &table[*parent];
        if (const auto known = pathCache.find(parentKey); known != pathCache.end()) {
            path = known->second;
            prefixed = true;
            break;
        }
    }
    if (!prefixed && record.volume < volumes.size()) {
        path = {static_cast<wchar_t>(volumes[record.volume]), L':'};
    }
    while (used != 0) {
        const NameUnits name = levels[--used];
        path += L'\\';
        path.append(name.begin(), name.end());
    }
    pathCache.insert_or_assign(key, path);
    return path;
}

}  // namespace varnelo
