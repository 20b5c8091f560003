#include "views/grid_order.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace varnelo {
namespace {

constexpr double kSecondsPerDay = 86400;
constexpr double kForgottenAfterTimeouts = 6;
constexpr double kUsageTimeConstant = 2592000;  // 30 days in seconds
constexpr int kRankByUsage = 3;
constexpr std::int32_t kFree = -1;

struct PinnedCell {
    std::int32_t cell;
    int naturalPlace;
    std::int32_t slot;
    double weight;
};

FileMetaData* metaDataOf(const GridState& grid, std::int32_t cell) {
    return grid.cells[static_cast<std::size_t>(cell)].entry.metaData;
}

// Newest first; of the same age, the one that came first into the pane.
void sortNaturally(std::vector<std::int32_t>& order, const GridState& grid) {
    std::vector<std::pair<std::int64_t, std::int32_t>> keyed;
    keyed.reserve(order.size());
    for (const std::int32_t cell : order) {
        const FileMetaData* data = metaDataOf(grid, cell);
        keyed.emplace_back(data ? data->timestamp : 0, cell);
    }
    std::sort(keyed.begin(), keyed.end(), [](const auto& a, const auto& b) {
        return a.first != b.first ? a.first > b.first : a.second < b.second;
    });
    std::transform(keyed.begin(), keyed.end(), order.begin(), [](const auto& entry) { return entry.second; });
}

// 0 for a cell without a place. Erases a place that is too old.
double weightOf(FileMetaData* data, std::int64_t now, double timeoutDays) {
    if (!data || data->slotTime == 0) return 0;
    const double ageDays = (static_cast<double>(now) - static_cast<double>(data->slotTime)) / kSecondsPerDay;
    if (ageDays >= kForgottenAfterTimeouts * timeoutDays) {
        data->slot = -1;
        data->slotTime = 0;
        return 0;
    }
    return data->slot < 0 ? 0 : slotWeight(ageDays, timeoutDays);
}

int wantedPlace(const PinnedCell& pinned, int count) {
    const double place = std::round(pinned.naturalPlace * (1 - pinned.weight) + pinned.slot * pinned.weight);
    return static_cast<int>(std::clamp(place, 0.0, static_cast<double>(count - 1)));
}

// The free place nearest to `wanted`, the right one of two. There are never more cells than places.
std::size_t freePlaceNear(const std::vector<std::int32_t>& places, int wanted) {
    const int count = static_cast<int>(places.size());
    const auto isFree = [&](int place) {
        return place >= 0 && place < count && places[static_cast<std::size_t>(place)] == kFree;
    };
    for (int step = 0; step < count; ++step) {
        for (const int place : {wanted + step, wanted - step}) {
            if (isFree(place)) return static_cast<std::size_t>(place);
        }
    }
    return static_cast<std::size_t>(wanted);
}

std::vector<std::int32_t> orderOf(const IconGroup& group, const GridState& grid, std::int64_t now,
                                  double timeoutDays) {
    std::vector<std::int32_t> natural = group.cells;
    sortNaturally(natural, grid);

    std::vector<PinnedCell> pinned;
    std::vector<std::int32_t> unpinned;
    for (std::size_t i = 0; i < natural.size(); ++i) {
        FileMetaData* data = metaDataOf(grid, natural[i]);
        const double weight = weightOf(data, now, timeoutDays);
        if (weight > 0) {
            pinned.push_back({natural[i], static_cast<int>(i), data->slot, weight});
        } else {
            unpinned.push_back(natural[i]);
        }
    }
    if (pinned.empty()) return natural;

    // Of two that were stored for one place the better remembered chooses first.
    std::stable_sort(pinned.begin(), pinned.end(), [](const PinnedCell& a, const PinnedCell& b) {
        return a.slot != b.slot ? a.slot < b.slot : a.weight > b.weight;
    });
    const int count = static_cast<int>(natural.size());
    std::vector<std::int32_t> places(natural.size(), kFree);
    for (const PinnedCell& cell : pinned) places[freePlaceNear(places, wantedPlace(cell, count))] = cell.cell;
    auto next = unpinned.begin();
    for (std::int32_t& place : places) {
        if (place == kFree) place = *next++;
    }
    return places;
}

}  // namespace

double slotWeight(double ageDays, double timeoutDays) {
    if (ageDays <= timeoutDays) return 1;
    return std::exp(-std::log(2.0) * (ageDays - timeoutDays) / (2 * timeoutDays));
}

void reorderGroupCells(GridState& grid, std::int64_t now, double timeoutDays) {
    for (IconGroup& group : grid.groups) {
        if (group.cells.size() >= 2) group.cells = orderOf(group, grid, now, timeoutDays);
    }
}

double usageScore(const IconGroup& group, const std::vector<IconCell>& cells, std::int64_t now) {
    double score = 0;
    for (const std::int32_t cell : group.cells) {
        const FileMetaData* data = cells[static_cast<std::size_t>(cell)].entry.metaData;
        if (!data || data->timestamp == 0) continue;
        const double age = static_cast<double>(now) - static_cast<double>(data->timestamp);
        score += std::exp(-age / kUsageTimeConstant);
    }
    return score;
}

void sortGroups(GridState& grid, std::int64_t now) {
    struct Keyed {
        int rank;
        double score;
        IconGroup group;
    };
    std::vector<Keyed> keyed;
    keyed.reserve(grid.groups.size());
    for (IconGroup& group : grid.groups) {
        const int rank = group.id ? desktopGroupRank(*group.id) : kRankByUsage;
        const double score = rank == kRankByUsage ? usageScore(group, grid.cells, now) : 0;
        keyed.push_back({rank, score, std::move(group)});
    }
    std::stable_sort(keyed.begin(), keyed.end(), [](const Keyed& a, const Keyed& b) {
        return a.rank != b.rank ? a.rank < b.rank : a.score > b.score;
    });
    std::transform(keyed.begin(), keyed.end(), grid.groups.begin(),
                   [](Keyed& entry) { return std::move(entry.group); });
}

void stampSlotsOfDragged(GridState& grid, std::int64_t now) {
    for (IconGroup& group : grid.groups) {
        const bool holdsDragged = std::any_of(group.cells.begin(), group.cells.end(), [&](std::int32_t cell) {
            return grid.cells[static_cast<std::size_t>(cell)].dragged;
        });
        if (!holdsDragged) continue;
        std::int32_t place = 0;
        for (const std::int32_t cell : group.cells) {
            if (FileMetaData* data = metaDataOf(grid, cell)) {
                data->slot = place;
                data->slotTime = now;
            }
            ++place;
        }
    }
}

}  // namespace varnelo
