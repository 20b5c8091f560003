#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <list>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace varnelo {

enum class PictureKind : std::uint8_t { Label, Header, Underline };

// Everything that the look of a picture of text depends on, beside the text itself.
struct PictureLook {
    PictureKind kind = PictureKind::Label;
    bool dragged = false;
    bool selected = false;
    float width = 0;  // of the layout, pixels; 0 where it does not matter

    bool operator==(const PictureLook&) const = default;
};

// What a picture covers, in whole pixels from the point that its text is placed by. Empty: nothing to show.
struct PictureExtent {
    int left = 0, top = 0;
    int width = 0, height = 0;

    bool empty() const { return width <= 0 || height <= 0; }
};

struct SlotSize {
    int width = 0, height = 0;
};

// Where a picture lies: at (x, y) of a page, with the size of its extent.
struct PicturePlace {
    PictureExtent extent;
    std::size_t page = 0;
    int x = 0, y = 0;
};

// The bookkeeping of pictures of text that were drawn once and are shown many times. They lie in equal slots
// on pages; a page holds slots of one size. The pictures beyond the bound that were not used for longest give
// their slots up, but never one that is used in the current frame. Belongs to one thread.
class PictureShelf {
public:
    static constexpr int kPageWidth = 1024;
    static constexpr int kPageHeight = 256;
    static constexpr std::size_t kMaxPictures = 512;

    struct Page {
        SlotSize slot;
        int columns = 0, rows = 0;
        std::size_t used = 0;   // slots taken; the page is empty, and may be dropped, at 0
        std::vector<int> free;  // slot numbers
        int width() const { return slot.width * columns; }
        int height() const { return slot.height * rows; }
    };

    void beginFrame() { ++frame; }

    // The place of a picture that was placed, or null. Allocates nothing. Valid until the next place().
    const PicturePlace* find(const PictureLook& look, std::wstring_view text);

    // A place for a new picture, in a slot that holds at least its extent. Its page may be new, or cut anew:
    // compare pageCount() and the page's size. An empty extent takes no slot and remembers that there is
    // nothing to show.
    const PicturePlace& place(const PictureLook& look, std::wstring_view text, const PictureExtent& extent,
                              SlotSize slot);

    std::size_t pageCount() const { return pages.size(); }
    const Page& page(std::size_t index) const { return pages[index]; }
    std::size_t pictureCount() const { return pictures.size(); }
    void clear();

private:
    struct Key {
        PictureLook look;
        std::wstring text;
    };
    struct KeyView {
        PictureLook look;
        std::wstring_view text;
    };
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(const Key& key) const { return of(key.look, key.text); }
        std::size_t operator()(const KeyView& key) const { return of(key.look, key.text); }
        static std::size_t of(const PictureLook& look, std::wstring_view text);
    };
    struct Equal {
        using is_transparent = void;
        template <class A, class B>
        bool operator()(const A& a, const B& b) const {
            return a.look == b.look && std::wstring_view(a.text) == std::wstring_view(b.text);
        }
    };
    struct Picture {
        PicturePlace place;
        int slot = -1;
        std::uint64_t lastFrame = 0;
        std::list<const Key*>::iterator order;
    };
    using Pictures = std::unordered_map<Key, Picture, Hash, Equal>;

    void makeRoom();
    void remove(Pictures::iterator picture);
    std::size_t pageWithRoom(SlotSize slot);
    void takeSlot(Picture& picture, SlotSize slot);

    Pictures pictures;
    std::list<const Key*> order;  // used longest ago first; the keys are those of `pictures`
    std::vector<Page> pages;
    std::uint64_t frame = 1;
};

}  // namespace varnelo
