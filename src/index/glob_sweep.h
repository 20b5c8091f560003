#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>

#include "index/flat_array.h"
#include "index/glob.h"
#include "index/name_pool.h"
#include "index/record_columns.h"

namespace varnelo {

// Patterns tried on everything in a pool, in one pass from some place on towards its end. The time is that of
// the units swept and of the patterns' lengths, whatever the names hold and however many of them match.
class GlobSweep {
public:
    static constexpr std::size_t kMostAtOnce = 64;

    // The names stay as they are meanwhile. The sweep begins at the name at `firstOffset`.
    GlobSweep(std::span<const Glob> globs, const NamePool& names, std::size_t firstOffset = 0);
    ~GlobSweep();

    // For names that are asked about together, a bit for each.
    struct Answers {
        std::uint64_t matching = 0;
        // The name lies before those that are swept. Or it does not begin behind a NUL, or does not end
        // before one: a damaged file has such. The sweep knows nothing of it.
        std::uint64_t unknown = 0;
    };
    // Of the kMostAtOnce records from `begin` on, or fewer, at least one. A name out of range does not match.
    // Sweeps as far as these names reach: best is to ask in the order in which they lie in the pool.
    Answers answersFor(const RecordColumns& columns, std::size_t begin);

private:
    class Pass;

    Answers answerEach(std::span<const std::uint32_t> offsets, const std::uint16_t* lengths);
    // Of kMostAtOnce names that lie one behind the other, up to the offset behind theirs; nothing when they
    // do not.
    std::optional<std::uint64_t> matchesInRow(const std::uint32_t* offsets, const std::uint16_t* lengths);
    bool begins(std::size_t offset) const;
    // Goes on until the place is known.
    void sweepTo(std::size_t place) {
        if (place / 64 >= swept) sweepOn(place);
    }
    void sweepOn(std::size_t place);

    const NamePool& names;
    std::unique_ptr<Pass> pass;
    std::size_t begun;  // the first word of these, and the one behind the last:
    std::size_t swept;
    // A bit for each place of the pool and the one behind it.
    FlatArray<std::uint64_t> ends;     // NULs
    FlatArray<std::uint64_t> matches;  // NULs behind names that match
};

}  // namespace varnelo
