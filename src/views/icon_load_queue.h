#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

#include "views/icon_cell.h"

namespace varnelo {

// Carries loaded icons from the icon workers to the cells. A worker only ever touches this queue; the cells
// are changed by `deliver` alone, on the thread that owns them.
//
// A load remembers the index of its cell. A result that comes back after the list changed lands on the cell
// that took the index, or on none. `deliver` tells when such a result was among those that came in, so that
// the icons can be asked for again.
class IconLoadQueue {
public:
    struct Load {
        int index;
        std::uint64_t generation;
    };

    // Owner's thread: a load of this cell begins. Each is to be finished exactly once.
    Load begin(int index);
    // Any thread. Null: there is no picture, and the cell keeps what it has.
    void finish(const Load& load, std::shared_ptr<IconTexture> texture);
    // Owner's thread: cells were removed, moved or replaced, so that an index may mean another cell.
    void cellsShifted();
    // Owner's thread: the textures of all loads begun so far are worth nothing, as when the device is gone.
    // They are dropped when they come.
    void dropOpenLoads();

    enum class Delivery { Settled, Misplaced };
    // Owner's thread: gives each finished texture to the cell at its index and sets the cell's scale to 1; an
    // index out of range drops the texture. `Misplaced`, once, when the last open load has come in and one of
    // them was older than a shift of the cells.
    Delivery deliver(std::vector<IconCell>& cells);

private:
    struct Result {
        Load load;
        std::shared_ptr<IconTexture> texture;
    };

    std::mutex mutex;
    std::vector<Result> finished;  // guarded by mutex

    // Owner's thread only.
    std::vector<Result> taken;  // kept for its memory
    std::uint64_t generation = 0;
    std::uint64_t firstWorth = 0;  // results of older generations are dropped
    std::uint64_t open = 0;        // begun and not delivered
    bool misplaced = false;
};

}  // namespace varnelo
