#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

struct _ntfs_inode;
struct _ntfs_volume;

namespace varnelo::tools {

// Changes an NTFS image without mounting it. Whatever fails ends the program with a line on stderr: half an
// image is of no use.
class ImageWriter {
public:
    // A file or folder by its reference number, with the sequence number in it.
    using Ref = std::uint64_t;
    // UTF-16 units as NTFS has them: lone surrogates are fine.
    using Name = std::u16string_view;
    static constexpr Ref kRoot = 5;

    enum Attribute : std::uint32_t {
        kReadOnly = 0x1,
        kHidden = 0x2,
        kSystem = 0x4,
        kArchive = 0x20,
        kTemporary = 0x100,
        kCompressed = 0x800,
        kOffline = 0x1000,
        kNotIndexed = 0x2000,
    };

    explicit ImageWriter(const std::string& path);
    ImageWriter(const ImageWriter&) = delete;
    ImageWriter& operator=(const ImageWriter&) = delete;
    ~ImageWriter();

    Ref folder(Ref parent, Name name);
    // With so many bytes of data, which do not repeat and so resist compression. Without any the data
    // attribute is there, and empty.
    Ref file(Ref parent, Name name, std::size_t bytes = 0);
    // At the end of the stream of that name; the unnamed one is the file's data. Makes the stream.
    void append(Ref file, Name stream, std::span<const std::uint8_t> data);
    void append(Ref file, Name stream, std::size_t bytes);
    // Appends until the volume is full.
    void fill(Ref file);
    // What is new reads as zero and takes no space.
    void setSize(Ref file, std::uint64_t bytes);
    void removeData(Ref file);
    void link(Ref file, Ref parent, Name name);
    // The file's one name becomes one of the WIN32 kind, with this one of the DOS kind beside it.
    void dosName(Ref file, Ref parent, const std::string& name);
    // Makes an empty folder lead to another, "C:\\data", by a reparse point.
    void leadTo(Ref folder, Name target);
    // A folder that is compressed hands it down to what is made in it.
    void setAttributes(Ref file, std::uint32_t attributes);
    // The end of every change of a file, which all set times themselves. FILETIME units.
    void setTimes(Ref file, std::uint64_t modified);
    void remove(Ref file, Ref parent, Name name);

    // What the library takes care not to leave behind, and Windows leaves: the copies of size and attributes
    // that stand with a name keep what they once were.
    void staleName(Ref file, std::uint64_t bytes, std::uint32_t attributes);
    // Cuts the file's data attribute, which has at least four runs in its base record, into two pieces there.
    void splitData(Ref file);
    // Where a file's data begins, for allocateFrom(). The data is not in the record.
    std::int64_t firstCluster(Ref file);
    // From here on new clusters are taken from there on, gaps first.
    void allocateFrom(std::int64_t cluster);

private:
    _ntfs_volume* volume;
};

// Bytes that differ with the seed and do not compress.
std::vector<std::uint8_t> noise(std::size_t count, std::uint64_t seed);

}  // namespace varnelo::tools
