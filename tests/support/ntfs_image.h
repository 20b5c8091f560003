#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "support/ntfs_attribute.h"

namespace varnelo::test {

// A volume in a file, as its bytes: where its table of files lies, and each record of it. Never changes once
// it is opened, so that any thread may read it.
class NtfsImage {
public:
    // Whether records are given as the file system means them, or as the sectors hold them, where the last
    // two bytes of each stand elsewhere in the record.
    enum class FixUps { Undone, Left };

    struct Geometry {
        std::uint64_t serialNumber = 0;
        std::uint64_t sectors = 0;
        std::uint64_t tableCluster = 0;   // where the table of files begins
        std::uint64_t mirrorCluster = 0;  // and the copy of its first records
        std::uint32_t sectorBytes = 0;
        std::uint32_t clusterBytes = 0;
        std::uint32_t recordBytes = 0;
    };

    // One of those that tools/ntfs_images.sh makes, "plain", read once in a process. Throws
    // std::runtime_error when it is not there: a test that needs it fails.
    static std::shared_ptr<const NtfsImage> made(const std::string& name);
    // Null when the file cannot be read, or is no NTFS volume.
    static std::shared_ptr<const NtfsImage> open(const std::string& path);

    const Geometry& geometry() const { return shape; }
    std::uint64_t recordCount() const { return rawTable.size() / shape.recordBytes; }
    // Of this number. Empty when there is none, and with fix-ups undone also when it is no record or a sector
    // of it was not written with the others.
    std::span<const std::uint8_t> record(std::uint64_t number, FixUps fixUps = FixUps::Undone) const;
    bool inUse(std::uint64_t number) const;
    // Whether the table's own bitmap says so.
    bool markedInUse(std::uint64_t number) const;
    // In use, and no further record of another file.
    bool isFile(std::uint64_t number) const;
    // The reference number with which the record is spoken of now.
    std::uint64_t reference(std::uint64_t number) const;
    // Those of the record and of the further ones that its attribute list names, in the list's order.
    std::vector<NtfsAttribute> allAttributes(std::uint64_t number) const;
    // The size of the unnamed data, wherever it is; 0 without any.
    std::uint64_t dataSize(std::uint64_t number) const;
    // The data of an attribute in one piece.
    std::vector<std::uint8_t> contentOf(const NtfsAttribute& attribute) const;

private:
    NtfsImage() = default;
    bool readBootSector();
    bool readTable();
    void undoFixUps();
    void appendClusters(const NtfsAttribute& piece, std::vector<std::uint8_t>& to) const;
    std::vector<std::uint8_t> bytesAt(std::uint64_t offset, std::uint64_t count) const;

    std::string path;
    Geometry shape;
    std::vector<std::uint8_t> rawTable;
    std::vector<std::uint8_t> table;
    std::vector<bool> sound;  // a record whose fix-ups could be undone
    std::vector<std::uint8_t> bitmap;
};

}  // namespace varnelo::test
