#include "support/ntfs_attribute.h"

#include <algorithm>

namespace varnelo::test {
namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::uint64_t kEnd = 0xFFFFFFFF;

// What the bytes hold of [offset, offset + count).
Bytes part(Bytes bytes, std::uint64_t offset, std::uint64_t count) {
    if (offset > bytes.size()) return {};
    const Bytes rest = bytes.subspan(static_cast<std::size_t>(offset));
    return rest.first(static_cast<std::size_t>(std::min<std::uint64_t>(count, rest.size())));
}

NtfsAttribute attributeOf(Bytes bytes) {
    NtfsAttribute result;
    result.type = littleEndian(bytes, 0, 4);
    result.resident = littleEndian(bytes, 8, 1) == 0;
    result.named = littleEndian(bytes, 9, 1) != 0;
    result.instance = littleEndian(bytes, 14, 2);
    if (result.resident) {
        result.value = part(bytes, littleEndian(bytes, 20, 2), littleEndian(bytes, 16, 4));
        result.dataSize = result.validSize = littleEndian(bytes, 16, 4);
        return result;
    }
    result.firstVcn = littleEndian(bytes, 16, 8);
    result.pairs = part(bytes, littleEndian(bytes, 32, 2), bytes.size());
    if (result.firstVcn != 0) return result;
    result.dataSize = littleEndian(bytes, 48, 8);
    result.validSize = littleEndian(bytes, 56, 8);
    return result;
}

}  // namespace

std::uint64_t littleEndian(Bytes bytes, std::size_t offset, std::size_t width) {
    if (offset > bytes.size() || width > bytes.size() - offset) return 0;
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < width; ++i) value |= std::uint64_t{bytes[offset + i]} << (8 * i);
    return value;
}

std::vector<ClusterRun> NtfsAttribute::runs() const {
    std::vector<ClusterRun> result;
    std::uint64_t cluster = 0;
    for (std::size_t at = 0; at < pairs.size() && pairs[at] != 0;) {
        const std::size_t countBytes = pairs[at] & 15;
        const std::size_t offsetBytes = pairs[at] >> 4;
        ++at;
        if (countBytes == 0 || countBytes > 8 || offsetBytes > 8) break;
        if (countBytes + offsetBytes > pairs.size() - at) break;
        ClusterRun run;
        run.count = littleEndian(pairs, at, countBytes);
        if (offsetBytes != 0) {
            // Signed, and counted from the run before.
            std::uint64_t offset = littleEndian(pairs, at + countBytes, offsetBytes);
            const std::size_t bits = 8 * offsetBytes;
            if (bits < 64 && (offset >> (bits - 1) & 1) != 0) offset |= ~std::uint64_t{0} << bits;
            cluster += offset;
            run.first = cluster;
        }
        result.push_back(run);
        at += countBytes + offsetBytes;
    }
    return result;
}

std::vector<NtfsAttribute> attributesOf(Bytes record) {
    std::vector<NtfsAttribute> result;
    std::uint64_t at = littleEndian(record, 20, 2);
    while (at + 8 <= record.size()) {
        const Bytes rest = record.subspan(static_cast<std::size_t>(at));
        const std::uint64_t length = littleEndian(rest, 4, 4);
        if (littleEndian(rest, 0, 4) == kEnd || length < 24 || length > rest.size()) break;
        result.push_back(attributeOf(rest.first(static_cast<std::size_t>(length))));
        at += length;
    }
    return result;
}

std::optional<NtfsFileName> fileNameOf(const NtfsAttribute& attribute) {
    constexpr std::size_t kNameAt = 66;
    constexpr std::uint64_t kDosOnly = 2;
    if (attribute.type != NtfsAttribute::kFileName || !attribute.resident) return std::nullopt;
    const std::uint64_t length = littleEndian(attribute.value, 64, 1);
    if (attribute.value.size() < kNameAt + 2 * length) return std::nullopt;
    NtfsFileName result;
    result.parent = littleEndian(attribute.value, 0, 8);
    result.dosOnly = littleEndian(attribute.value, 65, 1) == kDosOnly;
    for (std::size_t i = 0; i < length; ++i)
        result.name += static_cast<wchar_t>(littleEndian(attribute.value, kNameAt + 2 * i, 2));
    return result;
}

}  // namespace varnelo::test
