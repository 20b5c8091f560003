#pragma once

// What volumes answer, byte by byte, as the layouts that Windows publishes have it.

#include <cstdint>
#include <string>
#include <vector>

namespace varnelo::test {

using Bytes = std::vector<std::uint8_t>;

// FILE_ATTRIBUTE_ARCHIVE and FILE_ATTRIBUTE_DIRECTORY
inline constexpr std::uint32_t kArchive = 0x20;
inline constexpr std::uint32_t kFolder = 0x10;

struct UsnFields {
    std::uint64_t frn = 0;
    std::uint64_t parentFrn = 5;
    std::wstring name;
    std::uint32_t attributes = kArchive;
    std::uint32_t reason = 0;
    std::uint64_t usn = 0;
};
// A record of version 2, as long as a multiple of eight.
Bytes usnRecord(const UsnFields& fields);
// A record of another version, with its own layout.
Bytes usnRecordOfVersion(std::uint16_t major, std::uint32_t length);
// The number to go on with, then the records.
Bytes usnAnswer(std::uint64_t next, const std::vector<Bytes>& records);

// One file record, attribute by attribute.
class MftRecordBytes {
public:
    MftRecordBytes();
    MftRecordBytes& standardInformation(std::uint64_t modified, std::uint64_t changed,
                                        std::uint32_t attributes);
    MftRecordBytes& attributeList(bool resident = true);
    MftRecordBytes& residentData(std::uint32_t size, const std::wstring& name = L"");
    MftRecordBytes& nonResidentData(std::uint64_t realSize, std::uint64_t firstCluster = 0,
                                    const std::wstring& name = L"");
    // So many bytes of an attribute of that type, which states `length`.
    MftRecordBytes& attribute(std::uint32_t type, std::uint32_t length, std::size_t bytes);
    // With the end mark, filled up to `size`.
    Bytes ended(std::size_t size = 1024) const;
    // As it is.
    const Bytes& unended() const { return bytes; }

private:
    void add(std::uint32_t type, bool resident, const std::wstring& name, Bytes head, const Bytes& value);

    Bytes bytes;
};

// NTFS_FILE_RECORD_OUTPUT_BUFFER
Bytes fileRecordOutput(std::uint64_t frn, const Bytes& record);
// NTFS_VOLUME_DATA_BUFFER
Bytes volumeDataBytes(std::uint32_t recordSize, std::uint64_t validDataSize);
// USN_JOURNAL_DATA
Bytes journalDataBytes(std::uint64_t id, std::uint64_t firstUsn, std::uint64_t nextUsn);

template <class Unsigned>
void put(Bytes& bytes, std::size_t offset, Unsigned value) {
    if (bytes.size() < offset + sizeof value) bytes.resize(offset + sizeof value);
    for (std::size_t i = 0; i < sizeof value; ++i) {
        bytes[offset + i] = static_cast<std::uint8_t>(value >> (8 * i));
    }
}

}  // namespace varnelo::test
