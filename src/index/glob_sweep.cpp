#include "index/glob_sweep.h"

#include <immintrin.h>

#include <algorithm>
#include <array>
#include <functional>
#include <vector>

#include "index/unit_places.h"

namespace varnelo {

namespace {

constexpr std::size_t kPlaces = UnitPlaces::kPlacesInWord;
// Words that are worked on together: what is known of their places stays in the nearest cache.
constexpr std::size_t kBlock = 32;
// Names in a row are mostly short: no more words than these are looked at together.
constexpr std::size_t kMostRowWords = 128;
using Block = std::array<std::uint64_t, kBlock>;

std::uint64_t bitAt(const FlatArray<std::uint64_t>& words, std::size_t i) {
    return words[i / kPlaces] >> i % kPlaces & 1;
}

// std::popcount() is a call where the processor need not know how.
std::size_t bitCount(std::uint64_t word) {
    word -= word >> 1 & 0x5555555555555555;
    word = (word & 0x3333333333333333) + (word >> 2 & 0x3333333333333333);
    return ((word + (word >> 4)) & 0x0F0F0F0F0F0F0F0F) * 0x0101010101010101 >> 56;
}

__m128i load(const void* from) { return _mm_loadu_si128(static_cast<const __m128i*>(from)); }

// Whether so many names, a multiple of 8, and their NULs lie one behind the other, up to the offset behind
// theirs.
bool touch(const std::uint32_t* offsets, const std::uint16_t* lengths, std::size_t count) {
    const __m128i zero = _mm_setzero_si128();
    __m128i same = _mm_set1_epi32(-1);
    for (std::size_t i = 0; i < count; i += 8) {
        const __m128i eight = load(lengths + i);
        const auto check = [&](const std::uint32_t* at, __m128i length) {
            const __m128i gap = _mm_sub_epi32(load(at + 1), load(at));
            same = _mm_and_si128(same, _mm_cmpeq_epi32(gap, _mm_add_epi32(length, _mm_set1_epi32(1))));
        };
        check(offsets + i, _mm_unpacklo_epi16(eight, zero));
        check(offsets + i + 4, _mm_unpackhi_epi16(eight, zero));
    }
    return _mm_movemask_epi8(same) == 0xFFFF;
}

// Of a stretch of the pool.
struct Places {
    const std::uint64_t* ends;  // NULs
    Block inside;               // all other units
    Block starts;               // where names begin, if a pattern asks for it
    std::vector<std::uint64_t> units;

    const std::uint64_t* of(std::size_t number) const { return units.data() + number * kBlock; }
};

// One unit of a pattern or its end, and whether a star stands before it. Takes the places reached so far to
// those behind the unit; the end tells the NULs among them. What goes beyond the block is carried into the
// next one.
class Step {
public:
    enum class Kind : std::uint8_t { kAnyUnit, kUnit, kEnd };
    Step(Kind stepKind, bool behindStar, std::size_t unitNumber)
        : kind(stepKind), star(behindStar), number(unitNumber) {}

    bool carries() const { return (carry | starCarry) != 0; }
    // Answers whether any place is reached.
    bool take(Block& reached, const Places& places, std::size_t words) {
        const std::uint64_t* wanted = kind == Kind::kUnit ? places.of(number) : places.inside.data();
        std::uint64_t any = 0;
        std::uint64_t carried = carry;
        across(reached, places, words, [&](std::size_t w, std::uint64_t at) {
            const std::uint64_t taken = at & wanted[w];
            const std::uint64_t next = taken << 1 | carried;
            carried = taken >> (kPlaces - 1);
            any |= next;
            reached[w] = next;
        });
        carry = carried;
        return any != 0;
    }
    // For the end.
    void takeTo(std::uint64_t* matches, const Block& reached, const Places& places, std::size_t words) {
        across(reached, places, words,
               [&](std::size_t w, std::uint64_t at) { matches[w] |= at & places.ends[w]; });
    }

private:
    // Calls use(word, places) with the places reached and, behind a star, all up to the ends of their names.
    template <class Use>
    void across(const Block& reached, const Places& places, std::size_t words, Use use) {
        if (!star) {
            for (std::size_t w = 0; w < words; ++w) use(w, reached[w]);
            return;
        }
        unsigned char carried = starCarry;
        for (std::size_t w = 0; w < words; ++w) {
            const std::uint64_t at = reached[w];
            const std::uint64_t inside = places.inside[w];
            // A sum carries from each place to the end of its row of ones.
            unsigned long long sum = 0;
            carried = _addcarry_u64(carried, at & inside, inside, &sum);
            use(w, at | (sum ^ inside));
        }
        starCarry = carried;
    }

    Kind kind;
    bool star;
    std::size_t number;
    std::uint64_t carry = 0;  // 0 or 1
    unsigned char starCarry = 0;
};

class Walk {
public:
    // Enters the units that it needs in `units`.
    Walk(GlobUnits pattern, std::vector<std::uint16_t>& units) {
        bool star = false;
        for (const std::uint16_t unit : pattern) {
            if (unit == '*') {
                anywhere = anywhere || steps.empty();
                star = !steps.empty();
                continue;
            }
            const auto known = std::find(units.begin(), units.end(), unit);
            const auto number = static_cast<std::size_t>(known - units.begin());
            if (unit != '?' && known == units.end()) units.push_back(unit);
            steps.emplace_back(unit == '?' ? Step::Kind::kAnyUnit : Step::Kind::kUnit, star, number);
            star = false;
        }
        steps.emplace_back(Step::Kind::kEnd, star, 0);
    }

    bool asksForStarts() const { return !anywhere; }
    // Adds the NULs that are reached to `matches`.
    void run(const Places& places, std::size_t words, std::uint64_t* matches) {
        Block reached;
        if (anywhere) {
            std::fill_n(reached.begin(), words, ~std::uint64_t{0});
        } else {
            std::copy_n(places.starts.begin(), words, reached.begin());
        }
        std::size_t lastCarrying = 0;
        bool any = true;
        for (std::size_t i = 0; i < steps.size() && (any || i < carrying); ++i) {
            if (i + 1 == steps.size()) {
                steps[i].takeTo(matches, reached, places, words);
            } else {
                any = steps[i].take(reached, places, words);
            }
            if (steps[i].carries()) lastCarrying = i + 1;
        }
        carrying = lastCarrying;
    }

private:
    bool anywhere = false;  // begins with a star
    std::vector<Step> steps;
    std::size_t carrying = 0;  // behind the last step with a carry
};

}  // namespace

// What is carried from one block of the pool to the next.
class GlobSweep::Pass {
public:
    explicit Pass(std::span<const Glob> globs) {
        for (const Glob& glob : globs) walks.emplace_back(glob.units(), units);
        unitPlaces.emplace(units);
        startsAsked = std::any_of(walks.begin(), walks.end(), std::mem_fn(&Walk::asksForStarts));
        places.units.resize(units.size() * kBlock);
    }
    void run(const std::uint16_t* from, std::size_t words, std::uint64_t* endWords,
             std::uint64_t* matchWords) {
        places.ends = endWords;
        unitPlaces->find(from, words, endWords, places.units.data(), kBlock);
        for (std::size_t w = 0; w < words; ++w) {
            places.inside[w] = ~endWords[w];
            matchWords[w] = 0;
        }
        for (std::size_t w = 0; w < words && startsAsked; ++w) {
            places.starts[w] = endWords[w] << 1 | starting;
            starting = endWords[w] >> (kPlaces - 1);
        }
        for (Walk& walk : walks) walk.run(places, words, matchWords);
    }

private:
    std::vector<std::uint16_t> units;
    std::vector<Walk> walks;
    std::optional<UnitPlaces> unitPlaces;
    bool startsAsked = false;
    std::uint64_t starting = 1;
    Places places;
};

GlobSweep::GlobSweep(std::span<const Glob> globs, const NamePool& pool)
    : names(pool), pass(std::make_unique<Pass>(globs)) {
    ends.resizeUnwritten(names.size() / kPlaces + 1);
    matches.resizeUnwritten(ends.size());
}

GlobSweep::~GlobSweep() = default;

void GlobSweep::sweepOn(std::size_t place) {
    const std::size_t full = names.size() / kPlaces;
    while (swept <= place / kPlaces && swept < full) {
        const std::size_t words = std::min(kBlock, full - swept);
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

bool GlobSweep::begins(std::size_t offset) const { return offset == 0 || bitAt(ends, offset - 1) != 0; }

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
        const std::uint64_t known = begins(offset) ? bitAt(ends, end) : 0;
        answers.matching |= (bitAt(matches, end) & known) << i;
        answers.unknown |= (known ^ 1) << i;
    }
    return answers;
}

}  // namespace varnelo
