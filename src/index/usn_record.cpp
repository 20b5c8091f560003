#include "index/usn_record.h"

#include "index/byte_fields.h"

namespace varnelo {
namespace {

// USN_RECORD_COMMON_HEADER: the length, the major and the minor version.
constexpr std::size_t kCommonHeaderBytes = 8;

// USN_RECORD_V2. The record states where its name begins; in this version it is always the same place.
constexpr std::size_t kMajorVersionAt = 4;
constexpr std::size_t kFrnAt = 8;
constexpr std::size_t kParentFrnAt = 16;
constexpr std::size_t kReasonAt = 40;
constexpr std::size_t kAttributesAt = 52;
constexpr std::size_t kNameLengthAt = 56;
constexpr std::size_t kNameAt = 60;

}  // namespace

void UsnRecord::nameInto(std::wstring& text) const {
    text.resize(name.size() / 2);
    for (std::size_t i = 0; i < text.size(); ++i) {
        text[i] = static_cast<wchar_t>(name[2 * i] | name[2 * i + 1] << 8);
    }
}

UsnRecordWalk::UsnRecordWalk(std::span<const std::uint8_t> answer)
    : position(fieldAt<std::uint64_t>(answer, 0)) {
    if (position) rest = answer.subspan(kHeaderBytes);
}

bool UsnRecordWalk::next(UsnRecord& record) {
    for (;;) {
        const auto length = fieldAt<std::uint32_t>(rest, 0);
        if (!length || *length < kCommonHeaderBytes || *length > rest.size()) return false;
        const auto bytes = rest.first(*length);
        const bool version2 = knownField<std::uint16_t>(bytes, kMajorVersionAt) == 2;
        if (version2 && bytes.size() < kNameAt) return false;
        rest = rest.subspan(bytes.size());
        if (!version2) continue;

        record.nameBytes = knownField<std::uint16_t>(bytes, kNameLengthAt);
        if (record.nameBytes > bytes.size() - kNameAt) continue;
        record.name = bytes.subspan(kNameAt, record.nameBytes);
        record.frn = knownField<std::uint64_t>(bytes, kFrnAt);
        record.parentFrn = knownField<std::uint64_t>(bytes, kParentFrnAt);
        record.reason = knownField<std::uint32_t>(bytes, kReasonAt);
        record.attributes = knownField<std::uint32_t>(bytes, kAttributesAt);
        return true;
    }
}

}  // namespace varnelo
