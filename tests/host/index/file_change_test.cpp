// Each row of what a journal's record does to the index.

#include "index/file_change.h"

#include <gtest/gtest.h>

#include "host/index/cache_fixture.h"
#include "host/index/monitor_world.h"

namespace varnelo {
namespace {

using test::MftRecordBytes;
using Hits = std::vector<std::uint32_t>;

class FileChangeTest : public ::testing::Test, protected MonitorWorld {
protected:
    void SetUp() override {
        folder = index.addRecord({30, kRootFrn, FileRecord::kDirectory, 0, 0, test::kFolder}, L"folder");
        known = index.addRecord({40, 30, 0, 1, 2, 3}, L"known.txt");
        ASSERT_TRUE(follow());
        recordIs(40, MftRecordBytes().standardInformation(801, 802, 0x22).residentData(99));
        recordIs(50, MftRecordBytes().standardInformation(901, 902, 0x24).nonResidentData(5000));
    }
    void expectUnchanged() {
        EXPECT_EQ(index.records().size(), 2u);
        EXPECT_EQ(index.nameOf(known), L"known.txt");
        EXPECT_EQ(record(known).size, 1u);
        EXPECT_EQ(record(known).modified, 2u);
        EXPECT_EQ(record(known).attributes, 3u);
        EXPECT_FALSE(record(known).deleted());
    }

    std::uint32_t folder = 0;
    std::uint32_t known = 0;
};

TEST_F(FileChangeTest, TheEndOfAnUnknownFileIsNothing) {
    closes(50, L"unknown", usn::kFileDelete);
    EXPECT_TRUE(round().empty());
    expectUnchanged();
}

TEST_F(FileChangeTest, TheEndOfAKnownFileRemovesIt) {
    closes(0x0009000000000028, L"known.txt", usn::kFileDelete, 0x000500000000001E);
    const auto told = round();
    ASSERT_EQ(told.size(), 1u);
    EXPECT_EQ(told[0].type, FileChange::kDeleted);
    EXPECT_EQ(told[0].frn, 40u);
    EXPECT_EQ(told[0].parentFrn, 30u);
    EXPECT_EQ(told[0].name, L"known.txt");
    EXPECT_EQ(told[0].path, L"C:\\folder\\known.txt");
    EXPECT_EQ(told[0].fileIndex, known);
    EXPECT_EQ(told[0].volume, 0);
    EXPECT_TRUE(record(known).deleted());
    EXPECT_EQ(index.recordByKey(40), std::nullopt);
    EXPECT_EQ(index.searchNames(L"known"), Hits{});
    EXPECT_EQ(index.freeRecords().size(), 1u);
    EXPECT_TRUE(c().recordsAsked.empty()) << "nobody asks for the record of a file that is gone";
}

TEST_F(FileChangeTest, AnEndCountsBeforeItsHandleIsClosedToo) {
    happens(40, L"known.txt", usn::kFileDelete);
    ASSERT_EQ(round().size(), 1u);
    EXPECT_TRUE(record(known).deleted());
}

TEST_F(FileChangeTest, AFileThatCameAndWentBetweenTwoRoundsIsNothing) {
    closes(50, L"short", usn::kFileCreate | usn::kDataExtend | usn::kFileDelete);
    EXPECT_TRUE(round().empty());
    expectUnchanged();
}

TEST_F(FileChangeTest, AnythingThatHappensToAnUnknownFileMakesItKnown) {
    for (const std::uint32_t reason : {std::uint32_t{0}, usn::kDataExtend, usn::kRenameNewName,
                                       usn::kBasicInfoChange, std::uint32_t{0x1000}}) {
        c().fileRecords.erase(60);
        const std::uint64_t frn = 60 + reason % 97;
        closes(frn, L"late", reason);
        const auto told = round();
        ASSERT_EQ(told.size(), 1u) << reason;
        EXPECT_EQ(told[0].type, FileChange::kCreated);
        EXPECT_TRUE(index.recordByKey(frn)) << reason;
    }
}

TEST_F(FileChangeTest, ANewFileIsEnteredWithWhatItsRecordTells) {
    closes(0x0002000000000032, L"new.PNG", usn::kFileCreate | usn::kDataExtend, 0x000500000000001E);
    const auto told = round();
    ASSERT_EQ(told.size(), 1u);
    EXPECT_EQ(told[0].type, FileChange::kCreated);
    EXPECT_EQ(told[0].frn, 50u);
    EXPECT_EQ(told[0].parentFrn, 30u);
    EXPECT_EQ(told[0].name, L"new.PNG");
    EXPECT_EQ(told[0].path, L"");
    EXPECT_EQ(told[0].fileIndex, 2u);
    const FileRecord& added = record(2);
    EXPECT_EQ(added.frn, 50u);
    EXPECT_EQ(added.parentFrn, 30u);
    EXPECT_EQ(added.size, 5000u);
    EXPECT_EQ(added.modified, 902u) << "the time of the record's last change";
    EXPECT_EQ(added.attributes, 0x24u);
    EXPECT_EQ(added.flags, 0u);
    EXPECT_EQ(index.extensions().text(added.extension), L".png");
    EXPECT_EQ(pathOf(2), L"C:\\folder\\new.PNG");
    EXPECT_EQ(index.searchNames(L"*.png"), Hits{2});
    EXPECT_EQ(c().recordsAsked, std::vector<std::uint64_t>{0x0002000000000032}) << "with its sequence number";
}

TEST_F(FileChangeTest, ANewFileTakesTheFreedPlace) {
    closes(40, L"known.txt", usn::kFileDelete);
    round();
    const std::size_t poolBefore = index.names().size();
    closes(50, L"new", usn::kFileCreate);
    const auto told = round();
    ASSERT_EQ(told.size(), 1u);
    EXPECT_EQ(told[0].fileIndex, known);
    EXPECT_EQ(index.names().size(), poolBefore + 4) << "the old name stays in the pool";
    EXPECT_EQ(index.recordByKey(50), known);
    EXPECT_EQ(index.searchNames(L"new"), Hits{known});
    EXPECT_FALSE(record(known).deleted());
}

TEST_F(FileChangeTest, ANewFolderIsOneByTheJournalsAttributes) {
    recordIs(50, MftRecordBytes().standardInformation(1, 2, 0));
    closes(50, L"new folder", usn::kFileCreate, 30, test::kFolder);
    round();
    EXPECT_EQ(record(2).flags, FileRecord::kDirectory);
    EXPECT_EQ(record(2).attributes, 0u) << "and its attributes are those of the record";
}

TEST_F(FileChangeTest, AFolderIsOneByItsBitAlone) {
    closes(50, L"new", usn::kFileCreate, 30, ~test::kFolder);
    round();
    EXPECT_EQ(record(2).flags, 0u);
}

TEST_F(FileChangeTest, TheCreationOfAKnownFileIsPassedOver) {
    closes(40, L"again.txt", usn::kFileCreate);
    closes(40, L"again.txt", usn::kFileCreate | usn::kRenameNewName | usn::kDataExtend);
    EXPECT_TRUE(round().empty());
    expectUnchanged();
}

TEST_F(FileChangeTest, TheCreationOfATombstoneThatIsStillKnownIsPassedOver) {
    index.pruneRecord(known);
    closes(40, L"again.txt", usn::kFileCreate);
    EXPECT_TRUE(round().empty());
    EXPECT_TRUE(record(known).deleted());
}

TEST_F(FileChangeTest, ARenameMakesATombstoneThatIsStillKnownAFileAgain) {
    index.pruneRecord(known);
    closes(40, L"known.txt", usn::kDataExtend, 30);
    ASSERT_EQ(round().size(), 1u);
    EXPECT_TRUE(record(known).deleted()) << "what is written to it does not";
    EXPECT_EQ(record(known).size, 99u);
    closes(40, L"back.txt", usn::kRenameNewName, 30);
    const auto told = round();
    ASSERT_EQ(told.size(), 1u);
    EXPECT_EQ(told[0].type, FileChange::kRenamed);
    EXPECT_EQ(told[0].path, L"C:\\folder\\known.txt");
    EXPECT_FALSE(record(known).deleted());
    EXPECT_EQ(index.searchNames(L"back"), Hits{known});
    EXPECT_EQ(index.searchNames(L"known"), Hits{});
}

TEST_F(FileChangeTest, ATombstoneOfTheCacheIsKnownAgainAfterALoad) {
    const CacheFixture cache;
    index.removeRecord(known);
    ASSERT_TRUE(cache.save(index));
    index.clearIndex();
    ASSERT_TRUE(cache.load(index));
    ASSERT_TRUE(follow());
    closes(40, L"successor.txt", usn::kFileCreate | usn::kDataExtend, 30);
    EXPECT_TRUE(round().empty()) << "its creation is passed over";
    EXPECT_TRUE(record(known).deleted());
    closes(40, L"successor.txt", usn::kFileDelete, 30);
    const auto told = round();
    ASSERT_EQ(told.size(), 1u);
    EXPECT_EQ(told[0].path, L"C:\\folder\\known.txt") << "and its end is that of the tombstone";
    closes(40, L"successor.txt", usn::kFileCreate, 30);
    ASSERT_EQ(round().size(), 1u);
    EXPECT_EQ(pathOf(known), L"C:\\folder\\successor.txt");
}

TEST_F(FileChangeTest, EachChangeOfContentUpdates) {
    std::uint64_t size = 100;
    for (const std::uint32_t reason :
         {usn::kBasicInfoChange, usn::kDataOverwrite, usn::kDataExtend, usn::kDataTruncation}) {
        recordIs(40, MftRecordBytes().standardInformation(1, reason, 0x22).nonResidentData(++size));
        closes(40, L"known.txt", reason, 30);
        const auto told = round();
        ASSERT_EQ(told.size(), 1u) << reason;
        EXPECT_EQ(told[0].type, FileChange::kModified);
        EXPECT_EQ(told[0].fileIndex, known);
        EXPECT_EQ(told[0].path, L"");
        EXPECT_EQ(record(known).size, size);
        EXPECT_EQ(record(known).modified, reason);
        EXPECT_EQ(record(known).attributes, 0x22u);
    }
    EXPECT_EQ(index.nameOf(known), L"known.txt");
}

TEST_F(FileChangeTest, AnUpdateMayMoveAFileToAnotherFolder) {
    pathOf(known);
    closes(40, L"known.txt", usn::kDataExtend, kRootFrn);
    round();
    EXPECT_EQ(pathOf(known), L"C:\\known.txt");
}

TEST_F(FileChangeTest, ACloseAloneIsNothing) {
    closes(40, L"known.txt", 0);
    closes(40, L"known.txt", 0x1000);  // the old name of a rename
    EXPECT_TRUE(round().empty());
    expectUnchanged();
}

TEST_F(FileChangeTest, ARenameGivesTheNewNameAndTellsTheOldPath) {
    closes(40, L"other.doc", usn::kRenameNewName, kRootFrn);
    const auto told = round();
    ASSERT_EQ(told.size(), 1u);
    EXPECT_EQ(told[0].type, FileChange::kRenamed);
    EXPECT_EQ(told[0].name, L"other.doc");
    EXPECT_EQ(told[0].path, L"C:\\folder\\known.txt");
    EXPECT_EQ(told[0].fileIndex, known);
    EXPECT_EQ(pathOf(known), L"C:\\other.doc");
    EXPECT_EQ(record(known).size, 99u);
    EXPECT_EQ(record(known).modified, 802u);
    EXPECT_EQ(record(known).attributes, 0x22u);
    EXPECT_EQ(index.extensions().text(record(known).extension), L".doc");
    EXPECT_EQ(index.searchNames(L"known"), Hits{});
    EXPECT_EQ(index.searchNames(L"other"), Hits{known});
}

TEST_F(FileChangeTest, ARenameCountsMoreThanWhatWasWrittenBefore) {
    closes(40, L"other.doc", usn::kRenameNewName | usn::kDataExtend | usn::kBasicInfoChange, 30);
    const auto told = round();
    ASSERT_EQ(told.size(), 1u);
    EXPECT_EQ(told[0].type, FileChange::kRenamed);
}

TEST_F(FileChangeTest, ARenameTakesTheFlagsFromTheJournal) {
    closes(40, L"known.txt", usn::kRenameNewName, 30, test::kFolder);
    round();
    EXPECT_EQ(record(known).flags, FileRecord::kDirectory);
}

TEST_F(FileChangeTest, ARenamedFolderLeavesRememberedPathsBelowItAsTheyWere) {
    const std::uint32_t other = index.addRecord({41, 30, 0, 0, 0, 0}, L"other.txt");
    EXPECT_EQ(pathOf(known), L"C:\\folder\\known.txt");
    closes(30, L"renamed", usn::kRenameNewName, kRootFrn, test::kFolder);
    ASSERT_EQ(round().size(), 1u);
    EXPECT_EQ(pathOf(folder), L"C:\\renamed");
    EXPECT_EQ(pathOf(known), L"C:\\folder\\known.txt");
    EXPECT_EQ(pathOf(other), L"C:\\renamed\\other.txt") << "nobody had asked for this one";
}

TEST_F(FileChangeTest, AnOpenFileIsNotToldUntilItIsClosed) {
    happens(40, L"known.txt", usn::kDataExtend);
    happens(50, L"new", usn::kFileCreate);
    EXPECT_TRUE(round().empty());
    EXPECT_TRUE(c().recordsAsked.empty());
    closes(50, L"new", usn::kFileCreate | usn::kDataExtend);
    EXPECT_EQ(round().size(), 1u);
}

TEST_F(FileChangeTest, WithoutItsRecordAFileHasTheJournalsAttributesAlone) {
    c().fileRecords.clear();
    closes(50, L"new", usn::kFileCreate, 30, 0x23);
    closes(40, L"known.txt", usn::kDataExtend, 30, 0x21);
    ASSERT_EQ(round().size(), 2u);
    EXPECT_EQ(record(2).size, 0u);
    EXPECT_EQ(record(2).modified, 0u);
    EXPECT_EQ(record(2).attributes, 0x23u);
    EXPECT_EQ(record(known).size, 0u);
    EXPECT_EQ(record(known).attributes, 0x21u);
}

TEST_F(FileChangeTest, TheRecordOfAnotherNumberIsNoneOfThisFile) {
    c().fileRecords.erase(50);  // the platform goes down to 40
    closes(50, L"new", usn::kFileCreate, 30, 0x23);
    round();
    EXPECT_EQ(record(2).size, 0u);
    EXPECT_EQ(record(2).attributes, 0x23u);
}

TEST_F(FileChangeTest, TheNumberOfARecordMayCarryASequenceNumber) {
    c().fileRecords[50] = MftRecordBytes().residentData(7).ended();
    c().sequence = 9;
    closes(50, L"new", usn::kFileCreate, 30, 0x23);
    round();
    EXPECT_EQ(record(2).size, 7u);
}

TEST_F(FileChangeTest, ARecordWithoutTheSignatureIsNotTaken) {
    test::Bytes bytes = MftRecordBytes().standardInformation(1, 2, 0x24).residentData(7).ended();
    bytes[0] = 'B';
    c().fileRecords[50] = bytes;
    closes(50, L"new", usn::kFileCreate, 30, 0x23);
    round();
    EXPECT_EQ(record(2).size, 0u);
    EXPECT_EQ(record(2).modified, 0u);
    EXPECT_EQ(record(2).attributes, 0x23u);
}

TEST_F(FileChangeTest, ARecordOfFourKilobytesFits) {
    c().fileRecords[50] = MftRecordBytes().residentData(7).ended(4096);
    closes(50, L"new", usn::kFileCreate);
    round();
    EXPECT_EQ(record(2).size, 7u);
    EXPECT_EQ(c().recordRoom, 0x1010u);
}

TEST_F(FileChangeTest, WithoutStandardInformationAFileHasNoAttributes) {
    recordIs(50, MftRecordBytes().residentData(7));
    closes(50, L"new", usn::kFileCreate, 30, 0x23);
    round();
    EXPECT_EQ(record(2).size, 7u);
    EXPECT_EQ(record(2).attributes, 0u);
    EXPECT_EQ(record(2).modified, 0u);
}

TEST_F(FileChangeTest, ANumberThatIsUsedAnewIsAnotherFile) {
    closes(40, L"known.txt", usn::kFileDelete, 30);
    closes(0x0002000000000028, L"successor.txt", usn::kFileCreate | usn::kDataExtend, 30);
    const auto told = round();
    ASSERT_EQ(told.size(), 2u);
    EXPECT_EQ(told[0].type, FileChange::kDeleted);
    EXPECT_EQ(told[1].type, FileChange::kCreated);
    EXPECT_EQ(told[1].fileIndex, known);
    EXPECT_EQ(pathOf(known), L"C:\\folder\\successor.txt");
}

TEST_F(FileChangeTest, ANewFileIsOnTheVolumeOfItsJournalWhateverWasAtWorkLast) {
    onVolume(L'D');
    PendingChange change;
    change.name = L"new";
    change.frn = 50;
    change.reason = usn::kFileCreate | usn::kClose;
    std::vector<FileChange> told;
    applyChange(index, change, 0, told);
    ASSERT_EQ(told.size(), 1u);
    EXPECT_EQ(told[0].volume, 0);
    EXPECT_EQ(record(2).volume, 0);
    EXPECT_EQ(index.recordByKey(recordKey(0, 50)), 2u);
    applyChange(index, change, 1, told);
    EXPECT_EQ(record(3).volume, 1) << "the same number on another volume";
}

}  // namespace
}  // namespace varnelo
