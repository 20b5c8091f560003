#include "index/volume_scan.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <numeric>

#include "support/scripted_volumes.h"

namespace varnelo {
namespace {

using test::Bytes;
using test::kArchive;
using test::kFolder;
using test::MftRecordBytes;
using test::ScriptedVolume;
using Names = std::vector<std::wstring>;
using Numbers = std::vector<std::uint64_t>;

class VolumeScanTest : public ::testing::Test {
protected:
    bool scan() { return scanAllVolumes(index, volumes); }
    ScriptedVolume& c() { return volumes[L'C']; }
    void given(std::uint64_t frn, const std::wstring& name, const MftRecordBytes& record = MftRecordBytes(),
               std::uint64_t parentFrn = 5, std::uint32_t attributes = kArchive) {
        c().add({frn, parentFrn, name, attributes}, record);
    }

    Names liveNames() const {
        Names names;
        for (std::uint32_t i = 0; i < index.records().size(); ++i) {
            if (!index.records()[i].deleted()) names.push_back(index.nameOf(i));
        }
        return names;
    }
    const FileRecord& recordNamed(const std::wstring& name) const {
        for (std::uint32_t i = 0; i < index.records().size(); ++i) {
            if (index.nameOf(i) == name) return index.records()[i];
        }
        throw std::runtime_error("no such record");
    }
    static Volume::Answer answer(const Bytes& bytes, ScriptedVolume::Room room) {
        std::copy(bytes.begin(), bytes.end(), room.begin());
        return bytes.size();
    }

    test::ScriptedVolumes volumes;
    NTFSIndex index;
};

TEST_F(VolumeScanTest, AScanGathersNamesSizesTimesAndAttributes) {
    given(0x0004000000000018, L"Users", MftRecordBytes().standardInformation(11, 12, kFolder), 5, kFolder);
    given(0x0001000000000019, L"notes.txt",
          MftRecordBytes().standardInformation(21, 22, 0x21).residentData(42), 0x0004000000000018, kArchive);
    ASSERT_TRUE(scan());
    ASSERT_EQ(index.records().size(), 2u);
    const FileRecord& folder = index.records()[0];
    EXPECT_EQ(folder.frn, 24u);
    EXPECT_EQ(folder.parentFrn, 5u);
    EXPECT_EQ(folder.flags, FileRecord::kDirectory);
    const FileRecord& file = index.records()[1];
    EXPECT_EQ(file.frn, 25u);
    EXPECT_EQ(file.parentFrn, 24u);
    EXPECT_EQ(file.flags, 0u);
    EXPECT_EQ(file.size, 42u);
    EXPECT_EQ(file.modified, 21u) << "the time of the last write";
    EXPECT_EQ(file.attributes, 0x21u) << "the file record knows better than the first pass";
    EXPECT_EQ(index.fullPath(file), L"C:\\Users\\notes.txt");
    EXPECT_EQ(index.searchNames(L"note"), std::vector<std::uint32_t>{1});
    EXPECT_EQ(c().opened, c().closed);
}

TEST_F(VolumeScanTest, WhatNtfsHasForItselfIsNotEntered) {
    for (const std::uint64_t frn : {5, 11, 23}) given(frn, L"own" + std::to_wstring(frn));
    given(0x0001000000000017, L"own again");
    given(24, L"first");
    ASSERT_TRUE(scan());
    EXPECT_EQ(liveNames(), Names{L"first"});
}

TEST_F(VolumeScanTest, AFileOfTwoNamesIsOneUnderTheNameSeenFirst) {
    given(30, L"first.txt");
    c().files.push_back({30, 40, L"second.txt"});
    ASSERT_TRUE(scan());
    EXPECT_EQ(liveNames(), Names{L"first.txt"});
}

TEST_F(VolumeScanTest, ARecordWithoutANameIsEnteredThoughItsNumberIsKnown) {
    given(30, L"first.txt");
    c().files.push_back({30, 40, L""});
    ASSERT_TRUE(scan());
    EXPECT_EQ(index.records().size(), 2u);
    EXPECT_EQ(index.recordByKey(30), 1u);
    EXPECT_EQ(c().recordsAsked, Numbers{30}) << "once, for the one that is found";
}

TEST_F(VolumeScanTest, ADirectoryIsOneByItsBitAlone) {
    given(30, L"file", {}, 5, ~kFolder);
    given(31, L"folder", {}, 5, ~0u);
    ASSERT_TRUE(scan());
    EXPECT_EQ(recordNamed(L"file").flags, 0u);
    EXPECT_EQ(recordNamed(L"folder").flags, FileRecord::kDirectory);
}

TEST_F(VolumeScanTest, TheTableIsAskedForFromNumberToNumber) {
    for (std::uint64_t frn = 24; frn < 29; ++frn) given(frn, std::to_wstring(frn));
    c().filesPerAnswer = 2;
    c().nextUsn = 0x5566;
    ASSERT_TRUE(scan());
    EXPECT_EQ(liveNames(), (Names{L"24", L"25", L"26", L"27", L"28"}));
    ASSERT_EQ(c().enumerations.size(), 4u) << "the last one finds the end";
    Bytes request(24, 0);
    test::put(request, 16, std::uint64_t{0x5566});
    EXPECT_EQ(c().enumerations[0], request);
    test::put(request, 0, std::uint64_t{26});
    EXPECT_EQ(c().enumerations[1], request);
}

TEST_F(VolumeScanTest, OnlyNumbersThatAreKnownAreAskedForUpwards) {
    for (const std::uint64_t frn : {30, 27, 100, 900, 99})
        c().files.push_back({frn, 5, std::to_wstring(frn)});
    c().enumerate = [this, done = false](auto, ScriptedVolume::Room room) mutable -> Volume::Answer {
        if (std::exchange(done, true)) return std::nullopt;
        std::vector<Bytes> records;
        for (const auto& file : c().files) records.push_back(test::usnRecord(file));
        return answer(test::usnAnswer(901, records), room);
    };
    c().volumeData = test::volumeDataBytes(1024, 1024 * 100 + 1023);
    ASSERT_TRUE(scan());
    EXPECT_EQ(c().recordsAsked, (Numbers{27, 30, 99})) << "the table ends before 100";
    EXPECT_EQ(c().recordRoom, 1024u + 16u);
}

TEST_F(VolumeScanTest, TheRecordOfAnotherNumberIsNotTaken) {
    given(30, L"there", MftRecordBytes().standardInformation(1, 2, 3).residentData(4));
    given(31, L"gone");
    c().fileRecords.erase(31);
    ASSERT_TRUE(scan());
    EXPECT_EQ(recordNamed(L"gone").size, 0u);
    EXPECT_EQ(recordNamed(L"gone").modified, 0u);
    EXPECT_EQ(recordNamed(L"gone").attributes, kArchive) << "of the first pass";
}

TEST_F(VolumeScanTest, ARecordsNumberMayCarryASequenceNumber) {
    given(30, L"there", MftRecordBytes().residentData(4));
    c().sequence = 9;
    ASSERT_TRUE(scan());
    EXPECT_EQ(recordNamed(L"there").size, 4u);
}

TEST_F(VolumeScanTest, ANumberThatTwoVolumesHaveIsFilledFromItsOwn) {
    given(30, L"on C", MftRecordBytes().residentData(3));
    volumes[L'D'].add({30, 5, L"on D"}, MftRecordBytes().residentData(4));
    volumes[L'D'].add({31, 5, L"more on D"}, MftRecordBytes());
    ASSERT_TRUE(scan());
    EXPECT_EQ(recordNamed(L"on C").size, 3u);
    EXPECT_EQ(recordNamed(L"on D").size, 4u);
    EXPECT_EQ(c().recordsAsked, Numbers{30});
    EXPECT_EQ(volumes[L'D'].recordsAsked, (Numbers{30, 31}));
}

TEST_F(VolumeScanTest, ARecordWithoutTheSignatureIsNotTaken) {
    given(30, L"bad");
    Bytes record = MftRecordBytes().residentData(7).ended();
    record[3] = 'X';
    c().fileRecords[30] = record;
    ASSERT_TRUE(scan());
    EXPECT_EQ(recordNamed(L"bad").size, 0u);
}

TEST_F(VolumeScanTest, ARecordThatCannotBeReadLeavesTheOthers) {
    given(30, L"refused");
    given(31, L"fine", MftRecordBytes().residentData(7));
    c().fileRecords.erase(30);
    ASSERT_TRUE(scan());
    EXPECT_EQ(recordNamed(L"refused").size, 0u);
    EXPECT_EQ(recordNamed(L"fine").size, 7u);
}

TEST_F(VolumeScanTest, WithoutStandardInformationTheAttributesOfTheFirstPassStay) {
    given(30, L"plain", MftRecordBytes().residentData(7), 5, 0x23);
    ASSERT_TRUE(scan());
    EXPECT_EQ(recordNamed(L"plain").attributes, 0x23u);
    EXPECT_EQ(recordNamed(L"plain").modified, 0u);
    EXPECT_EQ(recordNamed(L"plain").size, 7u);
}

TEST_F(VolumeScanTest, ASparseFileHasItsRealSizeAndAStreamAloneHasNone) {
    given(30, L"sparse", MftRecordBytes().nonResidentData(5'368'709'120));
    given(31, L"streams", MftRecordBytes().residentData(33, L"Zone.Identifier"));
    ASSERT_TRUE(scan());
    EXPECT_EQ(recordNamed(L"sparse").size, 5'368'709'120u);
    EXPECT_EQ(recordNamed(L"streams").size, 0u);
    EXPECT_TRUE(volumes.sizesAsked.empty());
}

TEST_F(VolumeScanTest, ASizeThatLiesInAFurtherRecordIsAskedForByPath) {
    given(30, L"folder", MftRecordBytes().attributeList(), 5, kFolder);
    given(31, L"big", MftRecordBytes().standardInformation(1, 2, 3).attributeList(), 30);
    given(32, L"unknown", MftRecordBytes().attributeList(), 30);
    given(33, L"first piece here", MftRecordBytes().attributeList().nonResidentData(9), 30);
    given(34, L"later piece here", MftRecordBytes().attributeList().nonResidentData(9, 50), 30);
    volumes.fileSizes = {{L"C:\\folder\\big", 77'000'000'000}, {L"C:\\folder\\later piece here", 8}};
    ASSERT_TRUE(scan());
    EXPECT_EQ(volumes.sizesAsked,
              (Names{L"C:\\folder\\big", L"C:\\folder\\unknown", L"C:\\folder\\later piece here"}));
    EXPECT_EQ(recordNamed(L"big").size, 77'000'000'000u);
    EXPECT_EQ(recordNamed(L"big").modified, 1u);
    EXPECT_EQ(recordNamed(L"unknown").size, 0u);
    EXPECT_EQ(recordNamed(L"first piece here").size, 9u);
    EXPECT_EQ(recordNamed(L"later piece here").size, 8u);
}

TEST_F(VolumeScanTest, MetadataIsTakenOutOfTheSearch) {
    given(24, L"$Quota", {}, 11);
    given(25, L"$RmMetadata", {}, 11, kFolder);
    given(26, L"$Txf", {}, 25, kFolder);
    given(27, L"$TxfLog.blf", {}, 26);
    given(28, L"$Recycle.Bin", {}, 5, kFolder);
    given(29, L"S-1-5-21", {}, 28, kFolder);
    given(30, L"$RABCDE.txt", {}, 29);
    given(31, L"desktop.ini", {}, 28);
    given(32, L"$mine.txt", {}, 33);
    given(33, L"Ann", {}, 5, kFolder);
    ASSERT_TRUE(scan());
    EXPECT_EQ(liveNames(), (Names{L"S-1-5-21", L"$RABCDE.txt", L"desktop.ini", L"$mine.txt", L"Ann"}));
    EXPECT_EQ(index.recordByKey(24), 0u) << "still known";
    EXPECT_EQ(index.freeRecords().size(), 0u);
    EXPECT_EQ(index.searchNames(L"$"), (std::vector<std::uint32_t>{6, 8}));
}

TEST_F(VolumeScanTest, MetadataBelowMetadataGoesInWhateverOrderItStands) {
    for (std::uint64_t depth = 0; depth < 500; ++depth) {
        // Each lies in the one that comes behind it; the last in NTFS's own folder.
        given(100 + depth, L"$" + std::to_wstring(depth), {}, depth == 499 ? 11 : 101 + depth, kFolder);
    }
    ASSERT_TRUE(scan());
    EXPECT_EQ(liveNames(), Names{});
}

TEST_F(VolumeScanTest, MetadataIsToldApartByVolume) {
    given(24, L"$own", {}, 11, kFolder);
    given(25, L"below", {}, 24);
    volumes[L'D'].add({25, 24, L"$theirs"}, MftRecordBytes());
    volumes[L'D'].add({26, 5, L"$gone"}, MftRecordBytes());
    volumes[L'D'].add({27, 26, L"$gone too"}, MftRecordBytes());
    given(28, L"$mine", {}, 26);
    ASSERT_TRUE(scan());
    EXPECT_EQ(liveNames(), (Names{L"below", L"$mine", L"$theirs"}));
}

TEST_F(VolumeScanTest, WhatIsGoneAlreadyTakesNothingWithIt) {
    index.removeRecord(index.addRecord({30, 11, 0, 0, 0, 0}, L"$gone"));
    index.addRecord({31, 30, 0, 0, 0, 0}, L"$below");
    pruneMetadata(index);
    EXPECT_EQ(liveNames(), Names{L"$below"});
}

TEST_F(VolumeScanTest, FoldersThatLieInEachOtherAreTakenOutOnce) {
    index.addRecord({30, 11, 0, 0, 0, 0}, L"$known twice");
    index.addRecord({30, 31, 0, 0, 0, 0}, L"$known twice");
    index.addRecord({31, 30, 0, 0, 0, 0}, L"$below");
    pruneMetadata(index);
    EXPECT_EQ(liveNames(), Names{});
}

TEST_F(VolumeScanTest, FixedDrivesAreScannedInTheirOrderAndNoOthers) {
    volumes[L'E'].add({24, 5, L"on E"}, MftRecordBytes());
    volumes[L'C'].add({24, 5, L"on C"}, MftRecordBytes());
    volumes[L'D'].add({24, 5, L"on D"}, MftRecordBytes());
    volumes[L'D'].fixed = false;
    ASSERT_TRUE(scan());
    EXPECT_EQ(index.volumes, (std::vector<std::uint16_t>{'C', 'E'}));
    EXPECT_EQ(liveNames(), (Names{L"on C", L"on E"}));
    EXPECT_EQ(index.records()[1].volume, 1);
    EXPECT_EQ(volumes[L'D'].opened, 0);
}

TEST_F(VolumeScanTest, TheFirstAndTheLastLetterAreDrivesToo) {
    volumes[L'A'].add({24, 5, L"on A"}, MftRecordBytes());
    volumes[L'Z'].add({24, 5, L"on Z"}, MftRecordBytes());
    ASSERT_TRUE(scan());
    EXPECT_EQ(liveNames(), (Names{L"on A", L"on Z"}));
}

TEST_F(VolumeScanTest, ALetterForWhichThereIsNoPlaceFails) {
    // As a damaged cache may leave it.
    index.volumes.assign(NTFSIndex::kMostVolumes, 'x');
    given(24, L"a");
    EXPECT_FALSE(scan());
    EXPECT_TRUE(index.records().empty());
    EXPECT_EQ(c().closed, 1);
}

TEST_F(VolumeScanTest, WithoutDrivesItFails) { EXPECT_FALSE(scan()); }

TEST_F(VolumeScanTest, WithoutFixedDrivesThereIsNothingToFail) {
    volumes[L'D'].fixed = false;
    EXPECT_TRUE(scan());
}

TEST_F(VolumeScanTest, WithoutRightsItFailsAndTheIndexStaysEmpty) {
    given(24, L"a");
    c().opens = false;
    EXPECT_FALSE(scan());
    EXPECT_TRUE(index.records().empty());
    EXPECT_TRUE(index.volumes.empty());
}

TEST_F(VolumeScanTest, AFixedVolumeOfAnotherKindFailsTheScanButNotTheOthers) {
    given(24, L"on C");
    c().volumeData = {};  // as FAT32 answers
    volumes[L'D'].add({24, 5, L"on D"}, MftRecordBytes());
    EXPECT_FALSE(scan());
    EXPECT_EQ(liveNames(), Names{L"on D"});
    EXPECT_EQ(index.volumes, (std::vector<std::uint16_t>{'C', 'D'}));
    EXPECT_EQ(c().opened, 1);
    EXPECT_EQ(c().closed, 1);
}

TEST_F(VolumeScanTest, AVolumeWithoutAJournalFails) {
    given(24, L"a");
    c().hasJournal = false;
    EXPECT_FALSE(scan());
    EXPECT_TRUE(index.records().empty());
    EXPECT_EQ(c().closed, 1);
}

TEST_F(VolumeScanTest, VolumeDataThatMeansNothingFails) {
    given(24, L"a");
    // The largest record is one that fits into four megabytes with what stands before it.
    constexpr std::uint32_t kLargest = 0x400000 - 16;
    for (const std::uint32_t recordSize : {0u, kLargest + 1, 0xFFFFFFFFu}) {
        c().volumeData = test::volumeDataBytes(recordSize, 1024 * 100);
        EXPECT_FALSE(scan()) << recordSize;
    }
    c().volumeData = Bytes(63, 1);
    EXPECT_FALSE(scan());
    EXPECT_TRUE(index.records().empty());
    c().volumeData = test::volumeDataBytes(kLargest, std::uint64_t{kLargest} * 25);
    EXPECT_TRUE(scan());
    EXPECT_EQ(c().recordRoom, 0x400000u);
}

TEST_F(VolumeScanTest, AVolumeThatClaimsAnEndlessTableIsAskedForWhatItHas) {
    given(24, L"a", MftRecordBytes().residentData(3));
    c().volumeData = test::volumeDataBytes(1, 0xFFFFFFFFFFFFFFFF);
    c().recordOf = [](std::uint64_t) { return MftRecordBytes().residentData(3).ended(0); };
    ASSERT_TRUE(scan());
    EXPECT_EQ(c().recordsAsked.size(), 1u);
}

TEST_F(VolumeScanTest, AnEnumerationThatDoesNotMoveEnds) {
    int asked = 0;
    c().enumerate = [&asked](auto, ScriptedVolume::Room room) -> Volume::Answer {
        ++asked;
        return answer(test::usnAnswer(30, {test::usnRecord({30, 5, L"again"})}), room);
    };
    ASSERT_TRUE(scan());
    EXPECT_EQ(asked, 2) << "from 0 to 30, and not from 30 to 30";
    EXPECT_EQ(liveNames(), Names{L"again"});
}

TEST_F(VolumeScanTest, AnAnswerOfTheNumberAloneIsGoneOnFrom) {
    int asked = 0;
    c().enumerate = [&asked](auto, ScriptedVolume::Room room) -> Volume::Answer {
        switch (++asked) {
            case 1:
                return answer(test::usnAnswer(26, {}), room);
            case 2:
                return answer(test::usnAnswer(40, {test::usnRecord({30, 5, L"a"})}), room);
            default:
                return std::nullopt;
        }
    };
    ASSERT_TRUE(scan());
    EXPECT_EQ(asked, 3);
    EXPECT_EQ(liveNames(), Names{L"a"});
}

TEST_F(VolumeScanTest, ThePlaceToGoOnFromMayCarryASequenceNumber) {
    std::vector<std::uint64_t> places = {0x000900000000001E, 0x0001000000000028};
    std::size_t asked = 0;
    c().enumerate = [&](auto, ScriptedVolume::Room room) -> Volume::Answer {
        EXPECT_EQ(room.size(), 0x100000u);
        if (asked == places.size()) return std::nullopt;
        const std::uint64_t frn = 24 + asked;
        return answer(test::usnAnswer(places[asked++], {test::usnRecord({frn, 5, L"a"})}), room);
    };
    ASSERT_TRUE(scan());
    EXPECT_EQ(index.records().size(), 2u);
    Bytes request(24, 0);
    test::put(request, 0, places[1]);
    test::put(request, 16, c().nextUsn);
    EXPECT_EQ(c().enumerations.back(), request) << "and is handed back as it came";
}

TEST_F(VolumeScanTest, AnAnswerWithoutANumberEnds) {
    c().enumerate = [](auto, auto) -> Volume::Answer { return 3; };
    EXPECT_TRUE(scan());
    c().enumerate = [](auto, ScriptedVolume::Room room) -> Volume::Answer { return room.size() + 9; };
    EXPECT_TRUE(scan()) << "more bytes than there is room for";
}

TEST_F(VolumeScanTest, RecordsOfOtherVersionsArePassedOver) {
    c().enumerate = [done = false](auto, ScriptedVolume::Room room) mutable -> Volume::Answer {
        if (std::exchange(done, true)) return std::nullopt;
        return answer(test::usnAnswer(40, {test::usnRecordOfVersion(3, 96), test::usnRecord({30, 5, L"a"}),
                                           test::usnRecordOfVersion(4, 64), test::usnRecord({31, 5, L"b"})}),
                      room);
    };
    ASSERT_TRUE(scan());
    EXPECT_EQ(liveNames(), (Names{L"a", L"b"}));
}

TEST_F(VolumeScanTest, TheLetterIsTheFirstOneOfTheName) {
    volumes[L'c'].add({24, 5, L"a"}, MftRecordBytes());
    EXPECT_TRUE(scanVolume(index, volumes, L"c:"));
    EXPECT_EQ(index.volumes, (std::vector<std::uint16_t>{'C'}));
    volumes[L'1'].add({24, 5, L"b"}, MftRecordBytes());
    EXPECT_FALSE(scanVolume(index, volumes, L"1:"));
    EXPECT_EQ(volumes[L'1'].closed, 1);
    EXPECT_TRUE(scanVolume(index, volumes, L"1q"));
    EXPECT_EQ(index.volumes, (std::vector<std::uint16_t>{'C', 'Q'}));
}

TEST_F(VolumeScanTest, AStopEndsTheScanAsFailedInEachOfItsPasses) {
    for (std::uint64_t frn = 24; frn < 34; ++frn) given(frn, L"file", MftRecordBytes().attributeList());
    c().filesPerAnswer = 3;
    int whole = 0;
    ASSERT_TRUE(scanAllVolumes(index, volumes, [&whole] { return ++whole < 0; }));
    EXPECT_GT(whole, 20) << "asked before each call";
    for (int allowed = 0; allowed < whole; ++allowed) {
        NTFSIndex fresh;
        int asked = 0;
        EXPECT_FALSE(scanAllVolumes(fresh, volumes, [&] { return ++asked > allowed; })) << allowed;
    }
}

}  // namespace
}  // namespace varnelo
