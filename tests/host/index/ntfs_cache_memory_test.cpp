// What a load takes of memory, on a file that is large beside what lines of the log need.

#include <gtest/gtest.h>

#include <algorithm>

#include "host/index/cache_fixture.h"
#include "support/allocation_counter.h"

namespace varnelo {
namespace {

class NtfsCacheMemoryTest : public ::testing::Test, protected IndexWorld {
protected:
    static constexpr std::uint64_t kFiles = 5000;
    static constexpr std::uint64_t kLogLinesBytes = 8192;

    NtfsCacheMemoryTest() {
        onVolume(L'C');
        for (std::uint64_t i = 0; i < kFiles; ++i)
            file(L"file " + std::to_wstring(i * 7919 % 5003) + L".txt");
        EXPECT_TRUE(cache.save(index));
        sound = cache.bytes();
        poolAt = 26 + 48 * kFiles;  // behind the header, one volume and the records
        extensionsAt = poolAt + 8 + 2 * index.names().size();
        mapsAt = extensionsAt + 8 + 8 + 2 * 4;
        firstListAt = mapsAt + 8 + 2;  // its count of entries
    }

    // Of one load of the bytes, as a share of their number.
    double share(const Bytes& bytes) {
        NTFSIndex loaded;
        const std::uint64_t before = allocatedBytesOfThisThread();
        loadBytes(loaded, bytes);
        const std::uint64_t asked = allocatedBytesOfThisThread() - before;
        return static_cast<double>(asked - std::min(asked, kLogLinesBytes)) /
               static_cast<double>(bytes.size());
    }
    Bytes with(std::size_t at, std::uint64_t count) const {
        Bytes bytes = sound;
        for (std::size_t i = 0; i < 8; ++i) bytes[at + i] = static_cast<std::uint8_t>(count >> 8 * i);
        return bytes;
    }

    CacheFixture cache;
    Bytes sound;
    std::size_t poolAt, extensionsAt, mapsAt, firstListAt;
};

TEST_F(NtfsCacheMemoryTest, ASoundFileTakesLittleMoreThanItsSize) { EXPECT_LT(share(sound), 1.3); }

TEST_F(NtfsCacheMemoryTest, ACountThatLiesMakesNoLoadTakeTwiceTheFile) {
    const std::uint64_t size = sound.size();
    for (const std::size_t at :
         {std::size_t{8}, std::size_t{18}, poolAt, extensionsAt, mapsAt, firstListAt}) {
        for (const std::uint64_t count : {size / 48, size / 4, size / 2, size, std::uint64_t{100'000}}) {
            EXPECT_LT(share(with(at, count)), 2.0) << "at " << at << ": " << count;
        }
    }
}

TEST_F(NtfsCacheMemoryTest, AsManyListsAsFitMakeNoLoadTakeMoreThanTwiceTheFile) {
    for (const int map : {0, 1, 2}) {
        for (const std::uint32_t entries : {0u, 1u, 2u}) {
            for (const std::uint64_t lists : {20'000u, 52'429u, 65'536u, 104'858u}) {
                if (map == 0 && lists > 0x10000) continue;
                CacheBytes made = CacheBytes().emptyUpTo(4 + map).count(lists);
                for (std::uint32_t key = 0; key < lists; ++key) {
                    if (map == 0) made.u16(static_cast<std::uint16_t>(key));
                    if (map == 1) made.u32(key);
                    if (map == 2) made.u64(key);
                    made.u64(entries);
                    for (std::uint32_t i = 0; i < entries; ++i) made.u32(i);
                }
                for (int behind = map; behind < 2; ++behind) made.u64(0);
                NTFSIndex loaded;
                ASSERT_TRUE(loadBytes(loaded, made.bytes()));
                const PostingMap* maps[] = {&loaded.unigrams(), &loaded.bigrams(), &loaded.trigrams()};
                EXPECT_EQ(maps[map]->size(), lists);
                EXPECT_LE(share(made.bytes()), 2.0) << map << ": " << lists << " of " << entries;
            }
        }
    }
}

}  // namespace
}  // namespace varnelo
