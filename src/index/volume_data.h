#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "index/volume_source.h"

namespace varnelo {

// What the two questions about a volume answer, as far as anybody needs it. Nothing when the volume refuses,
// or answers with too few bytes.
struct JournalState {
    std::uint64_t id = 0;
    std::uint64_t firstUsn = 0;
    std::uint64_t nextUsn = 0;
};
std::optional<JournalState> queryJournal(Volume& volume);

struct VolumeTable {
    std::uint32_t recordBytes = 0;    // of one file record
    std::uint64_t validDataSize = 0;  // of the table, bytes
};
std::optional<VolumeTable> queryTable(Volume& volume);

// MFT_ENUM_DATA in its 24-byte form.
std::array<std::uint8_t, 24> enumerationRequest(std::uint64_t startFrn, std::uint64_t highUsn);
// READ_USN_JOURNAL_DATA_V0.
std::array<std::uint8_t, 40> journalRequest(std::uint64_t startUsn, std::uint32_t reasons,
                                            std::uint64_t journalId);

}  // namespace varnelo
