#include "support/ntfs_image_volume.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "platform/binary_stream.h"

namespace varnelo::test {
namespace {

struct Told {
    std::uint64_t frn = 0, parentFrn = 0, attributes = 0;
    std::wstring name;
};

Bytes enumerationRequest(std::uint64_t start, std::uint64_t highUsn = 0x1000) {
    BinaryWriter out;
    out.u64(start);
    out.u64(0);
    out.u64(highUsn);
    return out.take();
}

// All that the volume tells of in an enumeration with a buffer of this size.
std::vector<Told> enumerated(Volume& volume, std::size_t bufferBytes = 0x100000) {
    std::vector<Told> result;
    Bytes buffer(bufferBytes);
    for (std::uint64_t start = 0;;) {
        const auto count = volume.enumerate(enumerationRequest(start), buffer);
        if (!count) return result;
        const std::span<const std::uint8_t> answer = std::span(buffer).first(*count);
        start = littleEndian(answer, 0, 8);
        std::size_t at = 8;
        while (at < answer.size()) {
            const auto record = answer.subspan(at);
            EXPECT_EQ(at % 8, 0u);
            EXPECT_EQ(littleEndian(record, 4, 2), 2u);
            EXPECT_EQ(littleEndian(record, 58, 2), 60u);
            Told told{
                littleEndian(record, 8, 8), littleEndian(record, 16, 8), littleEndian(record, 52, 4), {}};
            for (std::size_t i = 0; i < littleEndian(record, 56, 2); i += 2)
                told.name += static_cast<wchar_t>(littleEndian(record, 60 + i, 2));
            result.push_back(told);
            at += littleEndian(record, 0, 4);
        }
        EXPECT_EQ(at, answer.size());
    }
}

class NtfsImageVolumeTest : public testing::Test {
protected:
    const Told* named(const std::vector<Told>& all, const std::wstring& name) {
        const auto found =
            std::find_if(all.begin(), all.end(), [&](const Told& each) { return each.name == name; });
        return found == all.end() ? nullptr : &*found;
    }

    const std::shared_ptr<const NtfsImage> image = NtfsImage::made("records4k");
    NtfsImageSource source{image};
    const std::unique_ptr<Volume> volume = source.open(L"C:");
    Bytes answer = Bytes(0x10000);
};

TEST_F(NtfsImageVolumeTest, TellsTheShapeOfTheVolume) {
    ASSERT_EQ(volume->volumeData(answer), 96u);
    EXPECT_EQ(littleEndian(answer, 8, 8), 131'071u);
    EXPECT_EQ(littleEndian(answer, 40, 4), 512u);
    EXPECT_EQ(littleEndian(answer, 44, 4), 4096u);
    EXPECT_EQ(littleEndian(answer, 48, 4), 4096u);
    EXPECT_EQ(littleEndian(answer, 52, 4), 1u);
    EXPECT_EQ(littleEndian(answer, 56, 8), image->recordCount() * 4096);
    EXPECT_EQ(volume->volumeData(std::span(answer).first(95)), std::nullopt);
}

TEST_F(NtfsImageVolumeTest, TellsOfEachFileOnceInTheOrderOfTheTable) {
    const std::vector<Told> all = enumerated(*volume);
    EXPECT_GT(all.size(), 2000u);
    for (std::size_t i = 1; i < all.size(); ++i)
        EXPECT_LT(all[i - 1].frn & 0xFFFFFFFFFFFF, all[i].frn & 0xFFFFFFFFFFFF);
}

TEST_F(NtfsImageVolumeTest, TellsTheSameInSmallPieces) {
    const std::vector<Told> atOnce = enumerated(*volume);
    // Just enough for the longest name.
    const std::vector<Told> inPieces = enumerated(*volume, 8 + 60 + 2 * 255 + 6);
    ASSERT_EQ(atOnce.size(), inPieces.size());
    for (std::size_t i = 0; i < atOnce.size(); ++i) {
        EXPECT_EQ(atOnce[i].frn, inPieces[i].frn);
        EXPECT_EQ(atOnce[i].name, inPieces[i].name);
    }
    EXPECT_EQ(volume->enumerate(enumerationRequest(0), std::span(answer).first(40)), std::nullopt);
}

TEST_F(NtfsImageVolumeTest, EndsAnEnumerationByRefusing) {
    EXPECT_EQ(volume->enumerate(enumerationRequest(image->recordCount()), answer), std::nullopt);
    EXPECT_EQ(volume->enumerate(Bytes(23), answer), std::nullopt);
}

TEST_F(NtfsImageVolumeTest, TellsNoNameThatIsThereForDosAlone) {
    const std::vector<Told> all = enumerated(*volume);
    EXPECT_NE(named(all, L"A rather long name.html"), nullptr);
    EXPECT_EQ(named(all, L"ARATHE~1.HTM"), nullptr);
    EXPECT_NE(named(all, L"SHORT.TXT"), nullptr);
    EXPECT_NE(named(all, L"Folder with two names"), nullptr);
    EXPECT_EQ(named(all, L"FOLDER~1"), nullptr);
}

TEST_F(NtfsImageVolumeTest, TellsNamesUnitByUnit) {
    const std::vector<Told> all = enumerated(*volume);
    for (const std::wstring& name :
         {std::wstring(L"high \xD83D alone.txt"), std::wstring(L"\xDE00\xD83D"), std::wstring(255, L'n'),
          std::wstring(L"\u65E5\u672C\u8A9E\u306E\u6587\u66F8.docx")})
        EXPECT_NE(named(all, name), nullptr) << name.size();
}

TEST_F(NtfsImageVolumeTest, TellsParentsWithTheirSequenceNumbers) {
    const std::vector<Told> all = enumerated(*volume);
    const Told* folder = named(all, L"names");
    const Told* file = named(all, L"a");
    ASSERT_TRUE(folder != nullptr && file != nullptr);
    EXPECT_EQ(file->parentFrn, folder->frn);
    EXPECT_EQ(folder->parentFrn, std::uint64_t{5} << 48 | 5);
}

TEST_F(NtfsImageVolumeTest, TellsAttributesAsThePlatformHasThem) {
    const std::vector<Told> all = enumerated(*volume);
    EXPECT_EQ(named(all, L"none")->attributes, 0x80u);
    EXPECT_EQ(named(all, L"hidden and system")->attributes, 0x26u);
    EXPECT_EQ(named(all, L"hidden folder")->attributes, 0x12u);
    EXPECT_EQ(named(all, L"stale.txt")->attributes, 0x20u);
}

TEST_F(NtfsImageVolumeTest, MayLeaveOutWhatHasNoName) {
    ImageDrive silent{image};
    silent.tellsNameless = false;
    NtfsImageVolume other(silent);
    const std::vector<Told> all = enumerated(*volume), fewer = enumerated(other);
    const auto nameless = [](const Told& each) { return each.name.empty(); };
    EXPECT_EQ(std::count_if(all.begin(), all.end(), nameless), 4);
    EXPECT_EQ(std::count_if(fewer.begin(), fewer.end(), nameless), 0);
    EXPECT_EQ(all.size(), fewer.size() + 4);
}

TEST_F(NtfsImageVolumeTest, MayTellEveryName) {
    ImageDrive talkative{image};
    talkative.tellsEveryName = true;
    NtfsImageVolume other(talkative);
    const std::vector<Told> once = enumerated(*volume), all = enumerated(other);
    // Of the four files of several names these are the further ones: 1, 1, 2 and 79.
    EXPECT_EQ(all.size(), once.size() + 83);
    EXPECT_EQ(named(once, L"the second name.txt"), nullptr);
    EXPECT_NE(named(all, L"the second name.txt"), nullptr);
    EXPECT_EQ(named(all, L"THREEN~1.TXT"), nullptr);
}

TEST_F(NtfsImageVolumeTest, LeavesOutWhatTheJournalDoesNotReachTo) {
    // Nothing on the image was ever journalled: every file's last number is 0.
    Bytes request = enumerationRequest(0);
    request[8] = 1;
    EXPECT_EQ(volume->enumerate(request, answer), std::nullopt);
}

TEST_F(NtfsImageVolumeTest, AnswersAnUnusedNumberWithTheUsedOneBelow) {
    std::uint64_t unused = 24;
    while (image->inUse(unused)) ++unused;
    ASSERT_LT(unused, image->recordCount());
    ASSERT_EQ(volume->fileRecord(unused, answer), 12u + 4096u);
    EXPECT_EQ(littleEndian(answer, 0, 8), image->reference(unused - 1));
    EXPECT_EQ(littleEndian(answer, 8, 4), 4096u);
    const auto record = image->record(unused - 1);
    EXPECT_TRUE(std::equal(record.begin(), record.end(), answer.begin() + 12));
}

TEST_F(NtfsImageVolumeTest, RefusesNumbersBeyondTheTableAndShortBuffers) {
    EXPECT_EQ(volume->fileRecord(image->recordCount(), answer), std::nullopt);
    EXPECT_EQ(volume->fileRecord(5, std::span(answer).first(12 + 4095)), std::nullopt);
    EXPECT_NE(volume->fileRecord(5, std::span(answer).first(12 + 4096)), std::nullopt);
    // The sequence number does not count.
    EXPECT_NE(volume->fileRecord(std::uint64_t{77} << 48 | 5, answer), std::nullopt);
}

TEST_F(NtfsImageVolumeTest, ServesRecordsAsTheSectorsHoldThemWhenAsked) {
    ImageDrive raw{image};
    raw.fixUps = NtfsImage::FixUps::Left;
    ASSERT_NE(NtfsImageVolume(raw).fileRecord(5, answer), std::nullopt);
    const Bytes left(answer.begin(), answer.begin() + 12 + 4096);
    ASSERT_NE(volume->fileRecord(5, answer), std::nullopt);
    EXPECT_FALSE(std::equal(left.begin(), left.end(), answer.begin()));
}

TEST_F(NtfsImageVolumeTest, KnowsTheSizeOfAFileByAnyOfItsPaths) {
    EXPECT_EQ(source.fileSize(L"C:\\data\\not resident, 1234567"), 1'234'567u);
    EXPECT_EQ(source.fileSize(L"C:\\sparse, 5 GB"), (std::uint64_t{5} << 30) + 10);
    EXPECT_EQ(source.fileSize(L"C:\\links\\two names.txt"), 2000u);
    EXPECT_EQ(source.fileSize(L"C:\\links elsewhere\\the second name.txt"), 2000u);
    EXPECT_EQ(source.fileSize(L"C:\\data\\no data, a stream.txt"), 0u);
    EXPECT_EQ(source.fileSize(L"C:\\data\\compressed\\pattern"), 300'001u);
    EXPECT_EQ(source.fileSize(L"C:\\data\\many streams, then data.txt"), 4321u);
    EXPECT_EQ(source.fileSize(L"C:\\names\\ARATHE~1.HTM"), std::nullopt);
    EXPECT_EQ(source.fileSize(L"C:\\data\\no such file"), std::nullopt);
    EXPECT_EQ(source.fileSize(L"D:\\data\\empty"), std::nullopt);
    EXPECT_EQ(source.fileSize(L""), std::nullopt);
}

TEST_F(NtfsImageVolumeTest, HasTheDrivesThatItWasGiven) {
    ImageDrive removable{image};
    removable.fixed = false;
    ImageDrive unreadable;
    NtfsImageSource machine({{L'C', ImageDrive{image}}, {L'E', removable}, {L'Z', unreadable}});
    EXPECT_EQ(machine.drives(), 1u << 2 | 1u << 4 | 1u << 25);
    EXPECT_TRUE(machine.fixedDrive(L'C'));
    EXPECT_FALSE(machine.fixedDrive(L'E'));
    EXPECT_FALSE(machine.fixedDrive(L'D'));
    EXPECT_NE(machine.open(L"c:"), nullptr);
    EXPECT_EQ(machine.open(L"D:"), nullptr);
    EXPECT_EQ(machine.open(L"Z:"), nullptr);
}

TEST_F(NtfsImageVolumeTest, MayHaveNoJournal) {
    ImageDrive bare{image};
    bare.journal = nullptr;
    NtfsImageVolume without(bare);
    EXPECT_EQ(without.journalData(answer), std::nullopt);
    EXPECT_EQ(without.readJournal(Bytes(40), answer), std::nullopt);
    EXPECT_NE(volume->journalData(answer), std::nullopt);
}

}  // namespace
}  // namespace varnelo::test
