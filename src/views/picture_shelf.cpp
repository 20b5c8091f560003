#include "views/picture_shelf.h"

#include <algorithm>

namespace varnelo {

std::size_t PictureShelf::Hash::of(const PictureLook& look, std::wstring_view text) {
    const std::size_t bits =
        static_cast<std::size_t>(look.kind) | (look.dragged ? 4U : 0U) | (look.selected ? 8U : 0U);
    return std::hash<std::wstring_view>()(text) ^ ((bits + 1) * 0x9E3779B97F4A7C15ULL) ^
           (std::hash<float>()(look.width) << 1);
}

const PicturePlace* PictureShelf::find(const PictureLook& look, std::wstring_view text) {
    const auto found = pictures.find(KeyView{look, text});
    if (found == pictures.end()) return nullptr;
    Picture& picture = found->second;
    picture.lastFrame = frame;
    order.splice(order.end(), order, picture.order);
    return &picture.place;
}

const PicturePlace& PictureShelf::place(const PictureLook& look, std::wstring_view text,
                                        const PictureExtent& extent, SlotSize slot) {
    if (const auto known = pictures.find(KeyView{look, text}); known != pictures.end()) remove(known);
    makeRoom();
    const auto added = pictures.emplace(Key{look, std::wstring(text)}, Picture{}).first;
    Picture& picture = added->second;
    picture.lastFrame = frame;
    picture.order = order.insert(order.end(), &added->first);
    picture.place.extent = extent;
    if (!extent.empty()) takeSlot(picture, slot);
    return picture.place;
}

void PictureShelf::clear() {
    pictures.clear();
    order.clear();
    pages.clear();
}

void PictureShelf::makeRoom() {
    while (pictures.size() >= kMaxPictures) {
        const auto oldest = pictures.find(*order.front());
        if (oldest->second.lastFrame == frame) return;
        remove(oldest);
    }
}

void PictureShelf::remove(Pictures::iterator picture) {
    const Picture& old = picture->second;
    if (old.slot >= 0) {
        Page& page = pages[old.place.page];
        page.free.push_back(old.slot);
        --page.used;
    }
    order.erase(old.order);
    pictures.erase(picture);
}

// A page with such slots; an empty page of another size is cut anew before one more is made.
std::size_t PictureShelf::pageWithRoom(SlotSize slot) {
    const auto fits = [&](const Page& page) {
        return page.slot.width == slot.width && page.slot.height == slot.height && !page.free.empty();
    };
    auto page = std::find_if(pages.begin(), pages.end(), fits);
    if (page != pages.end()) return static_cast<std::size_t>(page - pages.begin());

    page =
        std::find_if(pages.begin(), pages.end(), [](const Page& candidate) { return candidate.used == 0; });
    if (page == pages.end()) page = pages.emplace(pages.end());
    page->slot = slot;
    page->columns = std::max(1, kPageWidth / slot.width);
    page->rows = std::max(1, kPageHeight / slot.height);
    page->free.clear();
    for (int number = page->columns * page->rows - 1; number >= 0; --number) page->free.push_back(number);
    return static_cast<std::size_t>(page - pages.begin());
}

void PictureShelf::takeSlot(Picture& picture, SlotSize slot) {
    slot.width = std::max(slot.width, picture.place.extent.width);
    slot.height = std::max(slot.height, picture.place.extent.height);
    const std::size_t index = pageWithRoom(slot);
    Page& page = pages[index];
    picture.slot = page.free.back();
    page.free.pop_back();
    ++page.used;
    picture.place.page = index;
    picture.place.x = picture.slot % page.columns * slot.width;
    picture.place.y = picture.slot / page.columns * slot.height;
}

}  // namespace varnelo
