// list_index IMAGE: scans the image as the drive C: and prints what the index then holds, a line a record
// with tabs between: reference number, parent's number, "live" or "pruned", "folder" or "file", size, time,
// attributes, and the path in hexadecimal digits, four for each UTF-16 unit.

#include <cinttypes>
#include <cstdio>
#include <string>

#include "index/ntfs_index.h"
#include "index/volume_scan.h"
#include "support/ntfs_image_volume.h"

int main(int argc, char** argv) {
    using namespace varnelo;
    const auto image = argc == 2 ? test::NtfsImage::open(argv[1]) : nullptr;
    if (!image) {
        std::fprintf(stderr, "usage: list_index IMAGE\n");
        return 2;
    }
    test::NtfsImageSource source(image);
    NTFSIndex index;
    if (!scanAllVolumes(index, source)) {
        std::fprintf(stderr, "list_index: the scan failed\n");
        return 1;
    }
    for (std::uint32_t i = 0; i < index.records().size(); ++i) {
        const FileRecord& record = index.records()[i];
        std::string path;
        for (const wchar_t unit : index.fullPath(record)) {
            char digits[5];
            std::snprintf(digits, sizeof digits, "%04x", static_cast<unsigned>(unit) & 0xFFFF);
            path += digits;
        }
        std::printf(
            "%" PRIu64 "\t%" PRIu64 "\t%s\t%s\t%" PRIu64 "\t%" PRIu64 "\t%" PRIu32 "\t%s\n",
            std::uint64_t{record.frn}, std::uint64_t{record.parentFrn}, record.deleted() ? "pruned" : "live",
            (record.flags & FileRecord::kDirectory) != 0 ? "folder" : "file", std::uint64_t{record.size},
            std::uint64_t{record.modified}, std::uint32_t{record.attributes}, path.c_str());
        // Forgets the path, so that no other's begins with it: each is to be built from the records.
        index.updateRecord(i, record.parentFrn, record.size, record.modified, record.attributes);
    }
    return 0;
}
