#pragma once

// The files that remember where items stood: desktop.cache, system.cache and overview.cache. Their format is
// in docs/formats/desktop-cache.md. An item is known again by its item id list.

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "model/file_metadata.h"
#include "platform/item_id_list.h"

namespace varnelo {

// An item and what is remembered of it. Both pointers are valid and not owned.
struct CachedEntry {
    const ItemIdList* pidl;
    FileMetaData* metaData;
};

// Whether two lists name the same item though their bytes differ.
using SameItem = std::function<bool(const ItemIdList&, const ItemIdList&)>;

std::vector<std::uint8_t> encodeEntryCache(std::span<const CachedEntry> entries);

// Copies `timestamp`, `slot` and `slotTime` of each record to the first entry with its list. A record without
// a list, with one that no entry has, or with bytes that are no list, is passed over. False for another
// version and when the bytes end too early; what stood before is copied all the same. Allocates no more than
// a small multiple of the size of `bytes`, whatever count it claims.
bool decodeEntryCache(std::span<const std::uint8_t> bytes, std::span<const CachedEntry> entries,
                      const SameItem& sameItem);

// Replaces the file as a whole; false, and the old file untouched, when that fails.
bool saveEntryCache(const std::wstring& file, std::span<const CachedEntry> entries);

bool loadEntryCache(const std::wstring& file, std::span<const CachedEntry> entries, const SameItem& sameItem);

}  // namespace varnelo
