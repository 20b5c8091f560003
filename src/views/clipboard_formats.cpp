#include "views/clipboard_formats.h"

#include "platform/binary_stream.h"

namespace varnelo {
namespace {

constexpr std::uint32_t kDropFilesHeaderBytes = 20;

}  // namespace

std::vector<std::uint8_t> dropFilesBlock(const std::vector<std::wstring>& paths) {
    BinaryWriter out;
    out.u32(kDropFilesHeaderBytes);
    out.i32(0);  // where the files were dropped: nowhere
    out.i32(0);
    out.u32(0);
    out.u32(1);  // wide strings
    for (const std::wstring& path : paths) {
        out.units(path);
        out.u16(0);
    }
    out.u16(0);
    return out.take();
}

std::vector<std::uint8_t> dropEffectBlock(DropEffect effect) {
    BinaryWriter out;
    out.u32(static_cast<std::uint32_t>(effect));
    return out.take();
}

DropEffect parseDropEffect(std::span<const std::uint8_t> block) {
    BinaryReader in(block);
    const auto moveBit = static_cast<std::uint32_t>(DropEffect::Move);
    return (in.u32() & moveBit) != 0 ? DropEffect::Move : DropEffect::Copy;
}

std::vector<std::uint8_t> shellIdListArrayBlock(const ShellIdListArray& array) {
    BinaryWriter out;
    const auto count = static_cast<std::uint32_t>(array.items.size());
    out.u32(count);
    std::uint32_t offset = 4 + 4 * (count + 1);
    out.u32(offset);
    offset += static_cast<std::uint32_t>(array.parent.bytes().size());
    for (const ItemIdList& item : array.items) {
        out.u32(offset);
        offset += static_cast<std::uint32_t>(item.bytes().size());
    }
    out.bytes(array.parent.bytes());
    for (const ItemIdList& item : array.items) out.bytes(item.bytes());
    return out.take();
}

std::optional<ShellIdListArray> parseShellIdListArray(std::span<const std::uint8_t> block) {
    BinaryReader in(block);
    const std::uint32_t count = in.u32();
    if (!in.good() || std::uint64_t{count} + 1 > in.remaining() / sizeof(std::uint32_t)) return std::nullopt;

    // Many offsets of one long list would need its length for each.
    std::size_t bytesLeft = block.size();
    const auto listAt = [&](std::uint32_t offset) -> std::optional<ItemIdList> {
        if (offset >= block.size()) return std::nullopt;
        auto list = ItemIdList::fromBytes(block.subspan(offset));
        if (!list || list->bytes().size() > bytesLeft) return std::nullopt;
        bytesLeft -= list->bytes().size();
        return list;
    };

    ShellIdListArray array;
    auto parent = listAt(in.u32());
    if (!parent) return std::nullopt;
    array.parent = std::move(*parent);
    for (std::uint32_t i = 0; i < count; ++i) {
        auto item = listAt(in.u32());
        if (!item) return std::nullopt;
        array.items.push_back(std::move(*item));
    }
    return array;
}

ShellIdListArray asChildrenOfFirst(const std::vector<ItemIdList>& items) {
    ShellIdListArray array;
    array.parent = items.front().parent();
    for (const ItemIdList& item : items) array.items.push_back(item.lastItem());
    return array;
}

}  // namespace varnelo
