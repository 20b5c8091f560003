#include "index/mft_record.h"

#include "index/byte_fields.h"

namespace varnelo {
namespace {

// NTFS_FILE_RECORD_OUTPUT_BUFFER: the reference number, the record's length, the record.
constexpr std::size_t kAnswerHeaderBytes = 12;

constexpr std::uint32_t kFileSignature = 0x454C4946;  // "FILE"
constexpr std::size_t kFirstAttributeAt = 20;

constexpr std::uint32_t kStandardInformation = 0x10;
constexpr std::uint32_t kAttributeList = 0x20;
constexpr std::uint32_t kData = 0x80;
constexpr std::uint32_t kEnd = 0xFFFFFFFF;

// In an attribute.
constexpr std::size_t kLengthAt = 4;
constexpr std::size_t kNonResidentAt = 8;
constexpr std::size_t kNameLengthAt = 9;
constexpr std::size_t kValueLengthAt = 16;
constexpr std::size_t kValueOffsetAt = 20;
constexpr std::size_t kFirstClusterAt = 16;
constexpr std::size_t kRealSizeAt = 48;
// In the value of the standard information.
constexpr std::size_t kDosAttributesAt = 32;

using Bytes = std::span<const std::uint8_t>;

// `attribute` reaches to the record's end.
void readStandardInformation(Bytes attribute, RecordTime time, MftRecordFacts& facts) {
    const auto offset = fieldAt<std::uint16_t>(attribute, kValueOffsetAt);
    if (!offset || *offset > attribute.size()) return;
    const Bytes value = attribute.subspan(*offset);
    const auto attributes = fieldAt<std::uint32_t>(value, kDosAttributesAt);
    if (!attributes) return;
    facts.attributes = attributes;
    facts.modified = knownField<std::uint64_t>(value, static_cast<std::size_t>(time));
}

void readData(Bytes attribute, bool resident, MftRecordFacts& facts) {
    if (attribute[kNameLengthAt] != 0) return;
    if (resident) {
        const auto size = fieldAt<std::uint32_t>(attribute, kValueLengthAt);
        if (!size) return;
        facts.size = *size;
    } else {
        // A later piece of a stream in many pieces carries no sizes.
        if (fieldAt<std::uint64_t>(attribute, kFirstClusterAt) != 0) return;
        const auto size = fieldAt<std::uint64_t>(attribute, kRealSizeAt);
        if (!size) return;
        facts.size = *size;
    }
    facts.hasData = true;
}

}  // namespace

std::optional<FileRecordAnswer> fileRecordAnswer(Bytes answer) {
    if (answer.size() < kAnswerHeaderBytes) return std::nullopt;
    return FileRecordAnswer{knownField<std::uint64_t>(answer, 0), answer.subspan(kAnswerHeaderBytes)};
}

bool hasFileSignature(Bytes record) { return fieldAt<std::uint32_t>(record, 0) == kFileSignature; }

MftRecordFacts readMftRecord(Bytes record, RecordTime time) {
    MftRecordFacts facts;
    std::size_t at = fieldAt<std::uint16_t>(record, kFirstAttributeAt).value_or(0);
    if (at == 0) return facts;
    while (at < record.size()) {
        const Bytes attribute = record.subspan(at);
        const auto type = fieldAt<std::uint32_t>(attribute, 0);
        const auto length = knownField<std::uint32_t>(attribute, kLengthAt);
        if (!type || *type == kEnd || length == 0 || attribute.size() <= kNameLengthAt) break;
        const bool resident = attribute[kNonResidentAt] == 0;
        if (*type == kAttributeList) facts.hasAttributeList = true;
        if (*type == kStandardInformation && resident) readStandardInformation(attribute, time, facts);
        if (*type == kData) readData(attribute, resident, facts);
        at += length;
    }
    return facts;
}

}  // namespace varnelo
