#include "index/list_proof.h"

#include <array>
#include <atomic>
#include <optional>

#include "index/flat_array.h"
#include "index/grams.h"
#include "index/in_stretches.h"

namespace varnelo {

namespace {

// The sums of the entries that records have; nothing when an entry is none of a record.
std::optional<FlatArray<std::uint64_t>> sumsOf(const std::array<const PostingMap*, 3>& maps,
                                               std::size_t records) {
    FlatArray<std::uint64_t> sums;
    sums.assign(records, 0);
    bool known = true;
    for (std::size_t i = 0; i < maps.size(); ++i) {
        maps[i]->forEachList([&known, records, units = i + 1, to = sums.data()](
                                 std::uint64_t key, const PostingSegment& segment) {
            const std::uint64_t weight = gramWeight(units, key);
            for (std::size_t at = 0; at < segment.count; ++at) {
                const std::uint32_t entry = segment.at(at);
                if (entry < records) {
                    to[entry] += weight;
                } else if (entry < kRemovedEntry) {
                    known = false;
                }
            }
        });
    }
    if (!known) return std::nullopt;
    return sums;
}

}  // namespace

bool listsFitNames(std::span<const FileRecord> records, const NamePool& names, const PostingMap& unigrams,
                   const PostingMap& bigrams, const PostingMap& trigrams) {
    const auto sums = sumsOf({&unigrams, &bigrams, &trigrams}, records.size());
    if (!sums) return false;
    const auto fits = [&](std::size_t i) {
        const FileRecord& record = records[i];
        if (record.deleted()) return (*sums)[i] == 0;
        return names.holds(record.nameOffset) && (*sums)[i] == gramSum(names.at(record.nameOffset));
    };
    std::atomic<bool> allFit = true;
    inStretches(records.size(), kRecordsInStretch, [&](std::size_t begin, std::size_t end) {
        while (begin < end && fits(begin)) ++begin;
        if (begin < end) allFit = false;
    });
    return allFit;
}

}  // namespace varnelo
