// Scans of real volumes. tests/images/ compares every file with other readers; here stands what the images
// were given.

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "index/ntfs_index.h"
#include "index/volume_scan.h"
#include "support/ntfs_image_volume.h"

namespace varnelo::test {
namespace {

// Notes which files it is asked the size of.
class WatchedSource : public NtfsImageSource {
public:
    using NtfsImageSource::NtfsImageSource;
    std::optional<std::uint64_t> fileSize(const std::wstring& path) override {
        asked.push_back(path);
        return NtfsImageSource::fileSize(path);
    }
    std::vector<std::wstring> asked;
};

struct Scanned {
    // Of an image as it is, once in a process.
    static const Scanned& of(const std::string& name) {
        static std::map<std::string, std::unique_ptr<Scanned>> all;
        auto& scanned = all[name];
        if (!scanned) scanned = std::make_unique<Scanned>(ImageDrive{NtfsImage::made(name)});
        return *scanned;
    }
    explicit Scanned(const ImageDrive& drive) : source(std::map<wchar_t, ImageDrive>{{L'C', drive}}) {
        worked = scanVolume(index, source, L"C:");
        for (const FileRecord& record : index.records()) byPath[index.fullPath(record)] = &record;
    }
    const FileRecord* at(const std::wstring& path) const {
        const auto found = byPath.find(L"C:\\" + path);
        return found == byPath.end() ? nullptr : found->second;
    }

    WatchedSource source;
    NTFSIndex index;
    bool worked = false;
    std::map<std::wstring, const FileRecord*> byPath;
};

class ImageScan : public testing::TestWithParam<const char*> {
protected:
    std::uint64_t size(const std::wstring& path) const {
        const FileRecord* record = scanned.at(path);
        return record == nullptr ? ~std::uint64_t{0} : std::uint64_t{record->size};
    }
    std::uint32_t attributes(const std::wstring& path) const {
        const FileRecord* record = scanned.at(path);
        return record == nullptr ? ~std::uint32_t{0} : std::uint32_t{record->attributes};
    }
    bool live(const std::wstring& path) const {
        const FileRecord* record = scanned.at(path);
        return record != nullptr && !record->deleted();
    }

    const std::shared_ptr<const NtfsImage> image = NtfsImage::made(GetParam());
    const Scanned& scanned = Scanned::of(GetParam());
};

INSTANTIATE_TEST_SUITE_P(Images, ImageScan, testing::Values("plain", "records4k", "worn"));

TEST_P(ImageScan, FindsTheSizeOfDataHoweverItIsStored) {
    ASSERT_TRUE(scanned.worked);
    EXPECT_EQ(size(L"data\\empty"), 0u);
    EXPECT_EQ(size(L"data\\resident, one byte"), 1u);
    EXPECT_EQ(size(L"data\\resident, 300"), 300u);
    EXPECT_EQ(size(L"data\\not resident, 8192"), 8192u);
    EXPECT_EQ(size(L"data\\not resident, 1234567"), 1'234'567u);
    EXPECT_EQ(size(L"data\\compressed\\pattern"), 300'001u);
    EXPECT_EQ(size(L"data\\compressed\\noise"), 200'002u);
    EXPECT_EQ(size(L"data\\compressed\\small"), 12u);
}

TEST_P(ImageScan, LeavesOtherStreamsOut) {
    EXPECT_EQ(size(L"data\\data and two streams.txt"), 700u);
    EXPECT_EQ(size(L"data\\only a stream.txt"), 0u);
    EXPECT_EQ(size(L"data\\no data, a stream.txt"), 0u);
    EXPECT_EQ(size(L"data\\no data at all.txt"), 0u);
    EXPECT_EQ(size(L"data\\folder with a stream"), 0u);
}

TEST_P(ImageScan, AsksForTheSizeWhereTheDataLiesInAFurtherRecord) {
    EXPECT_EQ(size(L"data\\many streams.txt"), 250u);
    EXPECT_EQ(size(L"data\\many streams, then data.txt"), 4321u);
    // All are files with an attribute list; and nothing is asked for that the record told.
    EXPECT_FALSE(scanned.source.asked.empty());
    for (const std::wstring& path : scanned.source.asked) {
        const FileRecord* record = scanned.byPath.at(path);
        for (const NtfsAttribute& each : attributesOf(image->record(record->frn)))
            EXPECT_TRUE(each.type != NtfsAttribute::kData || each.named) << record->frn;
    }
}

TEST_P(ImageScan, TakesNothingFromTheCopyThatStandsWithAName) {
    EXPECT_EQ(size(L"data\\stale.txt"), 640u);
    EXPECT_EQ(attributes(L"data\\stale.txt"), 0x20u);
}

TEST_P(ImageScan, KeepsNamesUnitByUnit) {
    for (const std::wstring& name :
         {std::wstring(L"\u00C4pfel \u00F6ffnen \u00DF.txt"), std::wstring(L"high \xD83D alone.txt"),
          std::wstring(L"low \xDE00 alone.txt"), std::wstring(L"\xDE00\xD83D"), std::wstring(255, L'n'),
          std::wstring(250, L'\u672C') + L".text",
          std::wstring(L"family \xD83D\xDC68\u200D\xD83D\xDC69\u200D"
                       L"\xD83D\xDC67 \xD83D\xDE00.png")})
        EXPECT_TRUE(live(L"names\\" + name));
    EXPECT_EQ(size(L"names\\A rather long name.html"), 7u);
    EXPECT_EQ(scanned.at(L"names\\ARATHE~1.HTM"), nullptr);
    EXPECT_EQ(size(L"names\\Folder with two names\\inside"), 9u);
}

TEST_P(ImageScan, EntersAFileOfSeveralNamesOnce) {
    EXPECT_EQ(live(L"links\\two names.txt") + live(L"links elsewhere\\the second name.txt"), 1);
    std::map<std::uint64_t, int> records;
    for (const FileRecord& record : scanned.index.records()) ++records[record.frn];
    for (const auto& [frn, count] : records) EXPECT_EQ(count, 1) << frn;
}

TEST_P(ImageScan, KeepsAttributesOfTheRecord) {
    EXPECT_EQ(attributes(L"marks\\none"), 0u);
    EXPECT_EQ(attributes(L"marks\\read only"), 1u);
    EXPECT_EQ(attributes(L"marks\\hidden and system"), 0x26u);
    EXPECT_EQ(attributes(L"marks\\not indexed"), 0x2000u);
    EXPECT_EQ(attributes(L"data\\compressed\\pattern") & 0x800, 0x800u);
    EXPECT_EQ(attributes(L"marks\\leads elsewhere") & 0x400, 0x400u);
    // The record does not say what only its header tells.
    EXPECT_EQ(attributes(L"marks\\hidden folder"), 2u);
    EXPECT_EQ(scanned.at(L"marks\\hidden folder")->flags, FileRecord::kDirectory);
}

TEST_P(ImageScan, TakesOutDollarNamesOfTheRootAndBelowThemOnly) {
    EXPECT_FALSE(live(L"$RECYCLE.BIN"));
    EXPECT_FALSE(live(L"$RECYCLE.BIN\\$stray"));
    EXPECT_FALSE(live(L"$RECYCLE.BIN\\$one\\$two\\$three"));
    EXPECT_FALSE(live(L"$WinREAgent.txt"));
    EXPECT_TRUE(live(L"$RECYCLE.BIN\\$one\\$two\\plain below three dollars"));
    EXPECT_TRUE(live(L"$RECYCLE.BIN\\S-1-5-21-1-2-3-1001"));
    EXPECT_TRUE(live(L"$RECYCLE.BIN\\S-1-5-21-1-2-3-1001\\$RABCDEF.txt"));
    EXPECT_TRUE(live(L"marks\\$in a user's folder.txt"));
    EXPECT_TRUE(live(L"marks\\$folder of a user\\$below it"));
}

TEST_P(ImageScan, HasNothingOfNtfsItself) {
    for (const FileRecord& record : scanned.index.records()) EXPECT_GE(record.frn, 24u);
}

TEST(ImageScanOf, AVolumeThatTellsNothingNamelessIsTheSame) {
    ImageDrive silent{NtfsImage::made("records4k")};
    silent.tellsNameless = false;
    EXPECT_EQ(Scanned(silent).index.records().size(), Scanned::of("records4k").index.records().size());
}

TEST(ImageScanOf, AVolumeThatTellsEveryNameOfAFileTakesTheFirst) {
    ImageDrive talkative{NtfsImage::made("records4k")};
    talkative.tellsEveryName = true;
    const Scanned all{talkative};
    const Scanned& once = Scanned::of("records4k");
    ASSERT_EQ(all.index.records().size(), once.index.records().size());
    for (const auto& [path, record] : once.byPath) EXPECT_TRUE(all.byPath.contains(path)) << record->frn;
}

TEST(ImageScanOf, AFileLargerThanItsVolumeHasItsRealSize) {
    const Scanned& scanned = Scanned::of("plain");
    EXPECT_EQ(scanned.at(L"sparse, 5 GB")->size, (std::uint64_t{5} << 30) + 10);
    EXPECT_EQ(scanned.at(L"sparse, 5 GB")->attributes & 0x200, 0x200u);
}

TEST(ImageScanOf, DataInPiecesHasTheSizeThatTheFirstPieceTells) {
    const Scanned& plain = Scanned::of("plain");
    EXPECT_EQ(plain.at(L"pieces\\written in turns 0")->size, 32'768u);
    EXPECT_EQ(plain.at(L"pieces\\written in turns 1")->size, 32'768u);
    const Scanned& worn = Scanned::of("worn");
    EXPECT_EQ(worn.at(L"fragments\\in 600 pieces.bin")->size, 600u * 1024u);
    EXPECT_EQ(worn.at(L"fragments\\two attributes in one record.bin")->size, 12u * 1024u);
}

// What a volume would show that does not undo its fix-ups: of a size that lies across the end of a sector the
// upper bytes are others. Nothing worse comes of it.
TEST(ImageScanOf, RawSectorsGivesWrongValuesWhereASectorEnds) {
    ImageDrive raw{NtfsImage::made("records4k")};
    raw.fixUps = NtfsImage::FixUps::Left;
    const Scanned torn{raw};
    const Scanned& whole = Scanned::of("records4k");
    ASSERT_EQ(torn.index.records().size(), whole.index.records().size());
    std::size_t wrong = 0;
    for (const auto& [path, record] : whole.byPath) {
        const FileRecord* other = torn.byPath.at(path);
        if (other->size == record->size) continue;
        EXPECT_EQ(path.find(L"C:\\data\\across "), 0u) << record->frn;
        EXPECT_EQ(other->size & 0xFFFFFFFFFFFF, record->size) << record->frn;
        ++wrong;
    }
    EXPECT_GT(wrong, 0u);
    for (const auto& [path, record] : whole.byPath) {
        if (path.find(L"C:\\data\\across ") != 0) continue;
        EXPECT_EQ(record->size, 5000u) << record->frn;
    }
}

TEST(ImageScanOf, SeveralVolumesKeepsThemApart) {
    NtfsImageSource machine(
        {{L'C', ImageDrive{NtfsImage::made("small")}}, {L'D', ImageDrive{NtfsImage::made("small")}}});
    NTFSIndex index;
    EXPECT_TRUE(scanAllVolumes(index, machine));
    ASSERT_EQ(index.volumes.size(), 2u);
    const auto onSecond = [](const FileRecord& record) { return record.volume == 1; };
    const auto records = index.records();
    EXPECT_EQ(static_cast<std::size_t>(std::count_if(records.begin(), records.end(), onSecond)) * 2,
              records.size());
}

}  // namespace
}  // namespace varnelo::test
