#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "host/index/cache_fixture.h"
#include "support/allocation_counter.h"

namespace varnelo {
namespace {

class NtfsCacheDamageTest : public ::testing::Test, protected IndexWorld {
protected:
    NtfsCacheDamageTest() {
        onVolume(L'C');
        file(100, L"Documents");
        for (const wchar_t* name :
             {L"Report 2021.docx", L"report.pdf", L"Plan.docx", L"\u30E1\u30E2.txt", L"a", L"aaaa"}) {
            file(nextFrn, name, 100);
        }
        index.removeRecord(3);
        EXPECT_TRUE(cache.save(index));
        sound = cache.bytes();
    }

    // Loads the bytes and, if asked, uses what comes of it in every way.
    bool tryBytes(const Bytes& bytes, bool andUse = true) {
        NTFSIndex loaded;
        const std::uint64_t before = allocatedBytesOfThisThread();
        const bool good = loadBytes(loaded, bytes);
        const std::uint64_t asked = allocatedBytesOfThisThread() - before;
        EXPECT_LE(asked, 2 * bytes.size() + kLogLinesBytes);
        if (andUse) use(loaded);
        tryInPlace(bytes, good, andUse);
        return good;
    }

    // The same bytes, shown where they lie.
    static void tryInPlace(Bytes bytes, bool loads, bool andUse) {
        NTFSIndex shown;
        const std::uint64_t before = allocatedBytesOfThisThread();
        EXPECT_TRUE(!shown.showCache(bytes) || loads);
        EXPECT_LE(allocatedBytesOfThisThread() - before, 2 * bytes.size() + kLogLinesBytes);
        if (andUse) use(shown);
    }

    // Lines in the log and the path have memory of their own.
    static constexpr std::uint64_t kLogLinesBytes = 8192;

    static void use(NTFSIndex& loaded) {
        for (const wchar_t* query : {L"", L"a", L"re", L"rep", L"report", L"*.docx", L"*p*", L"??"}) {
            std::vector<std::uint32_t> ids = loaded.searchNames(query);
            for (const std::uint32_t id : ids) ASSERT_LT(id, loaded.records().size());
            loaded.sortResults(ids, NTFSIndex::kSortByPath, true);
            loaded.entriesForRange(ids, 0, 3);
        }
        const auto records = static_cast<std::uint32_t>(loaded.records().size());
        if (records != 0) loaded.renameRecord(0, {1, 2, 0, 0, 0, 0}, L"Report 2021.docx");
        if (records > 1) loaded.removeRecord(1);
        const std::uint32_t added = loaded.createRecord({100, 5, 0, 0, 0, 0}, L"new file");
        std::vector<std::uint32_t> found = loaded.searchNames(L"new f");
        ASSERT_EQ(std::count(found.begin(), found.end(), added), 1);
    }

    CacheFixture cache;
    Bytes sound;
};

TEST_F(NtfsCacheDamageTest, EveryCutIsRefusedButThoseInTheLastList) {
    ASSERT_TRUE(tryBytes(sound));
    for (std::size_t size = 0; size < sound.size(); ++size) {
        const bool good = tryBytes(Bytes(sound.begin(), sound.begin() + static_cast<std::ptrdiff_t>(size)));
        // The last list has two entries: "aaaa" holds its last gram twice.
        ASSERT_EQ(good, size >= sound.size() - 8) << size;
    }
}

TEST_F(NtfsCacheDamageTest, ChangedBytesDoNoHarm) {
    std::mt19937 random(11);
    for (int round = 0; round < 100000; ++round) {
        Bytes bytes = sound;
        const int changes = 1 + static_cast<int>(random() % 4);
        for (int i = 0; i < changes; ++i) {
            const std::size_t at = random() % bytes.size();
            switch (random() % 4) {
                case 0:
                    bytes[at] = static_cast<std::uint8_t>(random());
                    break;
                case 1:
                    bytes[at] ^= static_cast<std::uint8_t>(1u << random() % 8);
                    break;
                case 2:
                    bytes[at] = 0xFF;
                    break;
                default:
                    bytes.erase(bytes.begin() + static_cast<std::ptrdiff_t>(at));
            }
        }
        tryBytes(bytes, round % 16 == 0);
        ASSERT_FALSE(HasFailure()) << "round " << round;
    }
}

TEST_F(NtfsCacheDamageTest, CountsThatLieDoNoHarm) {
    // Every number of eight bytes in the file that could be a count, one after the other.
    for (std::size_t at = 8; at + 8 <= sound.size(); at += 2) {
        for (const std::uint64_t count :
             {std::uint64_t{2}, std::uint64_t{sound.size() / 48}, std::uint64_t{sound.size() / 4},
              std::uint64_t{sound.size()}, std::uint64_t{1} << 32, std::uint64_t{1} << 61,
              ~std::uint64_t{0}}) {
            Bytes bytes = sound;
            for (std::size_t i = 0; i < 8; ++i) bytes[at + i] = static_cast<std::uint8_t>(count >> 8 * i);
            tryBytes(bytes);
        }
        ASSERT_FALSE(HasFailure()) << "at " << at;
    }
}

}  // namespace
}  // namespace varnelo
