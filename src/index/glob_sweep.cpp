#include "index/glob_sweep.h"

#include <algorithm>
#include <array>
#include <functional>
#include <vector>

#include "index/glob_walk.h"
#include "index/unit_places.h"
#include "index/unit_vector.h"

namespace varnelo {

namespace {

constexpr std::size_t kPlaces = UnitPlaces::kPlacesInWord;
// Names in a row are mostly short: no more words than these are looked at together.
constexpr std::size_t kMostRowWords = 128;

std::uint64_t bitAt(const FlatArray<std::uint64_t>& words, std::size_t i) {
    return words[i / kPlaces] >> i % kPlaces & 1;
}

// std::popcount() is a call where the processor need not know how.
std::size_t bitCount(std::uint64_t word) {
    word -= word >> 1 & 0x5555555555555555;
    word = (word & 0x3333333333333333) + (word >> 2 & 0x3333333333333333);
    return ((word + (word >> 4)) & 0x0F0F0F0F0F0F0F0F) * 0x0101010101010101 >> 56;
}

// Whether so many names, a multiple of 8, and their NULs lie one behind the other, up to the offset behind
// theirs.
bool touch(const std::uint32_t* offsets, const std::uint16_t* lengths, std::size_t count) {
    const __m128i zero = _mm_setzero_si128();
    __m128i same = _mm_set1_epi32(-1);
    for (std::size_t i = 0; i < count; i += 8) {
        const __m128i eight = loadVector(lengths + i);
        const auto check = [&](const std::uint32_t* at, __m128i length) {
            const __m128i gap = _mm_sub_epi32(loadVector(at + 1), loadVector(at));
            same = _mm_and_si128(same, _mm_cmpeq_epi32(gap, _mm_add_epi32(length, _mm_set1_epi32(1))));
        };
        check(offsets + i, _mm_unpacklo_epi16(eight, zero));
        check(offsets + i + 4, _mm_unpackhi_epi16(eight, zero));
    }
    return _mm_movemask_epi8(same) == 0xFFFF;
}

}  // namespace

// What is carried from one block of the pool to the next.
class GlobSweep::Pass {
public:
    explicit Pass(std::span<const Glob> globs) {
        for (const Glob& glob : globs) walks.emplace_back(glob.units(), units);
        unitPlaces.emplace(units);
        startsAsked = std::any_of(walks.begin(), walks.end(), std::mem_fn(&GlobWalk::asksForStarts));
        places.units.resize(units.size() * SweptPlaces::kWords);
    }
    void run(const std::uint16_t* from, std::size_t words, std::uint64_t* endWords,
             std::uint64_t* matchWords) {
        places.ends = endWords;
        unitPlaces->find(from, words, endWords, places.units.data(), SweptPlaces::kWords);
        for (std::size_t w = 0; w < words; ++w) {
            places.inside[w] = ~endWords[w];
            matchWords[w] = 0;
        }
        for (std::size_t w = 0; w < words && startsAsked; ++w) {
            places.starts[w] = endWords[w] << 1 | starting;
            starting = endWords[w] >> (kPlaces - 1);
        }
        for (GlobWalk& walk : walks) walk.run(places, words, matchWords);
    }

private:
    std::vector<std::uint16_t> units;
    std::vector<GlobWalk> walks;
    std::optional<UnitPlaces> unitPlaces;
    bool startsAsked = false;
    std::uint64_t starting = 1;
    SweptPlaces places;
};

// The word with the NUL before the first name is swept too. What else ends in it may be told wrongly, and is
// not asked for: its beginning was not seen.
GlobSweep::GlobSweep(std::span<const Glob> globs, const NamePool& pool, std::size_t firstOffset)
    : names(pool),
      pass(std::make_unique<Pass>(globs)),
      begun(firstOffset == 0 ? 0 : (firstOffset - 1) / kPlaces),
      swept(begun) {
    ends.resizeUnwritten(names.size() / kPlaces + 1);
    matches.resizeUnwritten(ends.size());
}

GlobSweep::~GlobSweep() = default;

void GlobSweep::sweepOn(std::size_t place) {
    const std::size_t full = names.size() / kPlaces;
    while (swept <= place / kPlaces && swept < full) {
        const std::size_t words = std::min(SweptPlaces::kWords, full - swept);
        pass->run(names.data() + swept * kPlaces, words, &ends[swept], &matches[swept]);
        swept += words;
    }
    if (swept > place / kPlaces) return;
    // Behind the pool stands a NUL.
    std::array<std::uint16_t, kPlaces> rest{};
    std::copy(names.data() + full * kPlaces, names.data() + names.size(), rest.begin());
    pass->run(rest.data(), 1, &ends[full], &matches[full]);
    swept = full + 1;
}

GlobSweep::Answers GlobSweep::answersFor(const RecordColumns& columns, std::size_t begin) {
    const std::uint32_t* offsets = columns.nameOffsets().data() + begin;
    const std::uint16_t* lengths = columns.nameLengths().data() + begin;
    const std::size_t left = columns.size() - begin;
    if (left > kMostAtOnce) {
        if (const auto matching = matchesInRow(offsets, lengths)) return {*matching, 0};
    }
    return answerEach({offsets, std::min(left, kMostAtOnce)}, lengths);
}

bool GlobSweep::begins(std::size_t offset) const {
    if (offset == 0) return begun == 0;
    return (offset - 1) / kPlaces >= begun && bitAt(ends, offset - 1) != 0;
}

// No length reaches beyond a NUL. So, if there are as many NULs as names, each name ends before one.
std::optional<std::uint64_t> GlobSweep::matchesInRow(const std::uint32_t* offsets,
                                                     const std::uint16_t* lengths) {
    const std::size_t first = offsets[0];
    const std::size_t behind = offsets[kMostAtOnce];
    if (!touch(offsets, lengths, kMostAtOnce) || behind > names.size() || behind <= first) return {};
    sweepTo(behind - 1);
    if (!begins(first)) return {};
    // The words with matches are noted without a branch: where they are is not foreseen.
    struct Noted {
        std::size_t word;
        std::size_t before;  // names that end in the words before it
    };
    std::array<Noted, kMostRowWords> noted;
    std::size_t notedCount = 0;
    std::size_t count = 0;
    const std::size_t firstWord = first / kPlaces;
    const std::size_t lastWord = (behind - 1) / kPlaces;
    if (lastWord - firstWord >= kMostRowWords) return {};
    for (std::size_t w = firstWord; w <= lastWord; ++w) {
        noted[notedCount] = {w, count};
        notedCount += matches[w] != 0 ? 1 : 0;
        count += bitCount(ends[w]);
    }
    const std::size_t outside = bitCount(ends[firstWord] & ~(~std::uint64_t{0} << first % kPlaces));
    count -= outside + bitCount(ends[lastWord] & ~std::uint64_t{1} << (behind - 1) % kPlaces);
    if (count != kMostAtOnce) return {};
    std::uint64_t matching = 0;
    for (std::size_t i = 0; i < notedCount; ++i) {
        for (std::uint64_t left = matches[noted[i].word]; left != 0; left &= left - 1) {
            const std::uint64_t earlier = ends[noted[i].word] & ((left & -left) - 1);
            const std::size_t name = noted[i].before + bitCount(earlier) - outside;
            // Those at both ends belong to other rows.
            if (name < kMostAtOnce) matching |= std::uint64_t{1} << name;
        }
    }
    return matching;
}

GlobSweep::Answers GlobSweep::answerEach(std::span<const std::uint32_t> offsets,
                                         const std::uint16_t* lengths) {
    Answers answers;
    for (std::size_t i = 0; i < offsets.size(); ++i) {
        const std::size_t offset = offsets[i];
        if (!names.holds(offsets[i])) continue;
        const std::size_t end = offset + lengths[i];
        sweepTo(end);
        const bool known = begins(offset) && bitAt(ends, end) != 0;
        if (known) {
            answers.matching |= bitAt(matches, end) << i;
        } else {
            answers.unknown |= std::uint64_t{1} << i;
        }
    }
    return answers;
}

}  // namespace varnelo
