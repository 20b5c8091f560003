#include "image_writer.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "ntfs_library.h"

namespace varnelo::tools {
namespace {

char lastWord[200];  // of the library

// Much of what the library complains about is no fault here: a volume is filled until nothing fits.
int keepWord(const char*, const char*, int, u32, void*, const char* format, va_list values) {
    return std::vsnprintf(lastWord, sizeof lastWord, format, values);
}

[[noreturn]] void die(const char* what) {
    std::fprintf(stderr, "make_image: %s: %s; %s\n", what, std::strerror(errno), lastWord);
    std::exit(1);
}

void require(bool worked, const char* what) {
    if (!worked) die(what);
}

struct CloseInode {
    void operator()(ntfs_inode* inode) const { require(ntfs_inode_close(inode) == 0, "close a file"); }
};
using Inode = std::unique_ptr<ntfs_inode, CloseInode>;

struct CloseAttribute {
    void operator()(ntfs_attr* attribute) const { ntfs_attr_close(attribute); }
};
using OpenAttribute = std::unique_ptr<ntfs_attr, CloseAttribute>;

struct PutSearch {
    void operator()(ntfs_attr_search_ctx* search) const { ntfs_attr_put_search_ctx(search); }
};
using Search = std::unique_ptr<ntfs_attr_search_ctx, PutSearch>;

Inode open(ntfs_volume* volume, ImageWriter::Ref ref) {
    Inode inode(ntfs_inode_open(volume, ref & 0xFFFFFFFFFFFF));
    require(inode != nullptr, "open a file");
    return inode;
}

// The library takes names that it may write to, and never does.
ntfschar* units(ImageWriter::Name name) {
    return reinterpret_cast<ntfschar*>(const_cast<char16_t*>(name.data()));
}

std::uint8_t length(ImageWriter::Name name) { return static_cast<std::uint8_t>(name.size()); }

ImageWriter::Ref refOf(const ntfs_inode* inode) {
    return inode->mft_no | std::uint64_t{le16_to_cpu(inode->mrec->sequence_number)} << 48;
}

OpenAttribute openStream(ntfs_inode* inode, ImageWriter::Name stream) {
    ntfschar* name = stream.empty() ? AT_UNNAMED : units(stream);
    if (ntfs_attr_exist(inode, AT_DATA, name, length(stream)) == 0)
        require(ntfs_attr_add(inode, AT_DATA, name, length(stream), nullptr, 0) == 0, "add a stream");
    OpenAttribute data(ntfs_attr_open(inode, AT_DATA, name, length(stream)));
    require(data != nullptr, "open a stream");
    return data;
}

Search findAttribute(ntfs_inode* inode, ATTR_TYPES type) {
    Search search(ntfs_attr_get_search_ctx(inode, nullptr));
    require(search != nullptr &&
                ntfs_attr_lookup(type, AT_UNNAMED, 0, CASE_SENSITIVE, 0, nullptr, 0, search.get()) == 0,
            "find an attribute");
    return search;
}

// The runs of [first, last) with the element that ends a list.
std::vector<runlist_element> runsBetween(const runlist_element* runs, VCN first, VCN last) {
    std::vector<runlist_element> part;
    for (; runs->length != 0; ++runs)
        if (runs->vcn >= first && runs->vcn < last) part.push_back(*runs);
    part.push_back({last, LCN_ENOENT, 0});
    return part;
}

std::vector<u8> mappingPairs(const ntfs_volume* volume, const std::vector<runlist_element>& runs) {
    std::vector<u8> pairs(16 * runs.size());
    const VCN first = runs.front().vcn;
    const int size =
        ntfs_get_size_for_mapping_pairs(volume, runs.data(), first, static_cast<int>(pairs.size()));
    require(
        size > 0 && ntfs_mapping_pairs_build(volume, pairs.data(), size, runs.data(), first, nullptr) == 0,
        "encode runs");
    pairs.resize(static_cast<std::size_t>(size));
    return pairs;
}

}  // namespace

std::vector<std::uint8_t> noise(std::size_t count, std::uint64_t seed) {
    std::vector<std::uint8_t> bytes(count);
    std::uint64_t state = seed * 0x9E3779B97F4A7C15 + 1;
    for (std::uint8_t& byte : bytes) {
        state ^= state << 13;
        state ^= state >> 7;
        state ^= state << 17;
        byte = static_cast<std::uint8_t>(state >> 24);
    }
    return bytes;
}

ImageWriter::ImageWriter(const std::string& path) {
    ntfs_log_set_handler(keepWord);
    volume = ntfs_mount(path.c_str(), 0);
    require(volume != nullptr, "open the image");
    require(ntfs_volume_get_free_space(volume) == 0, "count what is free");
    NVolSetCompression(volume);
    // Metadata can be found by name like everything else.
    require(ntfs_set_shown_files(volume, TRUE, TRUE, FALSE) == 0, "show metadata");
}

ImageWriter::~ImageWriter() { require(ntfs_umount(volume, FALSE) == 0, "close the image"); }

ImageWriter::Ref ImageWriter::folder(Ref parent, Name name) {
    const Inode in = open(volume, parent);
    const Inode made(ntfs_create(in.get(), 0, units(name), length(name), S_IFDIR));
    require(made != nullptr, "make a folder");
    return refOf(made.get());
}

ImageWriter::Ref ImageWriter::file(Ref parent, Name name, std::size_t bytes) {
    Ref ref = 0;
    {
        const Inode in = open(volume, parent);
        const Inode made(ntfs_create(in.get(), 0, units(name), length(name), S_IFREG));
        require(made != nullptr, "make a file");
        ref = refOf(made.get());
    }
    if (bytes != 0) append(ref, u"", bytes);
    return ref;
}

void ImageWriter::append(Ref file, Name stream, std::span<const std::uint8_t> data) {
    const Inode inode = open(volume, file);
    const OpenAttribute to = openStream(inode.get(), stream);
    const auto count = static_cast<s64>(data.size());
    require(ntfs_attr_pwrite(to.get(), to->data_size, count, data.data()) == count, "write data");
    if (NAttrCompressed(to.get())) require(ntfs_attr_pclose(to.get()) == 0, "end compressed data");
}

void ImageWriter::append(Ref file, Name stream, std::size_t bytes) {
    append(file, stream, noise(bytes, file + stream.size()));
}

void ImageWriter::fill(Ref file) {
    const Inode inode = open(volume, file);
    const OpenAttribute to = openStream(inode.get(), u"");
    for (std::size_t bytes = 0x10000; bytes >= volume->cluster_size;) {
        const std::vector<std::uint8_t> data = noise(bytes, 1);
        const s64 wrote = ntfs_attr_pwrite(to.get(), to->data_size, static_cast<s64>(bytes), data.data());
        if (wrote != static_cast<s64>(bytes)) bytes /= 2;
    }
}

void ImageWriter::setSize(Ref file, std::uint64_t bytes) {
    const Inode inode = open(volume, file);
    const OpenAttribute data = openStream(inode.get(), u"");
    require(ntfs_attr_truncate(data.get(), static_cast<s64>(bytes)) == 0, "set a size");
}

void ImageWriter::removeData(Ref file) {
    const Inode inode = open(volume, file);
    require(ntfs_attr_remove(inode.get(), AT_DATA, AT_UNNAMED, 0) == 0, "remove the data");
}

void ImageWriter::link(Ref file, Ref parent, Name name) {
    const Inode inode = open(volume, file);
    const Inode in = open(volume, parent);
    require(ntfs_link(inode.get(), in.get(), units(name), length(name)) == 0, "link a file");
}

void ImageWriter::dosName(Ref file, Ref parent, const std::string& name) {
    Inode inode = open(volume, file);
    Inode in = open(volume, parent);
    // The call closes both.
    require(ntfs_set_ntfs_dos_name(inode.release(), in.release(), name.data(), name.size(), 0) == 0,
            "give a DOS name");
}

void ImageWriter::leadTo(Ref folder, Name target) {
    const std::u16string path = u"\\??\\" + std::u16string(target);
    const std::size_t pathBytes = 2 * path.size(), targetBytes = 2 * target.size();
    std::string value;
    const auto add = [&value](std::size_t number, std::size_t width) {
        for (std::size_t i = 0; i < width; ++i) value += static_cast<char>(number >> (8 * i));
    };
    // The tag, the length of what follows, and then of the path to go and of the one to show: offset, length.
    add(le32_to_cpu(IO_REPARSE_TAG_MOUNT_POINT), 4);
    add(8 + pathBytes + 2 + targetBytes + 2, 4);
    add(0, 2);
    add(pathBytes, 2);
    add(pathBytes + 2, 2);
    add(targetBytes, 2);
    for (const char16_t unit : path + u'\0' + std::u16string(target) + u'\0') add(unit, 2);
    const Inode inode = open(volume, folder);
    require(ntfs_set_ntfs_reparse_data(inode.get(), value.data(), value.size(), 0) == 0,
            "set a reparse point");
}

void ImageWriter::setAttributes(Ref file, std::uint32_t attributes) {
    const Inode inode = open(volume, file);
    const le32 value = cpu_to_le32(attributes);
    require(ntfs_set_ntfs_attrib(inode.get(), reinterpret_cast<const char*>(&value), sizeof value, 0) == 0,
            "set attributes");
}

void ImageWriter::setTimes(Ref file, std::uint64_t modified) {
    const Inode inode = open(volume, file);
    constexpr std::uint64_t kSecond = 10'000'000;
    // Creation, change of the data, access. The change of the record is set by the library itself, to now.
    const std::uint64_t times[] = {modified - 9 * kSecond, modified, modified + 3 * kSecond};
    require(ntfs_inode_set_times(inode.get(), reinterpret_cast<const char*>(times), sizeof times, 0) == 0,
            "set times");
}

void ImageWriter::remove(Ref file, Ref parent, Name name) {
    Inode inode = open(volume, file);
    Inode in = open(volume, parent);
    // The call closes both.
    require(ntfs_delete(volume, nullptr, inode.release(), in.release(), units(name), length(name)) == 0,
            "delete a file");
}

void ImageWriter::staleName(Ref file, std::uint64_t bytes, std::uint32_t attributes) {
    const Inode inode = open(volume, file);
    const Search search = findAttribute(inode.get(), AT_FILE_NAME);
    const ATTR_RECORD* attribute = search->attr;
    auto* name = reinterpret_cast<FILE_NAME_ATTR*>(reinterpret_cast<u8*>(search->attr) +
                                                   le16_to_cpu(attribute->value_offset));
    name->data_size = cpu_to_sle64(static_cast<s64>(bytes));
    name->allocated_size = name->data_size;
    name->file_attributes = static_cast<FILE_ATTR_FLAGS>(cpu_to_le32(attributes));
    ntfs_inode_mark_dirty(search->ntfs_ino);
}

void ImageWriter::splitData(Ref file) {
    const Inode inode = open(volume, file);
    const OpenAttribute data = openStream(inode.get(), u"");
    require(ntfs_attr_map_whole_runlist(data.get()) == 0, "read runs");
    require(NInoAttrList(inode.get()) || ntfs_inode_add_attrlist(inode.get()) == 0, "add an attribute list");

    std::vector<runlist_element> all = runsBetween(data->rl, 0, data->allocated_size / volume->cluster_size);
    errno = EINVAL;
    require(all.size() > 4, "split data of fewer than four runs");
    const VCN cut = all[all.size() / 2].vcn;
    const VCN end = all.back().vcn;
    const std::vector<u8> front = mappingPairs(volume, runsBetween(data->rl, 0, cut));
    const std::vector<u8> back = mappingPairs(volume, runsBetween(data->rl, cut, end));

    const Search search = findAttribute(inode.get(), AT_DATA);
    require(search->ntfs_ino == inode.get(), "find the data in the base record");
    MFT_RECORD* record = inode->mrec;
    ATTR_RECORD* first = search->attr;
    const u32 pairsAt = le16_to_cpu(first->mapping_pairs_offset);
    const auto aligned = [](std::size_t bytes) { return static_cast<u32>((bytes + 7) & ~std::size_t{7}); };
    require(ntfs_attr_record_resize(record, first, aligned(pairsAt + front.size())) == 0,
            "shorten an attribute");
    std::memcpy(reinterpret_cast<u8*>(first) + pairsAt, front.data(), front.size());
    first->highest_vcn = cpu_to_sle64(cut - 1);

    u8* place = reinterpret_cast<u8*>(first) + le32_to_cpu(first->length);
    constexpr u32 kHeader = 64;
    const u32 size = aligned(kHeader + back.size());
    require(ntfs_make_room_for_attr(record, place, size) == 0, "make room for an attribute");
    auto* second = reinterpret_cast<ATTR_RECORD*>(place);
    std::memset(place, 0, size);
    second->type = AT_DATA;
    second->length = cpu_to_le32(size);
    second->non_resident = 1;
    second->flags = first->flags;
    second->instance = record->next_attr_instance;
    record->next_attr_instance = cpu_to_le16(static_cast<u16>(le16_to_cpu(record->next_attr_instance) + 1));
    second->lowest_vcn = cpu_to_sle64(cut);
    second->highest_vcn = cpu_to_sle64(end - 1);
    second->name_offset = cpu_to_le16(kHeader);
    second->mapping_pairs_offset = cpu_to_le16(kHeader);
    std::memcpy(place + kHeader, back.data(), back.size());
    require(ntfs_attrlist_entry_add(inode.get(), second) == 0, "list an attribute");
    ntfs_inode_mark_dirty(inode.get());
}

std::int64_t ImageWriter::firstCluster(Ref file) {
    const Inode inode = open(volume, file);
    const OpenAttribute data = openStream(inode.get(), u"");
    const LCN cluster = ntfs_attr_vcn_to_lcn(data.get(), 0);
    require(cluster > 0, "find a file's first cluster");
    return cluster;
}

void ImageWriter::allocateFrom(std::int64_t cluster) {
    volume->data1_zone_pos = cluster;
    volume->full_zones = 0;
}

}  // namespace varnelo::tools
