#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "index/name_pool.h"
#include "index/record_columns.h"

namespace varnelo {

// Appends those of a row of records to a result whose names pass a test: test(offset in the pool). Names lie
// far apart: each is asked for from memory well before its turn.
template <class Test>
class NameFilter {
public:
    NameFilter(const RecordColumns& columns, const NamePool& namePool, std::vector<std::uint32_t>& result,
               Test nameTest)
        : offsets(columns.nameOffsets()), names(namePool), found(result), test(nameTest) {}

    // Looks at them now or later. They are those of records.
    void push(std::span<const std::uint32_t> ids) {
        while (!ids.empty()) {
            const std::size_t taken = std::min(ids.size(), waiting.size() - count);
            std::copy_n(ids.begin(), taken, waiting.begin() + count);
            count += taken;
            ids = ids.subspan(taken);
            if (count == waiting.size()) flush();
        }
    }
    void flush() {
        std::size_t kept = 0;
        for (std::size_t i = 0; i < count + 2 * kAhead; ++i) {
            if (i < count) __builtin_prefetch(&offsets[waiting[i]]);
            if (i >= 2 * kAhead) {
                // Written in any case, and kept when the test says so: no branch depends on it.
                const std::uint32_t id = waiting[i - 2 * kAhead];
                waiting[kept] = id;
                kept += test(ahead[i % kAhead]) ? 1 : 0;
            }
            if (i >= kAhead && i < count + kAhead) {
                const std::uint32_t offset = offsets[waiting[i - kAhead]];
                ahead[i % kAhead] = offset;
                if (!names.holds(offset)) continue;
                __builtin_prefetch(names.data() + offset);
                __builtin_prefetch(names.data() + offset + kLineUnits - 1);
            }
        }
        found.insert(found.end(), waiting.begin(), waiting.begin() + kept);
        count = 0;
    }

private:
    static constexpr std::size_t kAhead = 32;
    static constexpr std::size_t kLineUnits = 32;

    const FlatArray<std::uint32_t>& offsets;
    const NamePool& names;
    std::vector<std::uint32_t>& found;
    Test test;
    std::array<std::uint32_t, 1024> waiting;
    std::size_t count = 0;
    std::array<std::uint32_t, kAhead> ahead;  // the offsets of those whose names are on their way
};

}  // namespace varnelo
