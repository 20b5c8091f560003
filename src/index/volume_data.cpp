#include "index/volume_data.h"

#include <algorithm>

#include "index/byte_fields.h"

namespace varnelo {
namespace {

// USN_JOURNAL_DATA
constexpr std::size_t kJournalBytes = 64;
constexpr std::size_t kJournalIdAt = 0;
constexpr std::size_t kFirstUsnAt = 8;
constexpr std::size_t kNextUsnAt = 16;

// NTFS_VOLUME_DATA_BUFFER
constexpr std::size_t kVolumeBytes = 96;
constexpr std::size_t kRecordBytesAt = 48;
constexpr std::size_t kValidDataSizeAt = 56;

template <std::size_t Size>
std::span<const std::uint8_t> written(const std::array<std::uint8_t, Size>& answer, Volume::Answer count) {
    return std::span<const std::uint8_t>(answer).first(std::min(count.value_or(0), Size));
}

template <class Unsigned>
void put(std::span<std::uint8_t> bytes, std::size_t offset, Unsigned value) {
    for (std::size_t i = 0; i < sizeof value; ++i) {
        bytes[offset + i] = static_cast<std::uint8_t>(value >> (8 * i));
    }
}

}  // namespace

std::optional<JournalState> queryJournal(Volume& volume) {
    alignas(8) std::array<std::uint8_t, kJournalBytes> answer{};
    const auto bytes = written(answer, volume.journalData(answer));
    const auto nextUsn = fieldAt<std::uint64_t>(bytes, kNextUsnAt);
    if (!nextUsn) return std::nullopt;
    return JournalState{knownField<std::uint64_t>(bytes, kJournalIdAt),
                        knownField<std::uint64_t>(bytes, kFirstUsnAt), *nextUsn};
}

std::optional<VolumeTable> queryTable(Volume& volume) {
    alignas(8) std::array<std::uint8_t, kVolumeBytes> answer{};
    const auto bytes = written(answer, volume.volumeData(answer));
    const auto validDataSize = fieldAt<std::uint64_t>(bytes, kValidDataSizeAt);
    if (!validDataSize) return std::nullopt;
    return VolumeTable{knownField<std::uint32_t>(bytes, kRecordBytesAt), *validDataSize};
}

std::array<std::uint8_t, 24> enumerationRequest(std::uint64_t startFrn, std::uint64_t highUsn) {
    std::array<std::uint8_t, 24> request{};
    put(std::span(request), 0, startFrn);
    put(std::span(request), 16, highUsn);
    return request;
}

std::array<std::uint8_t, 40> journalRequest(std::uint64_t startUsn, std::uint32_t reasons,
                                            std::uint64_t journalId) {
    // Whether on close only, time-out and bytes to wait for stay 0: the call answers at once.
    std::array<std::uint8_t, 40> request{};
    put(std::span(request), 0, startUsn);
    put(std::span(request), 8, reasons);
    put(std::span(request), 32, journalId);
    return request;
}

}  // namespace varnelo
