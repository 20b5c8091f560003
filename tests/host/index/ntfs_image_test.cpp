// Whether the images are what the tests of a scan take them for, and are read as they are.

#include "support/ntfs_image.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <random>

#include "host/index/cache_fixture.h"
#include "support/ntfs_image_volume.h"
#include "support/project_files.h"
#include "support/temp_folder.h"

namespace varnelo::test {
namespace {

using Attributes = std::vector<NtfsAttribute>;

constexpr std::uint64_t kFirstUser = 24;

bool unnamedData(const NtfsAttribute& each) { return each.type == NtfsAttribute::kData && !each.named; }

std::size_t countIf(const Attributes& attributes, const std::function<bool(const NtfsAttribute&)>& like) {
    return static_cast<std::size_t>(std::count_if(attributes.begin(), attributes.end(), like));
}

// How many files are stored in which way.
struct Census {
    std::size_t residentData = 0;  // in the base record, as are the next two
    std::size_t otherData = 0;     // not resident
    std::size_t twoPieces = 0;     // of the data
    std::size_t onlyStreams = 0;   // and no data
    std::size_t residentList = 0;  // of attributes
    std::size_t otherList = 0;     // not resident
    std::size_t dataInFurtherRecord = 0;
    std::size_t namesInFurtherRecord = 0;
    std::size_t severalNames = 0;
    std::size_t usedAnew = 0;
    std::size_t unused = 0;

    // Of an image, counted once in a process.
    static const Census& of(const std::string& name) {
        static std::map<std::string, Census> all;
        const auto [place, isNew] = all.try_emplace(name);
        if (isNew) place->second.count(*NtfsImage::made(name));
        return place->second;
    }

private:
    void count(const NtfsImage& image) {
        for (std::uint64_t number = kFirstUser; number < image.recordCount(); ++number) {
            unused += !image.inUse(number);
            usedAnew += image.inUse(number) && image.reference(number) >> 48 > 1;
            if (image.isFile(number)) count(attributesOf(image.record(number)), image.allAttributes(number));
        }
    }
    void count(const Attributes& own, const Attributes& all) {
        const auto resident = [](const NtfsAttribute& each) { return unnamedData(each) && each.resident; };
        const auto other = [](const NtfsAttribute& each) { return unnamedData(each) && !each.resident; };
        const auto stream = [](const NtfsAttribute& each) {
            return each.type == NtfsAttribute::kData && each.named;
        };
        const auto isName = [](const NtfsAttribute& each) { return each.type == NtfsAttribute::kFileName; };
        const auto longName = [](const NtfsAttribute& each) {
            const auto name = fileNameOf(each);
            return name && !name->dosOnly;
        };
        residentData += countIf(own, resident);
        otherData += countIf(own, other) > 0;
        twoPieces += countIf(own, other) == 2;
        onlyStreams += countIf(all, unnamedData) == 0 && countIf(all, stream) > 0;
        for (const NtfsAttribute& each : own)
            if (each.type == NtfsAttribute::kAttributeList) ++(each.resident ? residentList : otherList);
        dataInFurtherRecord += countIf(own, unnamedData) == 0 && countIf(all, unnamedData) > 0;
        namesInFurtherRecord += countIf(own, isName) == 0 && countIf(all, isName) > 0;
        severalNames += countIf(all, longName) > 1;
    }
};

class EachImage : public testing::TestWithParam<const char*> {
protected:
    const std::shared_ptr<const NtfsImage> image = NtfsImage::made(GetParam());
};

INSTANTIATE_TEST_SUITE_P(Images, EachImage, testing::Values("plain", "records4k", "worn", "small"));

TEST_P(EachImage, SaysInItsBitmapWhichRecordsAreUsed) {
    std::size_t used = 0;
    for (std::uint64_t number = 0; number < image->recordCount(); ++number) {
        EXPECT_EQ(image->markedInUse(number), image->inUse(number)) << number;
        used += image->inUse(number);
    }
    EXPECT_GT(used, 50u);
}

TEST_P(EachImage, HasRecordsInUseThatAreNoFileWithAName) {
    for (std::uint64_t number = 12; number < 16; ++number) {
        EXPECT_TRUE(image->inUse(number)) << number;
        for (const NtfsAttribute& each : attributesOf(image->record(number)))
            EXPECT_NE(each.type, NtfsAttribute::kFileName) << number;
    }
}

TEST_P(EachImage, HasFilesOfSeveralNames) { EXPECT_EQ(Census::of(GetParam()).severalNames, 4u); }

TEST(NtfsImage, HasTheShapesThatDifferInARecord) {
    const auto plain = NtfsImage::made("plain")->geometry();
    EXPECT_EQ(plain.recordBytes, 1024u);
    EXPECT_EQ(plain.clusterBytes, 4096u);
    const auto large = NtfsImage::made("records4k")->geometry();
    EXPECT_EQ(large.recordBytes, 4096u);
    EXPECT_EQ(large.sectorBytes, 512u);
    const auto worn = NtfsImage::made("worn")->geometry();
    EXPECT_EQ(worn.recordBytes, 1024u);
    EXPECT_EQ(worn.clusterBytes, 512u);
}

TEST(NtfsImage, HasATableOfFilesThatLiesInPieces) {
    const auto image = NtfsImage::made("worn");
    const Attributes all = image->allAttributes(0);
    EXPECT_GT(countIf(all, unnamedData), 2u);
    std::size_t runs = 0;
    for (const NtfsAttribute& each : all)
        if (unnamedData(each)) runs += each.runs().size();
    EXPECT_GT(runs, 400u);
    const auto list = attributesOf(image->record(0));
    EXPECT_EQ(countIf(list,
                      [](const NtfsAttribute& each) {
                          return each.type == NtfsAttribute::kAttributeList && !each.resident;
                      }),
              1u);
}

TEST(NtfsImage, HasEveryWayToStoreAFile) {
    std::size_t residentLists = 0, names = 0;
    for (const char* name : {"plain", "records4k", "worn"}) {
        SCOPED_TRACE(name);
        const Census& census = Census::of(name);
        EXPECT_GT(census.residentData, 100u);
        EXPECT_GT(census.otherData, 5u);
        EXPECT_EQ(census.twoPieces, 1u);
        EXPECT_GE(census.onlyStreams, 1u);
        EXPECT_GE(census.otherList, 1u);
        EXPECT_GE(census.dataInFurtherRecord, 1u);
        EXPECT_GT(census.usedAnew, 20u);
        EXPECT_GT(census.unused, 4u);
        residentLists += census.residentList;
        names += census.namesInFurtherRecord;
    }
    EXPECT_GE(residentLists, 1u);
    EXPECT_GE(names, 1u);
}

TEST(NtfsImage, StoresTheEndOfEachSectorElsewhere) {
    const auto image = NtfsImage::made("plain");
    std::size_t differ = 0;
    for (std::uint64_t number = 0; number < image->recordCount(); ++number) {
        const auto raw = image->record(number, NtfsImage::FixUps::Left);
        const auto undone = image->record(number);
        if (undone.empty()) continue;
        for (std::size_t step = 0; step < raw.size(); step += 512)
            ASSERT_TRUE(std::equal(&raw[step], &raw[step + 510], &undone[step])) << number << " at " << step;
        differ += !std::equal(raw.begin(), raw.end(), undone.begin());
    }
    EXPECT_GT(differ, image->recordCount() / 2);
}

TEST(NtfsImage, IsNotMadeOfOtherFiles) {
    const TempFolder folder;
    const std::wstring path = folder.file(L"text");
    CacheFixture::write(path, Bytes(5000, 'x'));
    EXPECT_EQ(NtfsImage::open(std::string(path.begin(), path.end())), nullptr);
    EXPECT_EQ(NtfsImage::open(std::string(path.begin(), path.end()) + "2"), nullptr);
    EXPECT_THROW(NtfsImage::made("no such image"), std::runtime_error);
}

TEST(NtfsImage, RefusesARecordOfWhichASectorWasNotWritten) {
    Bytes bytes = projectFile("build/ntfs-images/small.img");
    const auto intact = NtfsImage::made("small");
    const auto& shape = intact->geometry();
    // The end of the second sector of record 5.
    const std::size_t at = shape.tableCluster * shape.clusterBytes + 5 * shape.recordBytes + 1023;
    bytes[at] ^= 0xFF;
    const TempFolder folder;
    const std::wstring path = folder.file(L"torn.img");
    CacheFixture::write(path, bytes);
    const auto torn = NtfsImage::open(std::string(path.begin(), path.end()));
    ASSERT_NE(torn, nullptr);
    EXPECT_FALSE(intact->record(5).empty());
    EXPECT_TRUE(torn->record(5).empty());
    EXPECT_FALSE(torn->record(5, NtfsImage::FixUps::Left).empty());
}

// The reader is code too: whatever stands in an image, it stays within it.
TEST(NtfsImage, DamagedInAnyWayIsReadWithinItsBounds) {
    const Bytes intact = projectFile("build/ntfs-images/small.img");
    ASSERT_FALSE(intact.empty());
    const auto shape = NtfsImage::made("small")->geometry();
    const std::size_t table = shape.tableCluster * shape.clusterBytes;
    const std::size_t tableBytes = NtfsImage::made("small")->recordCount() * shape.recordBytes;
    std::mt19937 random(4);
    const TempFolder folder;
    const std::wstring path = folder.file(L"damaged.img");
    std::size_t opened = 0;
    for (int round = 0; round < 40; ++round) {
        Bytes bytes = intact;
        for (int i = 0; i < 400; ++i) {
            const std::size_t begin = i % 100 == 0 ? 0 : table;
            const std::size_t length = i % 100 == 0 ? 80 : tableBytes;
            bytes[begin + random() % length] = static_cast<std::uint8_t>(random() % 4 == 0 ? 0xFF : random());
        }
        CacheFixture::write(path, bytes);
        const auto image = NtfsImage::open(std::string(path.begin(), path.end()));
        if (!image) continue;
        ++opened;
        NtfsImageSource source(image);
        const auto volume = source.open(L"C:");
        Bytes answer(0x10000);
        for (std::uint64_t number = 0; number < image->recordCount(); ++number) {
            volume->fileRecord(number, answer);
            image->dataSize(number);
        }
        source.fileSize(L"C:\\links");
    }
    EXPECT_GT(opened, 0u);
}

}  // namespace
}  // namespace varnelo::test
