// A monitor that follows the journal of a real volume: what a change tells comes from the file's record.

#include <gtest/gtest.h>

#include "index/file_change_monitor.h"
#include "index/usn_record.h"
#include "index/volume_scan.h"
#include "support/ntfs_image_volume.h"

namespace varnelo::test {
namespace {

class ImageJournal : public testing::Test {
protected:
    ImageJournal() {
        EXPECT_TRUE(scanVolume(index, source, L"C:"));
        EXPECT_TRUE(monitor.findJournals([this](const FileChange& change) { changes.push_back(change); }));
    }
    // The index's record of the file at this path.
    std::uint32_t at(const std::wstring& path) {
        for (std::uint32_t i = 0; i < index.records().size(); ++i)
            if (index.fullPath(index.records()[i]) == path) return i;
        ADD_FAILURE() << "no such path";
        return 0;
    }
    void happens(std::uint32_t record, const std::wstring& name, std::uint32_t reason) {
        const FileRecord& file = index.records()[record];
        source.journal().add(
            {image->reference(file.frn), file.parentFrn, name, kArchive, reason | usn::kClose, 0});
    }
    // When the file's record was changed, by its bytes.
    std::uint64_t recordChange(std::uint64_t frn) const {
        for (const NtfsAttribute& each : attributesOf(image->record(frn)))
            if (each.type == NtfsAttribute::kStandardInformation) return littleEndian(each.value, 16, 8);
        return 0;
    }

    const std::shared_ptr<const NtfsImage> image = NtfsImage::made("small");
    NtfsImageSource source{image};
    NTFSIndex index;
    std::vector<FileChange> changes;
    FileChangeMonitor monitor{index, source, [](std::chrono::milliseconds) {}};
};

TEST_F(ImageJournal, AWriteTakesSizeAttributesAndTheRecordsOwnTime) {
    const std::uint32_t file = at(L"C:\\marks\\hidden and system");
    const std::uint64_t scanned = index.records()[file].modified;
    index.updateRecord(file, index.records()[file].parentFrn, 0, 0, 0);
    happens(file, L"hidden and system", usn::kDataExtend);
    monitor.runRound();
    ASSERT_EQ(changes.size(), 1u);
    EXPECT_EQ(changes[0].type, FileChange::kModified);
    EXPECT_EQ(index.records()[file].size, 100u);
    EXPECT_EQ(index.records()[file].attributes, 0x26u);
    EXPECT_EQ(index.records()[file].modified, recordChange(index.records()[file].frn));
    EXPECT_NE(index.records()[file].modified, scanned);
}

TEST_F(ImageJournal, ARenameTellsThePathThatWas) {
    const std::uint32_t file = at(L"C:\\marks\\archive");
    happens(file, L"archive, renamed", usn::kRenameNewName);
    monitor.runRound();
    ASSERT_EQ(changes.size(), 1u);
    EXPECT_EQ(changes[0].type, FileChange::kRenamed);
    EXPECT_EQ(changes[0].path, L"C:\\marks\\archive");
    EXPECT_EQ(index.fullPath(index.records()[file]), L"C:\\marks\\archive, renamed");
}

TEST_F(ImageJournal, ADeletedFileIsCreatedAnewInItsPlace) {
    const std::uint32_t file = at(L"C:\\marks\\offline");
    happens(file, L"offline", usn::kFileDelete);
    happens(file, L"offline", usn::kFileCreate);
    monitor.runRound();
    ASSERT_EQ(changes.size(), 2u);
    EXPECT_EQ(changes[1].type, FileChange::kCreated);
    EXPECT_EQ(changes[1].fileIndex, file);
    EXPECT_EQ(index.records()[file].size, 100u);
    EXPECT_EQ(index.records()[file].attributes, 0x1000u);
}

TEST_F(ImageJournal, ARecordThatIsUnusedByNowCostsSizeAndTimeOnly) {
    std::uint64_t unused = 24;
    while (unused < image->recordCount() && image->inUse(unused)) ++unused;
    source.journal().add({unused, 5, L"gone by now", kArchive, usn::kFileCreate | usn::kClose, 0});
    monitor.runRound();
    ASSERT_EQ(changes.size(), 1u);
    const FileRecord& record = index.records()[changes[0].fileIndex];
    EXPECT_EQ(record.frn, unused);
    EXPECT_EQ(record.attributes, kArchive);
    EXPECT_EQ(record.size, 0u);
    EXPECT_EQ(record.modified, 0u);
}

TEST_F(ImageJournal, AJournalMadeAnewIsReadFromItsBeginning) {
    const std::uint32_t file = at(L"C:\\marks\\none");
    source.journal().recreate(4711, 64);
    happens(file, L"none", usn::kBasicInfoChange);
    monitor.runRound();
    EXPECT_EQ(changes.size(), 1u);
}

TEST_F(ImageJournal, AJournalThatHasGoneOnTooFarIsNotFollowed) {
    const std::uint32_t file = at(L"C:\\marks\\none");
    happens(file, L"none", usn::kBasicInfoChange);
    happens(file, L"none", usn::kBasicInfoChange);
    source.journal().dropOldest(1);
    monitor.runRound();
    monitor.runRound();
    EXPECT_TRUE(changes.empty());
}

}  // namespace
}  // namespace varnelo::test
