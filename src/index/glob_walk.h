#pragma once

#include <immintrin.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "index/glob.h"
#include "index/unit_places.h"

namespace varnelo {

// What is known of the places of a stretch of the pool, a bit for each.
struct SweptPlaces {
    // Words that are worked on together: they stay in the nearest cache.
    static constexpr std::size_t kWords = 32;
    using Block = std::array<std::uint64_t, kWords>;

    const std::uint64_t* ends;  // NULs
    Block inside;               // all other units
    Block starts;               // where names begin, if a pattern asks for it
    std::vector<std::uint64_t> units;

    const std::uint64_t* of(std::size_t number) const { return units.data() + number * kWords; }
};

// One unit of a pattern or its end, and whether a star stands before it. Takes the places reached so far to
// those behind the unit; the end tells the NULs among them. What goes beyond the block is carried into the
// next one.
class GlobStep {
public:
    enum class Kind : std::uint8_t { kAnyUnit, kUnit, kEnd };
    GlobStep(Kind stepKind, bool behindStar, std::size_t unitNumber)
        : kind(stepKind), star(behindStar), number(unitNumber) {}

    bool carries() const { return (carry | starCarry) != 0; }
    // Answers whether any place is reached.
    bool take(SweptPlaces::Block& reached, const SweptPlaces& places, std::size_t words) {
        const std::uint64_t* wanted = kind == Kind::kUnit ? places.of(number) : places.inside.data();
        std::uint64_t any = 0;
        std::uint64_t carried = carry;
        across(reached, places, words, [&](std::size_t w, std::uint64_t at) {
            const std::uint64_t taken = at & wanted[w];
            const std::uint64_t next = taken << 1 | carried;
            carried = taken >> (UnitPlaces::kPlacesInWord - 1);
            any |= next;
            reached[w] = next;
        });
        carry = carried;
        return any != 0;
    }
    // For the end.
    void takeTo(std::uint64_t* matches, const SweptPlaces::Block& reached, const SweptPlaces& places,
                std::size_t words) {
        across(reached, places, words,
               [&](std::size_t w, std::uint64_t at) { matches[w] |= at & places.ends[w]; });
    }

private:
    // Calls use(word, places) with the places reached and, behind a star, all up to the ends of their names.
    template <class Use>
    void across(const SweptPlaces::Block& reached, const SweptPlaces& places, std::size_t words, Use use) {
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

// The way of one pattern through the pool, stretch by stretch.
class GlobWalk {
public:
    // Enters the units that it needs in `units`.
    GlobWalk(GlobUnits pattern, std::vector<std::uint16_t>& units) {
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
            steps.emplace_back(unit == '?' ? GlobStep::Kind::kAnyUnit : GlobStep::Kind::kUnit, star, number);
            star = false;
        }
        steps.emplace_back(GlobStep::Kind::kEnd, star, 0);
    }

    bool asksForStarts() const { return !anywhere; }
    // Adds the NULs that are reached to `matches`.
    void run(const SweptPlaces& places, std::size_t words, std::uint64_t* matches) {
        SweptPlaces::Block reached;
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
    std::vector<GlobStep> steps;
    std::size_t carrying = 0;  // behind the last step with a carry
};

}  // namespace varnelo
