#pragma once

#include <condition_variable>
#include <cstddef>
#include <list>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace varnelo {

class IconTexture;

// The pictures of the shell's icons by their index in the system image list: items that look alike share one.
// First in, first out, whatever is asked for: a hit does not move an entry. Whoever shows a picture holds it
// too, so what the cache drops stays on the screen. Any thread; no lock is held while a picture is made or
// destroyed.
template <class Picture>
class PictureCache {
public:
    static constexpr std::size_t kCapacity = 512;

    // The picture at `index`, or null.
    std::shared_ptr<Picture> find(int index) const {
        const std::lock_guard lock(mutex);
        return cached(index);
    }

    // The picture at `index`, made by `make` if it is not cached. Callers that miss the same index at once
    // wait for the first of them, so a picture is made once. Null, and nothing cached, when `make` gives
    // null; the next in line then tries again.
    template <class Make>
    std::shared_ptr<Picture> obtain(int index, Make make) {
        {
            std::unique_lock lock(mutex);
            made.wait(lock, [&] { return places.contains(index) || !inMaking.contains(index); });
            if (std::shared_ptr<Picture> hit = cached(index)) return hit;
            inMaking.insert(index);
        }
        const Turn turn{*this, index};
        std::shared_ptr<Picture> picture = make();
        if (picture) add(index, picture);
        return picture;
    }

    std::size_t size() const {
        const std::lock_guard lock(mutex);
        return entries.size();
    }

    void clear() {
        std::list<Entry> dropped;
        const std::lock_guard lock(mutex);
        places.clear();
        dropped.swap(entries);
    }

private:
    struct Entry {
        int index;
        std::shared_ptr<Picture> picture;
    };

    // One caller's turn at making a picture; ends also when making throws.
    struct Turn {
        PictureCache& cache;
        int index;
        ~Turn() {
            {
                const std::lock_guard lock(cache.mutex);
                cache.inMaking.erase(index);
            }
            cache.made.notify_all();
        }
    };

    std::shared_ptr<Picture> cached(int index) const {
        const auto place = places.find(index);
        return place == places.end() ? nullptr : place->second->picture;
    }

    void add(int index, const std::shared_ptr<Picture>& picture) {
        std::list<Entry> added{{index, picture}};
        std::list<Entry> dropped;  // ends after the lock
        const std::lock_guard lock(mutex);
        while (entries.size() >= kCapacity) {
            places.erase(entries.front().index);
            dropped.splice(dropped.end(), entries, entries.begin());
        }
        places.emplace(index, added.begin());
        entries.splice(entries.end(), added);
    }

    mutable std::mutex mutex;
    std::condition_variable made;
    // Guarded by mutex.
    std::list<Entry> entries;  // oldest first
    std::unordered_map<int, typename std::list<Entry>::iterator> places;
    std::unordered_set<int> inMaking;
};

using IconCache = PictureCache<IconTexture>;

}  // namespace varnelo
