#include "index/volume_data.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "support/ntfs_bytes.h"

namespace varnelo {
namespace {

using test::Bytes;

// Answers both questions with the same bytes and notes the room that it was given.
class AnsweringVolume final : public Volume {
public:
    std::optional<Bytes> bytes;
    std::size_t claimed = 0;  // beyond what was written
    std::size_t room = 0;

    Answer volumeData(std::span<std::uint8_t> answer) override { return give(answer); }
    Answer journalData(std::span<std::uint8_t> answer) override { return give(answer); }
    Answer enumerate(std::span<const std::uint8_t>, std::span<std::uint8_t>) override { return {}; }
    Answer fileRecord(std::uint64_t, std::span<std::uint8_t>) override { return {}; }
    Answer readJournal(std::span<const std::uint8_t>, std::span<std::uint8_t>) override { return {}; }

private:
    Answer give(std::span<std::uint8_t> answer) {
        room = answer.size();
        if (!bytes) return std::nullopt;
        const std::size_t count = std::min(bytes->size(), room);
        std::copy_n(bytes->begin(), count, answer.begin());
        return count + claimed;
    }
};

Bytes cut(const Bytes& bytes, std::size_t size) {
    return Bytes(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size));
}

TEST(VolumeDataTest, AJournalTellsItsIdentityAndItsEnds) {
    AnsweringVolume volume;
    volume.bytes = test::journalDataBytes(0x1122334455667788, 0x99AA, 0xBBCCDDEEFF);
    const auto state = queryJournal(volume);
    ASSERT_TRUE(state);
    EXPECT_EQ(state->id, 0x1122334455667788u);
    EXPECT_EQ(state->firstUsn, 0x99AAu);
    EXPECT_EQ(state->nextUsn, 0xBBCCDDEEFFu);
    EXPECT_EQ(volume.room, 64u);
}

TEST(VolumeDataTest, ATableTellsTheSizeOfItsRecordsAndItsOwn) {
    AnsweringVolume volume;
    volume.bytes = test::volumeDataBytes(4096, 0x1122334455);
    const auto table = queryTable(volume);
    ASSERT_TRUE(table);
    EXPECT_EQ(table->recordBytes, 4096u);
    EXPECT_EQ(table->validDataSize, 0x1122334455u);
    EXPECT_EQ(volume.room, 96u);
}

TEST(VolumeDataTest, ARefusalAndAnAnswerTooShortAreNothing) {
    AnsweringVolume volume;
    EXPECT_FALSE(queryJournal(volume));
    EXPECT_FALSE(queryTable(volume));
    const Bytes journal = test::journalDataBytes(1, 2, 3);
    const Bytes table = test::volumeDataBytes(1024, 4096);
    volume.bytes = cut(journal, 23);
    EXPECT_FALSE(queryJournal(volume));
    volume.bytes = cut(journal, 24);
    EXPECT_TRUE(queryJournal(volume));
    volume.bytes = cut(table, 63);
    EXPECT_FALSE(queryTable(volume));
    volume.bytes = cut(table, 64);
    EXPECT_TRUE(queryTable(volume));
}

TEST(VolumeDataTest, AnAnswerThatClaimsMoreThanItsRoomIsReadAsFarAsTheRoomGoes) {
    AnsweringVolume volume;
    volume.bytes = test::volumeDataBytes(1024, 4096);
    volume.claimed = 1'000'000;
    EXPECT_EQ(queryTable(volume)->validDataSize, 4096u);
    volume.bytes = test::journalDataBytes(1, 2, 3);
    EXPECT_EQ(queryJournal(volume)->nextUsn, 3u);
}

TEST(VolumeDataTest, RequestsHaveTheirNumbersInTheirPlaces) {
    Bytes expected(24, 0);
    test::put(expected, 0, std::uint64_t{0x1122334455667788});
    test::put(expected, 16, std::uint64_t{0x99AABBCCDDEEFF00});
    const auto enumeration = enumerationRequest(0x1122334455667788, 0x99AABBCCDDEEFF00);
    EXPECT_EQ(Bytes(enumeration.begin(), enumeration.end()), expected);

    expected.assign(40, 0);
    test::put(expected, 0, std::uint64_t{0x1122334455667788});
    test::put(expected, 8, std::uint32_t{0x8000A307});
    test::put(expected, 32, std::uint64_t{0x99AABBCCDDEEFF00});
    const auto journal = journalRequest(0x1122334455667788, 0x8000A307, 0x99AABBCCDDEEFF00);
    EXPECT_EQ(Bytes(journal.begin(), journal.end()), expected);
}

}  // namespace
}  // namespace varnelo
