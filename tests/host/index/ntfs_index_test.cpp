#include "index/ntfs_index.h"

#include <gtest/gtest.h>

#include <utility>

#include "host/index/cache_fixture.h"
#include "host/index/index_world.h"

namespace varnelo {
namespace {

using Entries = std::vector<std::uint32_t>;

class NtfsIndexTest : public ::testing::Test, protected IndexWorld {};

TEST_F(NtfsIndexTest, ANameOfOneUnitHasNoLongerGrams) {
    file(L"x");
    EXPECT_EQ(ones(L'x'), Entries{0});
    EXPECT_EQ(index.bigrams().size(), 0u);
    EXPECT_EQ(index.trigrams().size(), 0u);
}

TEST_F(NtfsIndexTest, FourEqualLettersGiveFourThreeAndTwoEntries) {
    const std::uint32_t other = file(L"b");
    const std::uint32_t record = file(L"aAaA");
    EXPECT_EQ(ones(L'a'), Entries(4, record));
    EXPECT_EQ(twos(L'a', L'a'), Entries(3, record));
    EXPECT_EQ(threes(L'a', L'a', L'a'), Entries(2, record));

    index.removePostings(record, L"aaaa");
    EXPECT_EQ(ones(L'a'), Entries{});
    EXPECT_EQ(twos(L'a', L'a'), Entries{});
    EXPECT_EQ(threes(L'a', L'a', L'a'), Entries{});
    EXPECT_EQ(index.unigrams().size(), 2u) << "an empty list stays";
    EXPECT_EQ(ones(L'b'), Entries{other});
}

TEST_F(NtfsIndexTest, ALongNameHasAllItsGrams) {
    std::wstring name;
    for (int i = 0; i < 300; ++i) name += static_cast<wchar_t>(0x4E00 + i);
    const std::uint32_t record = file(name);
    EXPECT_EQ(index.unigrams().size(), 300u);
    EXPECT_EQ(index.bigrams().size(), 299u);
    EXPECT_EQ(index.trigrams().size(), 298u);
    EXPECT_EQ(threes(name[63], name[64], name[65]), Entries{record});
    EXPECT_EQ(threes(name[297], name[298], name[299]), Entries{record});
}

TEST_F(NtfsIndexTest, FoldsAsciiLettersAlone) {
    file(L"\u00C4Z");
    EXPECT_EQ(ones(L'z').size(), 1u);
    EXPECT_EQ(ones(L'\u00C4').size(), 1u);
    EXPECT_EQ(ones(L'\u00E4').size(), 0u);
}

TEST_F(NtfsIndexTest, LoneSurrogatesSurvive) {
    const std::wstring name = {L'a', wchar_t{0xD800}, L'b', wchar_t{0xDC00}};
    EXPECT_EQ(index.nameOf(file(name)), name);
    EXPECT_EQ(threes(L'a', wchar_t{0xD800}, L'b'), Entries{0});
}

TEST_F(NtfsIndexTest, NamesLieOneBehindTheOtherWithoutMerging) {
    EXPECT_EQ(index.addName(L"ab"), 0u);
    EXPECT_EQ(index.addName(L"ab"), 3u);
    EXPECT_EQ(index.addName(L""), 6u);
    EXPECT_EQ(index.names().size(), 7u);
    EXPECT_EQ(index.names().data()[2], 0);
    EXPECT_EQ(index.names().data()[6], 0);
}

TEST_F(NtfsIndexTest, AnExtensionBeginsAtTheLastDotWithALetterBefore) {
    const auto extension = [this](const wchar_t* name) {
        const std::uint16_t id = index.extensionIdOf(name);
        return id == FileRecord::kNoExtension ? std::wstring(L"none") : index.extensions().text(id);
    };
    EXPECT_EQ(extension(L""), L"none");
    EXPECT_EQ(extension(L"readme"), L"none");
    EXPECT_EQ(extension(L".profile"), L"none");
    EXPECT_EQ(extension(L"."), L"none");
    EXPECT_EQ(extension(L"a.TXT"), L".txt");
    EXPECT_EQ(extension(L"b.tar.gz"), L".gz");
    EXPECT_EQ(extension(L".a.b"), L".b");
    EXPECT_EQ(extension(L"dot."), L".");
    EXPECT_EQ(index.extensionIdOf(L"c.txt"), index.extensionIdOf(L"d.TxT"));
}

TEST_F(NtfsIndexTest, ExtensionsBeyondTheLastIdAreNotToldApart) {
    for (std::uint32_t i = 0; i < 65535; ++i) {
        ASSERT_EQ(index.extensionIdOf(L"a." + std::to_wstring(i)), i);
    }
    EXPECT_EQ(index.extensionIdOf(L"a.new"), FileRecord::kNoExtension);
    EXPECT_EQ(index.extensions().size(), 65535u);
    EXPECT_EQ(index.extensionIdOf(L"a.65534"), 65534);
}

TEST_F(NtfsIndexTest, ARecordHoldsWhatItWasGiven) {
    onVolume(L'C');
    onVolume(L'D');
    const std::uint32_t i =
        index.addRecord({0xABCD000000000123, 0x0102000000000456, 1, 7, 8, 0x30}, L"Folder.d");
    EXPECT_EQ(record(i).frn, 0x123u);
    EXPECT_EQ(record(i).parentFrn, 0x456u);
    EXPECT_EQ(record(i).flags, FileRecord::kDirectory);
    EXPECT_EQ(record(i).size, 7u);
    EXPECT_EQ(record(i).modified, 8u);
    EXPECT_EQ(record(i).attributes, 0x30u);
    EXPECT_EQ(record(i).volume, 1);
    EXPECT_EQ(index.extensions().text(record(i).extension), L".d");
    EXPECT_EQ(index.nameOf(i), L"Folder.d");
    EXPECT_EQ(index.recordByKey(0x0001000000000123), i);
}

TEST_F(NtfsIndexTest, ARecordThatIsAddedDeadHasNoPostings) {
    const std::uint32_t i = index.addRecord({30, 5, FileRecord::kDeleted, 0, 0, 0}, L"dead");
    EXPECT_EQ(index.unigrams().size(), 0u);
    EXPECT_EQ(index.recordByKey(30), i);
    EXPECT_FALSE(index.columns().live(i));
}

TEST_F(NtfsIndexTest, OneNumberOnTwoVolumesIsTwoRecords) {
    onVolume(L'C');
    const std::uint32_t first = file(100, L"here");
    onVolume(L'D');
    const std::uint32_t second = file(100, L"there");
    EXPECT_EQ(index.recordByKey(recordKey(0, 100)), first);
    EXPECT_EQ(index.recordByKey(recordKey(1, 100)), second);
}

TEST_F(NtfsIndexTest, AllGenerationsOfAPlaceAreOneFile) {
    file(0x0001000000000064, L"old");
    const std::uint32_t newer = file(0x0002000000000064, L"new");
    EXPECT_EQ(index.recordByKey(recordKey(0, 100)), newer);
}

TEST_F(NtfsIndexTest, ThereIsRoomForTwentySixVolumes) {
    for (wchar_t letter = L'A'; letter <= L'Z'; ++letter) {
        ASSERT_EQ(index.volumeIndexOf(letter), letter - L'A');
    }
    EXPECT_EQ(index.volumeIndexOf(L'!'), std::nullopt);
    EXPECT_EQ(index.volumeIndexOf(L'C'), 2);
    EXPECT_EQ(index.volumes.size(), 26u);
}

TEST_F(NtfsIndexTest, ARemovedRecordIsATombstoneWhosePlaceIsFree) {
    const std::uint32_t i = file(40, L"gone.txt");
    const std::uint32_t kept = file(41, L"kept.txt");
    index.removeRecord(i);
    EXPECT_TRUE(record(i).deleted());
    EXPECT_EQ(record(i).frn, 40u) << "the bytes stay";
    EXPECT_EQ(index.nameOf(i), L"gone.txt") << "the name stays";
    EXPECT_EQ(index.recordByKey(40), std::nullopt);
    EXPECT_EQ(ones(L't'), (Entries{kept, kept, kept}));
    EXPECT_EQ(Entries(index.freeRecords().begin(), index.freeRecords().end()), Entries{i});

    index.removeRecord(i);
    EXPECT_EQ(index.freeRecords().size(), 1u) << "a place is not given away twice";
}

TEST_F(NtfsIndexTest, ACreatedRecordTakesThePlaceThatWasFreedLast) {
    for (const wchar_t* name : {L"a", L"b", L"c"}) file(name);
    index.removeRecord(0);
    index.removeRecord(2);
    const std::size_t poolBefore = index.names().size();
    onVolume(L'Q');
    EXPECT_EQ(index.createRecord({50, 5, 0, 1, 2, 3}, L"d.x"), 2u);
    EXPECT_EQ(index.createRecord({51, 5, 0, 1, 2, 3}, L"e"), 0u);
    EXPECT_EQ(index.createRecord({52, 5, 0, 1, 2, 3}, L"f"), 3u);
    EXPECT_EQ(record(2).frn, 50u);
    EXPECT_FALSE(record(2).deleted());
    EXPECT_EQ(index.nameOf(2), L"d.x");
    EXPECT_EQ(index.names().size(), poolBefore + 4 + 2 + 2) << "the old names stay in the pool";
    EXPECT_EQ(index.recordByKey(50), 2u);
    EXPECT_EQ(ones(L'c'), Entries{});
    EXPECT_EQ(ones(L'd'), Entries{2});
}

TEST_F(NtfsIndexTest, APlaceThatIsNotFreeAnyMoreAfterALoadIsNotGivenAway) {
    const CacheFixture cache;
    NTFSIndex other;
    other.addRecord({40, 5}, L"one of two");
    other.addRecord({40, 5}, L"known by its number");
    other.removeRecord(other.addRecord({41, 5}, L"known again"));
    ASSERT_TRUE(cache.save(other));
    for (int i = 0; i < 4; ++i) index.removeRecord(file(60 + static_cast<std::uint64_t>(i), L"old"));
    ASSERT_TRUE(cache.load(index));
    ASSERT_EQ(index.freeRecords().size(), 4u);
    EXPECT_EQ(index.createRecord({50, 5}, L"new"), 3u) << "behind what was loaded";
    EXPECT_EQ(index.nameOf(0), L"one of two");
    EXPECT_EQ(index.recordByKey(40), 1u);
    EXPECT_EQ(index.recordByKey(41), 2u);
}

TEST_F(NtfsIndexTest, APrunedRecordStaysKnownAndKeepsItsPlace) {
    const std::uint32_t i = file(40, L"$Meta");
    index.pruneRecord(i);
    EXPECT_TRUE(record(i).deleted());
    EXPECT_EQ(index.recordByKey(40), i);
    EXPECT_EQ(index.freeRecords().size(), 0u);
    EXPECT_EQ(ones(L'$'), Entries{});

    index.removeRecord(i);
    EXPECT_EQ(index.recordByKey(40), std::nullopt);
    EXPECT_EQ(index.freeRecords().size(), 1u);
}

TEST_F(NtfsIndexTest, AnUpdateLeavesNameFlagsAndKey) {
    const std::uint32_t i = file(40, L"name.txt");
    index.updateRecord(i, 0x000100000000004D, 11, 12, 13);
    EXPECT_EQ(record(i).parentFrn, 77u);
    EXPECT_EQ(record(i).size, 11u);
    EXPECT_EQ(record(i).modified, 12u);
    EXPECT_EQ(record(i).attributes, 13u);
    EXPECT_EQ(record(i).flags, 0u);
    EXPECT_EQ(index.recordByKey(40), i);
    EXPECT_EQ(threes(L't', L'x', L't'), Entries{i});
}

TEST_F(NtfsIndexTest, ARenameMovesThePostings) {
    const std::uint32_t i = file(40, L"old.txt");
    const std::uint32_t j = file(41, L"oak");
    index.renameRecord(i, {40, 77, FileRecord::kDirectory, 1, 2, 3}, L"new.doc");
    EXPECT_EQ(index.nameOf(i), L"new.doc");
    EXPECT_EQ(record(i).parentFrn, 77u);
    EXPECT_EQ(record(i).flags, FileRecord::kDirectory);
    EXPECT_EQ(index.extensions().text(record(i).extension), L".doc");
    EXPECT_EQ(ones(L'o'), (Entries{j, i}));
    EXPECT_EQ(threes(L'o', L'l', L'd'), Entries{});
    EXPECT_EQ(index.recordByKey(40), i);
}

TEST_F(NtfsIndexTest, AnIndexThatIsNoneOfARecordChangesNothing) {
    file(L"only");
    index.removeRecord(9);
    index.pruneRecord(9);
    index.updateRecord(9, 1, 2, 3, 4);
    index.fillRecord(9, 2, 3, 4);
    index.setSize(9, 2);
    index.renameRecord(9, {}, L"x");
    EXPECT_EQ(index.records().size(), 1u);
    EXPECT_EQ(index.freeRecords().size(), 0u);
    EXPECT_EQ(index.nameOf(9), L"");
}

TEST_F(NtfsIndexTest, ManyKeysComeAndGo) {
    for (int round = 0; round < 3; ++round) {
        for (std::uint32_t i = 0; i < 3000; ++i) index.createRecord({1000 + i * 7, 5, 0, 0, 0, 0}, L"f");
        for (std::uint32_t i = 0; i < 3000; i += 2) {
            const auto found = index.recordByKey(recordKey(0, 1000 + i * 7));
            ASSERT_TRUE(found);
            index.removeRecord(*found);
        }
        for (std::uint32_t i = 0; i < 3000; ++i) {
            const auto found = index.recordByKey(recordKey(0, 1000 + i * 7));
            ASSERT_EQ(found.has_value(), i % 2 == 1);
            ASSERT_TRUE(!found || record(*found).frn == 1000 + i * 7);
        }
        for (std::uint32_t i = 1; i < 3000; i += 2)
            index.removeRecord(*index.recordByKey(recordKey(0, 1000 + i * 7)));
    }
    EXPECT_EQ(index.records().size(), 3000u);
}

TEST_F(NtfsIndexTest, ClearingStopsTheMonitorFirstAndLeavesNothing) {
    onVolume(L'D');
    pathOf(file(24, L"a.txt"));
    index.removeRecord(file(25, L"b.txt"));
    file(26, L"c.txt");
    onVolume(L'E');
    bool freeToTake = false;
    bool stillFull = false;
    index.stopMonitor = [&] {
        freeToTake = index.mutex.try_lock();
        if (freeToTake) index.mutex.unlock();
        stillFull = index.records().size() == 3;
    };
    index.clearIndex();
    EXPECT_TRUE(freeToTake) << "the monitor may need the mutex to end";
    EXPECT_TRUE(stillFull);
    EXPECT_EQ(index.records().size(), 0u);
    EXPECT_EQ(index.names().size(), 0u);
    EXPECT_EQ(index.unigrams().size() + index.bigrams().size() + index.trigrams().size(), 0u);
    EXPECT_EQ(index.extensions().size(), 0u);
    EXPECT_EQ(index.freeRecords().size(), 0u);
    EXPECT_TRUE(index.volumes.empty());
    EXPECT_EQ(index.currentVolume, 0);
    EXPECT_EQ(index.recordByKey(24), std::nullopt);
    onVolume(L'F');
    EXPECT_EQ(pathOf(file(24, L"new")), L"F:\\new") << "paths are forgotten too";
    EXPECT_EQ(index.searchNames(L"*"), Entries{0});
}

TEST_F(NtfsIndexTest, ContentsThatChangePlacesAreWholeInTheirNewPlaces) {
    const CacheFixture cache;
    NTFSIndex loaded;  // its lists lie where they were read to
    {
        NTFSIndex earlier;
        earlier.currentVolume = earlier.volumeIndexOf(L'D').value();
        for (std::uint64_t i = 0; i < 50; ++i) earlier.addRecord({100 + i, 5, 0, i, 0, 0}, L"stored.doc");
        ASSERT_TRUE(cache.save(earlier));
        ASSERT_TRUE(cache.load(loaded));
    }
    onVolume(L'C');
    const std::uint32_t gone = file(24, L"gone.txt");
    file(107, L"here.txt");  // a number that the other one has too
    pathOf(1);
    index.removeRecord(gone);
    int stops = 0;
    index.stopMonitor = [&stops] { ++stops; };

    loaded.currentVolume = 1;
    index.swapContent(loaded);
    EXPECT_EQ(std::exchange(index.currentVolume, 0), 1);
    EXPECT_EQ(index.searchNames(L"stored").size(), 50u);
    EXPECT_EQ(pathOf(7), L"D:\\stored.doc");
    EXPECT_EQ(index.recordByKey(recordKey(0, 107)), 7u);
    EXPECT_EQ(index.extensions().text(record(7).extension), L".doc");
    index.removeRecord(7);
    EXPECT_EQ(index.createRecord({300, 5, 0, 0, 0, 0}, L"stored too.doc"), 7u);
    EXPECT_EQ(index.searchNames(L"stored").size(), 50u);
    EXPECT_EQ(index.searchNames(L"*.doc").size(), 50u);

    EXPECT_EQ(loaded.searchNames(L"here"), Entries{1});
    EXPECT_EQ(loaded.searchNames(L"gone"), Entries{});
    EXPECT_EQ(loaded.volumes, (std::vector<std::uint16_t>{'C'}));
    EXPECT_EQ(loaded.createRecord({26, 5, 0, 0, 0, 0}, L"new.txt"), gone) << "the free place came along";
    EXPECT_EQ(loaded.fullPath(loaded.records()[1]), L"C:\\here.txt");
    loaded.clearIndex();
    EXPECT_EQ(stops, 0);
    EXPECT_EQ(index.searchNames(L"stored").size(), 50u) << "the lists live as long as what they are of";
    index.clearIndex();
    EXPECT_EQ(stops, 1) << "what ends the monitor stays";
}

TEST_F(NtfsIndexTest, OfARecordThatChangedSinceThePreparationNothingIsKnown) {
    file(L"abc");
    file(L"abab");
    const auto words = [this](std::uint32_t i) { return index.columns().absentWords()[i]; };
    EXPECT_EQ(words(0), kAnyWord);
    index.prepareSearches();
    EXPECT_EQ(words(0), 0u);
    EXPECT_EQ(words(1), absentWordsOf(index.nameUnits(1)));
    EXPECT_NE(words(1), 0u);
    index.renameRecord(0, {24, kRootFrn, 0, 0, 0, 0}, L"abcd");
    file(L"new");
    EXPECT_EQ(words(0), kAnyWord);
    EXPECT_EQ(words(2), kAnyWord);
    EXPECT_NE(words(1), kAnyWord);
}

TEST_F(NtfsIndexTest, WhetherListsCanBeReliedUponGoesWithThem) {
    file(L"xabcd");
    // The file is no longer in the lists of all its threes, so that of the first one counts.
    index.removePostings(0, L"bcd");
    ASSERT_EQ(index.searchNames(L"abcd"), Entries{0});

    NTFSIndex other;
    other.addRecord({30, kRootFrn, 0, 0, 0, 0}, L"of the other");
    index.swapContent(other);
    EXPECT_EQ(other.searchNames(L"abcd"), Entries{0});
    EXPECT_EQ(index.searchNames(L"other"), Entries{0});
    index.swapContent(other);
    EXPECT_EQ(index.searchNames(L"abcd"), Entries{0});
    EXPECT_EQ(other.searchNames(L"other"), Entries{0});
}

}  // namespace
}  // namespace varnelo
