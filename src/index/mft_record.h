#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace varnelo {

// Which time of the standard information is taken. A scan takes that of the last write, the monitor that of
// the last change of the record, so that the two are not comparable for one file.
enum class RecordTime : std::size_t { LastWrite = 8, RecordChange = 16 };

// What the attributes of one record of a volume's table tell.
struct MftRecordFacts {
    bool hasAttributeList = false;
    bool hasData = false;                     // the beginning of the unnamed stream
    std::uint64_t size = 0;                   // of that stream, bytes; 0 without one
    std::uint64_t modified = 0;               // FILETIME; 0 without standard information
    std::optional<std::uint32_t> attributes;  // nothing without standard information
};

// The answer to a request for a file record.
struct FileRecordAnswer {
    std::uint64_t frn = 0;                 // whose record came, which may be another than was asked for
    std::span<const std::uint8_t> record;  // as far as it came
};
std::optional<FileRecordAnswer> fileRecordAnswer(std::span<const std::uint8_t> answer);

// Whether the record begins as every record does.
bool hasFileSignature(std::span<const std::uint8_t> record);

// Walks the attributes up to the end mark, a length of 0, or the end of `record`: whoever knows the size of
// the volume's records cuts it to that. What an attribute says is not looked for beyond the record's end.
MftRecordFacts readMftRecord(std::span<const std::uint8_t> record, RecordTime time);

}  // namespace varnelo
