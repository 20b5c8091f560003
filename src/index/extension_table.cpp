#include "index/extension_table.h"

#include <algorithm>

#include "index/file_record.h"
#include "platform/text.h"

namespace varnelo {

namespace {

template <class Units>
std::uint64_t hashOf(const Units& units) {
    std::uint64_t hash = units.size();
    for (const auto unit : units) hash = mixedHash(hash ^ static_cast<std::uint16_t>(unit));
    return hash;
}

}  // namespace

std::uint16_t ExtensionTable::idOf(std::wstring_view name) {
    const std::size_t dot = name.rfind(L'.');
    if (dot == std::wstring_view::npos || dot == 0) return FileRecord::kNoExtension;
    const std::wstring extension = lowered(name.substr(dot));
    if (const auto known = find(extension)) return *known;
    if (size() >= kMostIds) return FileRecord::kNoExtension;
    addStored(extension);
    return static_cast<std::uint16_t>(size() - 1);
}

std::optional<std::uint16_t> ExtensionTable::find(std::wstring_view extension) const {
    const auto place = placeOf(extension, hashOf(extension));
    if (!place) return std::nullopt;
    return static_cast<std::uint16_t>(*place);
}

std::wstring ExtensionTable::text(std::size_t id) const {
    if (id >= ends.size()) return {};
    return {units.data() + (id == 0 ? 0 : ends[id - 1]), units.data() + ends[id]};
}

void ExtensionTable::clear() {
    units.clear();
    ends.clear();
    places.clear();
}

void ExtensionTable::addStored(std::wstring_view text) {
    const auto place = static_cast<std::uint32_t>(ends.size());
    const std::uint64_t hash = hashOf(text);
    const auto known = placeOf(text, hash);
    units.makeRoom(text.size());
    for (const wchar_t unit : text) units.push_back(static_cast<std::uint16_t>(unit));
    ends.push_back(static_cast<std::uint32_t>(units.size()));
    places.put(
        hash, place, [&](std::uint32_t other) { return known && other == *known; },
        [this](std::uint32_t other) { return hashAt(other); });
}

std::optional<std::uint32_t> ExtensionTable::placeOf(std::wstring_view text, std::uint64_t hash) const {
    return places.find(hash, [&](std::uint32_t place) {
        const std::uint32_t begin = place == 0 ? 0 : ends[place - 1];
        return std::equal(text.begin(), text.end(), units.data() + begin, units.data() + ends[place],
                          [](wchar_t a, std::uint16_t b) { return static_cast<std::uint16_t>(a) == b; });
    });
}

std::uint64_t ExtensionTable::hashAt(std::uint32_t place) const {
    const std::uint32_t begin = place == 0 ? 0 : ends[place - 1];
    return hashOf(std::span(units.data() + begin, units.data() + ends[place]));
}

}  // namespace varnelo
