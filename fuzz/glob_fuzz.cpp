// Any pattern on any names: the walk by two pointers agrees with a table of all prefixes, with what a Glob
// tells beforehand, and with a sweep over the pool that the names lie in. The pattern as a text is found in
// the names where a plain search finds it.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <vector>

#include "index/glob.h"
#include "index/glob_sweep.h"
#include "index/grams.h"
#include "index/name_needle.h"

namespace {

using Units = std::vector<std::uint16_t>;

// reach[j] says whether the pattern so far matches the first j units of the name.
bool tableMatches(const Units& pattern, const Units& name) {
    std::vector<char> reach(name.size() + 1, 0);
    reach[0] = 1;
    for (const std::uint16_t unit : pattern) {
        std::vector<char> next(name.size() + 1, 0);
        if (unit == '*') {
            char any = 0;
            for (std::size_t j = 0; j <= name.size(); ++j) next[j] = any = static_cast<char>(any | reach[j]);
        } else {
            for (std::size_t j = 0; j < name.size(); ++j) {
                next[j + 1] =
                    static_cast<char>(reach[j] && (unit == '?' || unit == varnelo::lowerNameUnit(name[j])));
            }
        }
        reach = next;
    }
    return reach[name.size()] != 0;
}

// Bytes behind ASCII stand for units whose low byte is one of ASCII.
Units unitsOf(const std::uint8_t* begin, const std::uint8_t* end) {
    Units units(begin, end);
    for (std::uint16_t& unit : units) {
        if (unit >= 0x80) unit = static_cast<std::uint16_t>((unit < 0xC0 ? 0x100 : 0xFF00) | (unit & 0x7F));
    }
    return units;
}

void expect(bool right, const char* what) {
    if (right) return;
    std::fprintf(stderr, "broken: %s\n", what);
    std::abort();
}

}  // namespace

// The first byte is the pattern's length; what follows the pattern is a pool. Small letters of few kinds make
// matches likely.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::size_t patternSize = std::min<std::size_t>(data[0], size - 1);
    const Units pattern = unitsOf(data + 1, data + 1 + patternSize);
    const Units units = unitsOf(data + 1 + patternSize, data + size);
    varnelo::NamePool pool;
    std::copy(units.begin(), units.end(), pool.beginStored(units.size()));
    varnelo::RecordColumns columns;
    for (std::uint32_t at = 0; at <= units.size(); ++at) {
        varnelo::FileRecord record;
        record.nameOffset = at;
        // Names in a row first, then some that begin anywhere.
        if (at == 0 || units[at - 1] == 0) columns.set(columns.size(), record, pool);
    }
    for (std::uint32_t at = 0; at <= units.size(); at += 7) {
        varnelo::FileRecord record;
        record.nameOffset = at;
        columns.set(columns.size(), record, pool);
    }

    const varnelo::Glob glob(pattern);
    varnelo::GlobSweep sweep(std::span(&glob, 1), pool);
    Units text = pattern;
    std::transform(text.begin(), text.end(), text.begin(), varnelo::lowerNameUnit);
    const varnelo::NameNeedle needle(text, pool);
    for (std::size_t begin = 0; begin < columns.size(); begin += varnelo::GlobSweep::kMostAtOnce) {
        const auto answers = sweep.answersFor(columns, begin);
        for (std::size_t i = begin; i < std::min(columns.size(), begin + varnelo::GlobSweep::kMostAtOnce);
             ++i) {
            const std::uint32_t offset = columns.nameOffsets()[i];
            const varnelo::NameUnits pooled = pool.at(offset);
            const Units name(pooled.begin(), pooled.end());
            const bool expected = tableMatches(pattern, name);
            expect(varnelo::globMatches(pattern, name) == expected, "the walk");
            expect(glob.matches(name) == expected, "what is told beforehand");
            const bool swept = (answers.matching >> (i - begin) & 1) != 0;
            const bool unknown = (answers.unknown >> (i - begin) & 1) != 0;
            expect(unknown ? !swept : swept == (expected && pool.holds(offset)), "the sweep");
            if (text.size() < 2) continue;
            const bool held = std::search(name.begin(), name.end(), text.begin(), text.end(),
                                          [](std::uint16_t unit, std::uint16_t wanted) {
                                              return varnelo::lowerNameUnit(unit) == wanted;
                                          }) != name.end();
            expect(needle.isInNameAt(offset) == held, "the needle");
        }
    }
    return 0;
}
