#include "index/name_needle.h"

#include <algorithm>
#include <bit>

#include "index/grams.h"
#include "index/unit_vector.h"

namespace varnelo {

namespace {

// A name is looked through in windows, at all their places at once, for the beginning of the text.
constexpr std::size_t kWindow = 32;
constexpr std::size_t kLongestText = 16;

struct Window {
    __m128i low, high;

    std::uint32_t placesOf(__m128i unit, __m128i caseBit) const {
        const auto places = [&](__m128i units) {
            const __m128i same = _mm_cmpeq_epi8(_mm_or_si128(units, caseBit), unit);
            return static_cast<std::uint32_t>(_mm_movemask_epi8(same));
        };
        return places(low) | places(high) << 16;
    }
};

}  // namespace

NameNeedle::NameNeedle(std::span<const std::uint16_t> loweredText, const NamePool& pool)
    : names(pool), text(loweredText.begin(), loweredText.end()) {
    inWindows = text.size() <= kLongestText && std::all_of(text.begin(), text.end(), isNarrow);
    for (std::size_t i = 0; inWindows && i < kBeginning; ++i) {
        const bool letter = i < text.size() && text[i] >= 'a' && text[i] <= 'z';
        // Behind a shorter text any unit will do.
        beginning[i].unit.fill(i < text.size() ? static_cast<std::uint8_t>(text[i]) : 0xFF);
        beginning[i].caseBit.fill(i >= text.size() ? 0xFF : letter ? 'a' - 'A' : 0);
    }
}

bool NameNeedle::isInNameAt(std::uint32_t offset) const {
    if (!names.holds(offset)) return false;
    const std::uint16_t* units = names.data() + offset;
    // What is read for a window lies within the pool, and within the longest name.
    const std::size_t end = std::min(names.size() - offset, NamePool::kLongestName);
    for (std::size_t at = 0; inWindows && at + kWindow + kLongestText <= end;
         at += kWindow + 1 - kBeginning) {
        const Window window{narrowed(units + at), narrowed(units + at + 16)};
        const auto placesOf = [&](std::size_t i) {
            return window.placesOf(loadVector(beginning[i].unit.data()),
                                   loadVector(beginning[i].caseBit.data())) >>
                   i;
        };
        const std::uint32_t ends = window.placesOf(_mm_setzero_si128(), _mm_setzero_si128());
        std::uint32_t places = (ends - 1) & ~ends & placesOf(0) & placesOf(1) & placesOf(2) & placesOf(3);
        for (; places != 0; places &= places - 1) {
            if (restStandsAt(units + at + std::countr_zero(places))) return true;
        }
        if (ends != 0) return false;
    }
    return isIn(names.at(offset));
}

bool NameNeedle::restStandsAt(const std::uint16_t* units) const {
    std::size_t same = std::min(kBeginning, text.size());
    while (same < text.size() && lowerNameUnit(units[same]) == text[same]) ++same;
    return same == text.size();
}

bool NameNeedle::isIn(NameUnits name) const {
    const auto equal = [](std::uint16_t unit, std::uint16_t wanted) { return lowerNameUnit(unit) == wanted; };
    return std::search(name.begin(), name.end(), text.begin(), text.end(), equal) != name.end();
}

}  // namespace varnelo
