#include <gtest/gtest.h>

#include "host/index/cache_fixture.h"

namespace varnelo {
namespace {

using Lines = std::vector<std::wstring>;

class NtfsCacheTest : public ::testing::Test, protected IndexWorld {
protected:
    CacheFixture cache;
};

// Two records on one volume: a live one named "aB.c", and a tombstone named "x".
// A line a field.
// clang-format off
const Bytes kGolden =
    {
        'S',  'F',  'T',  'N',  4,    0,    0,   0,          // magic, version
        1,    0,    0,    0,    0,    0,    0,   0, 'C', 0,  // volumes
        2,    0,    0,    0,    0,    0,    0,   0,          // files
        0x66, 0x55, 0x44, 0x33, 0x22, 0x11, 0,   0,          // frn
        5,    0,    0,    0,    0,    0,    0,   0,          // parentFrn
        1,    2,    3,    4,    5,    6,    7,   8,          // size
        8,    7,    6,    5,    4,    3,    2,   1,          // modified
        0x20, 0,    0,    0,                                 // attributes
        0,    0,    0,    0,                                 // nameOffset
        0,    0,    0,    0,                                 // flags
        0,    0,    0,    0,                                 // volume, reserved, extension
        0x30, 0,    0,    0,    0,    0,    0,   0,          // the tombstone
        5,    0,    0,    0,    0,    0,    0,   0, 0,   0,   0,   0, 0, 0,   0,   0,   0,    0, 0,
        0,    0,    0,    0,    0,    0x10, 0,   0, 0,   5,   0,   0, 0, 1,   0,   0,   0x80, 0, 0,
        0xFF, 0xFF, 7,    0,    0,    0,    0,   0, 0,   0,  // pool
        'a',  0,    'B',  0,    '.',  0,    'c', 0, 0,   0,   'x', 0, 0, 0,   1,   0,   0,    0, 0,
        0,    0,    0,  // extensions
        2,    0,    0,    0,    0,    0,    0,   0, '.', 0,   'c', 0, 5, 0,   0,   0,   0,    0, 0,
        0,  // single units
        'a',  0,    1,    0,    0,    0,    0,   0, 0,   0,   0,   0, 0, 0,   'b', 0,   1,    0, 0,
        0,    0,    0,    0,    0,    0,    0,   0, 0,   '.', 0,   1, 0, 0,   0,   0,   0,    0, 0,
        0,    0,    0,    0,    'c',  0,    1,   0, 0,   0,   0,   0, 0, 0,   0,   0,   0,    0, 'x',
        0,    0,    0,    0,    0,    0,    0,   0, 0,   3,   0,   0, 0, 0,   0,   0,   0,  // pairs: the
                                                                                            // first unit in
                                                                                            // the high half
        'b',  0,    'a',  0,    1,    0,    0,   0, 0,   0,   0,   0, 0, 0,   0,   0,   '.',  0, 'b',
        0,    1,    0,    0,    0,    0,    0,   0, 0,   0,   0,   0, 0, 'c', 0,   '.', 0,    1, 0,
        0,    0,    0,    0,    0,    0,    0,   0, 0,   0,   2,   0, 0, 0,   0,   0,   0,    0,  // threes
        '.',  0,    'b',  0,    'a',  0,    0,   0, 1,   0,   0,   0, 0, 0,   0,   0,   0,    0, 0,
        0,    'c',  0,    '.',  0,    'b',  0,   0, 0,   1,   0,   0, 0, 0,   0,   0,   0,    0, 0,
        0,    0,
};
// clang-format on

TEST_F(NtfsCacheTest, TheBytesAreThoseOfTheFormat) {
    onVolume(L'C');
    index.addRecord({0x112233445566, kRootFrn, 0, 0x0807060504030201, 0x0102030405060708, 0x20}, L"aB.c");
    const std::uint32_t gone = index.addRecord({0x30, kRootFrn, FileRecord::kDirectory, 0, 0, 0x10}, L"x");
    index.removeRecord(gone);
    ASSERT_TRUE(cache.save(index));
    EXPECT_EQ(cache.bytes(), kGolden);
}

TEST_F(NtfsCacheTest, SuchBytesAreReadBack) {
    ASSERT_TRUE(cache.load(index, kGolden));
    EXPECT_EQ(index.volumes, std::vector<std::uint16_t>{L'C'});
    ASSERT_EQ(index.records().size(), 2u);
    EXPECT_EQ(record(0).frn, 0x112233445566u);
    EXPECT_EQ(record(0).size, 0x0807060504030201u);
    EXPECT_EQ(record(0).modified, 0x0102030405060708u);
    EXPECT_EQ(index.nameOf(0), L"aB.c");
    EXPECT_EQ(index.extensions().text(record(0).extension), L".c");
    EXPECT_EQ(threes(L'a', L'b', L'.'), std::vector<std::uint32_t>{0});
    const std::size_t lists = index.unigrams().size();
    file(L"x");
    EXPECT_EQ(index.unigrams().size(), lists) << "a list without entries is one";
    index.clearIndex();
    ASSERT_TRUE(cache.load(index, kGolden));
    EXPECT_EQ(pathOf(0), L"C:\\aB.c");

    ASSERT_TRUE(cache.save(index));
    EXPECT_EQ(cache.bytes(), kGolden);
}

TEST_F(NtfsCacheTest, AnEmptyIndexSaves64BytesThatLoad) {
    ASSERT_TRUE(cache.save(index));
    EXPECT_EQ(cache.bytes().size(), 64u);
    const LogCapture log;
    EXPECT_TRUE(cache.load(index));
    EXPECT_EQ(log.lines(), (Lines{L"[INFO] loadCache: file size = 64 bytes",
                                  L"[INFO] loadCache: success \u2013 0 files, 0 extensions"}));
}

TEST_F(NtfsCacheTest, ATombstoneSurvivesAndIsFoundByItsKeyAgain) {
    onVolume(L'C');
    file(40, L"gone");
    index.removeRecord(0);
    ASSERT_TRUE(cache.save(index));
    NTFSIndex loaded;
    ASSERT_TRUE(cache.load(loaded));
    EXPECT_EQ(loaded.records()[0].flags, FileRecord::kDeleted);
    EXPECT_EQ(loaded.recordByKey(40), 0u);
    EXPECT_EQ(loaded.freeRecords().size(), 0u) << "its place is not used again";
    EXPECT_EQ(loaded.createRecord({41, 5, 0, 0, 0, 0}, L"new"), 1u);
}

TEST_F(NtfsCacheTest, OfTwoRecordsWithOneKeyTheLaterIsFound) {
    file(40, L"one");
    file(41, L"two");
    file(40, L"three");
    ASSERT_TRUE(cache.save(index));
    NTFSIndex loaded;
    ASSERT_TRUE(cache.load(loaded));
    EXPECT_EQ(loaded.recordByKey(40), 2u);
}

TEST_F(NtfsCacheTest, ALoadForgetsPathsAndLeavesFreePlaces) {
    onVolume(L'C');
    file(40, L"a");
    ASSERT_TRUE(cache.save(index));
    EXPECT_EQ(pathOf(0), L"C:\\a");
    onVolume(L'D');
    file(41, L"b");
    index.removeRecord(1);
    ASSERT_TRUE(cache.load(index));
    EXPECT_EQ(index.volumes.size(), 1u);
    EXPECT_EQ(index.freeRecords().size(), 1u);
    EXPECT_EQ(index.currentVolume, 1);
    index.volumes[0] = L'E';
    EXPECT_EQ(pathOf(0), L"E:\\a");
    EXPECT_EQ(index.createRecord({42, 5, 0, 0, 0, 0}, L"c"), 1u)
        << "a place that is none any more is not used";
}

TEST_F(NtfsCacheTest, ChangesToALoadedIndexAreSavedAsTheyStand) {
    onVolume(L'C');
    for (const wchar_t* name : {L"abc.txt", L"bcd.txt", L"cde.doc"}) file(name);
    ASSERT_TRUE(cache.save(index));
    NTFSIndex loaded;
    ASSERT_TRUE(cache.load(loaded));
    for (NTFSIndex* one : {&index, &loaded}) {
        one->removeRecord(1);
        one->renameRecord(0, {24, 5, 0, 0, 0, 0}, L"bcdef");
        one->addRecord({90, 5, 0, 0, 0, 0}, L"\u3042bc");
    }
    ASSERT_TRUE(cache.save(loaded));
    const Bytes changed = cache.bytes();
    ASSERT_TRUE(cache.save(index));
    EXPECT_EQ(cache.bytes(), changed);
    NTFSIndex again;
    ASSERT_TRUE(cache.load(again));
    EXPECT_EQ(IndexWorld::listOf(again.bigrams(), 0x00620063), (std::vector<std::uint32_t>{0, 3}));
}

TEST_F(NtfsCacheTest, AFileThatIsNotThereIsAWarning) {
    const LogCapture log;
    EXPECT_FALSE(cache.load(index));
    EXPECT_EQ(log.lines(), Lines{L"[WARN] loadCache: failed to open file: " + cache.path()});
}

TEST_F(NtfsCacheTest, AFileWithoutBytesIsAWarningWithoutItsLastBracket) {
    CacheFixture::write(cache.path(), {});
    const LogCapture log;
    EXPECT_FALSE(cache.load(index));
    EXPECT_EQ(log.lines(), (Lines{L"[INFO] loadCache: file size = 0 bytes",
                                  L"[WARN] loadCache: file is empty or unreadable (size=0"}));
}

TEST_F(NtfsCacheTest, AnotherMagicOrVersionIsNotRead) {
    EXPECT_EQ(cache.linesOf(CacheBytes().header(3).filled(64).bytes()),
              Lines{L"[WARN] loadCache: magic/version mismatch \u2013 magic=0x1314145875 version=3 "
                    L"(expected magic=0x1314145875 version=4)"});
    EXPECT_EQ(cache.linesOf({'S', 'F', 'T'}),
              Lines{L"[WARN] loadCache: magic/version mismatch \u2013 magic=0x5523027 version=0 "
                    L"(expected magic=0x1314145875 version=4)"});
}

TEST_F(NtfsCacheTest, EachCountHasItsBoundAndItsLine) {
    const auto lineOf = [&](CacheBytes bytes) {
        const Lines lines = cache.linesOf(bytes.filled(1000).bytes());
        return lines.size() == 1 ? lines[0] : std::to_wstring(lines.size()) + L" lines";
    };
    const auto upTo = [](int counts) { return CacheBytes().emptyUpTo(counts); };
    EXPECT_EQ(lineOf(upTo(0).count(27)), L"[WARN] loadCache: volumeCount invalid (27), good=1");
    EXPECT_EQ(lineOf(upTo(1).count(21)),
              L"[WARN] loadCache: fileCount invalid (21), dataSize=1008, fileSize=1000, good=1");
    EXPECT_EQ(lineOf(upTo(2).count(501)), L"[WARN] loadCache: poolSize invalid (501), good=1");
    EXPECT_EQ(lineOf(upTo(3).count(100001)), L"[WARN] loadCache: extCount invalid (100001), good=1");
    EXPECT_EQ(lineOf(upTo(3).count(2).count(0).count(1025)),
              L"[WARN] loadCache: extension[1] len invalid (1025), good=1");
    EXPECT_EQ(lineOf(upTo(4).count(1001)), L"[WARN] loadCache: map[0] size invalid (1001), good=1");
    EXPECT_EQ(lineOf(upTo(5).count(1001)), L"[WARN] loadCache: map[1] size invalid (1001), good=1");
    EXPECT_EQ(lineOf(upTo(6).count(1001)), L"[WARN] loadCache: map[2] size invalid (1001), good=1");
    CacheBytes list = upTo(4).count(3);
    list.u16(L'a');
    list.u64(0);
    list.u16(L'b');
    list.u64(251);
    EXPECT_EQ(lineOf(list), L"[WARN] loadCache: map[0] entry 1/3 vsize invalid (251), good=1");
    list = upTo(5).count(1);
    list.u32(7);
    list.u64(251);
    EXPECT_EQ(lineOf(list), L"[WARN] loadCache: map[1] entry 0/1 vsize invalid (251), good=1");
    list = upTo(6).count(1);
    list.u64(7);
    list.u64(251);
    EXPECT_EQ(lineOf(list), L"[WARN] loadCache: map[2] entry 0/1 vsize invalid (251), good=1");
}

TEST_F(NtfsCacheTest, ACountAtItsBoundIsAccepted) {
    const std::wstring success = L"[INFO] loadCache: success \u2013 ";
    CacheBytes volumes = CacheBytes().header().count(26);
    volumes.units(L"ABCDEFGHIJKLMNOPQRSTUVWXYZ");
    EXPECT_EQ(cache.linesOf(volumes.filled(200).bytes()), Lines{success + L"0 files, 0 extensions"});
    EXPECT_EQ(cache.linesOf(CacheBytes().emptyUpTo(1).count(20).filled(1100).bytes()),
              Lines{success + L"20 files, 0 extensions"});
    CacheBytes extension = CacheBytes().emptyUpTo(3).count(1).count(1024);
    extension.units(std::wstring(1024, L'e'));
    EXPECT_EQ(cache.linesOf(extension.filled(2200).bytes()), Lines{success + L"0 files, 1 extensions"});
    CacheBytes many = CacheBytes().emptyUpTo(3).count(100000);
    EXPECT_EQ(cache.linesOf(many.filled(40 + 800000 + 24).bytes()),
              Lines{success + L"0 files, 100000 extensions"});
}

TEST_F(NtfsCacheTest, ACountThatOverflowsIsRefused) {
    EXPECT_EQ(
        cache.linesOf(CacheBytes().emptyUpTo(1).count(std::uint64_t{1} << 60).filled(100).bytes()),
        Lines{
            L"[WARN] loadCache: fileCount invalid (1152921504606846976), dataSize=0, fileSize=100, good=1"});
    EXPECT_EQ(cache.linesOf(CacheBytes().emptyUpTo(2).count(std::uint64_t{1} << 63).filled(100).bytes()),
              Lines{L"[WARN] loadCache: poolSize invalid (9223372036854775808), good=1"});
    CacheBytes list = CacheBytes().emptyUpTo(4).count(1);
    list.u16(L'a');
    list.u64(std::uint64_t{1} << 62);
    EXPECT_EQ(cache.linesOf(list.filled(100).bytes()),
              Lines{L"[WARN] loadCache: map[0] entry 0/1 vsize invalid (4611686018427387904), good=1"});
}

TEST_F(NtfsCacheTest, ACutFileFailsAtTheNextTest) {
    const auto cutAt = [&](std::size_t size) {
        return cache.linesOf(Bytes(kGolden.begin(), kGolden.begin() + static_cast<std::ptrdiff_t>(size)));
    };
    EXPECT_EQ(cutAt(12), Lines{L"[WARN] loadCache: volumeCount invalid (1), good=0"});
    EXPECT_EQ(cutAt(17),
              (Lines{L"[WARN] loadCache: fileCount invalid (0), dataSize=0, fileSize=17, good=0"}));
    EXPECT_EQ(cutAt(20),
              (Lines{L"[WARN] loadCache: fileCount invalid (2), dataSize=96, fileSize=20, good=0"}));
    EXPECT_EQ(cutAt(26 + 95), Lines{L"[WARN] loadCache: poolSize invalid (0), good=0"});
    EXPECT_EQ(cutAt(122 + 8 + 13), Lines{L"[WARN] loadCache: extCount invalid (0), good=0"});
    EXPECT_EQ(cutAt(144 + 8), Lines{L"[WARN] loadCache: extension[0] len invalid (0), good=0"});
    EXPECT_EQ(cutAt(144 + 19), Lines{L"[WARN] loadCache: stream bad after extensions"});
    EXPECT_EQ(cutAt(164), Lines{L"[WARN] loadCache: map[0] size invalid (0), good=0"});
    EXPECT_EQ(cutAt(164 + 8), Lines{L"[WARN] loadCache: map[0] entry 0/5 vsize invalid (0), good=0"});
    EXPECT_EQ(cutAt(164 + 8 + 12), Lines{L"[WARN] loadCache: map[0] entry 1/5 vsize invalid (0), good=0"});
    EXPECT_EQ(cutAt(kGolden.size() - 12),
              Lines{L"[WARN] loadCache: map[2] entry 1/2 vsize invalid (0), good=0"});
}

TEST_F(NtfsCacheTest, NoTestStandsBehindTheVeryLastList) {
    Bytes cut = kGolden;
    cut.pop_back();
    EXPECT_TRUE(cache.load(index, cut));
    EXPECT_EQ(threes(L'b', L'.', L'c'), std::vector<std::uint32_t>{}) << "what is not whole is left out";
    EXPECT_EQ(index.recordByKey(0x112233445566), 0u);
}

TEST_F(NtfsCacheTest, BytesBehindTheEndAreNotLookedAt) {
    Bytes longer = kGolden;
    longer.insert(longer.end(), 100, 0xEE);
    EXPECT_TRUE(cache.load(index, longer));
    ASSERT_TRUE(cache.save(index));
    EXPECT_EQ(cache.bytes(), kGolden);
}

TEST_F(NtfsCacheTest, AFailedLoadLeavesWhatItReadAndAnIndexThatWorks) {
    Bytes cut(kGolden.begin(), kGolden.begin() + 164 + 8 + 20);
    ASSERT_FALSE(cache.load(index, cut));
    EXPECT_EQ(index.records().size(), 2u);
    EXPECT_EQ(index.nameOf(0), L"aB.c");
    EXPECT_EQ(ones(L'a'), std::vector<std::uint32_t>{0});
    EXPECT_EQ(index.recordByKey(0x112233445566), std::nullopt) << "keys come last";

    const std::uint32_t added = file(0x112233445566, L"abd");
    EXPECT_EQ(added, 2u) << "a scan's records stand behind";
    EXPECT_EQ(ones(L'a'), (std::vector<std::uint32_t>{0, 2}));
    EXPECT_EQ(pathOf(added), L"C:\\abd");
    index.clearIndex();
    EXPECT_TRUE(cache.load(index, kGolden));
}

TEST_F(NtfsCacheTest, ARecordMayHoldAnything) {
    Bytes wild = kGolden;
    for (std::size_t i = 26; i < 26 + 96; ++i) wild[i] = 0xFF;
    wild[26 + 43] = 0x7F;  // the first is live
    ASSERT_TRUE(cache.load(index, wild));
    EXPECT_EQ(index.nameOf(0), L"");
    EXPECT_EQ(pathOf(0), L"");
    EXPECT_EQ(index.extensions().text(record(0).extension), L"");
    index.removeRecord(0);
    index.removeRecord(1);
    EXPECT_TRUE(cache.save(index));
}

TEST_F(NtfsCacheTest, TheReservedByteGoesThrough) {
    Bytes marked = kGolden;
    marked[26 + 45] = 0x5A;
    ASSERT_TRUE(cache.load(index, marked));
    ASSERT_TRUE(cache.save(index));
    EXPECT_EQ(cache.bytes(), marked);
}

}  // namespace
}  // namespace varnelo
