#include "index/glob_sweep.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>

#include "index/file_record.h"

namespace varnelo {
namespace {

// Units that share a byte with those of the patterns, capitals, surrogates without a partner.
const std::wstring kUnits = L"aabbAB-.\u0161\u0142\u8061\uFF61\u212A\u00E4" +
                            std::wstring(1, wchar_t(0xD861)) + std::wstring(1, wchar_t(0xDC2D));

class GlobSweepTest : public ::testing::Test {
protected:
    std::wstring anyName(std::size_t longest) {
        std::wstring name(random() % (longest + 1), L' ');
        for (wchar_t& unit : name) unit = kUnits[random() % kUnits.size()];
        return name;
    }
    Glob anyGlob() {
        const std::wstring signs = L"ab-.***??\u0161\u00E4\u8061";
        std::vector<std::uint16_t> pattern;
        for (std::size_t size = random() % 7; size != 0; --size) {
            pattern.push_back(static_cast<std::uint16_t>(signs[random() % signs.size()]));
        }
        if (random() % 2 == 0) pattern.push_back('*');
        if (random() % 4 == 0) pattern.insert(pattern.begin(), '*');
        return Glob(pattern);
    }
    std::uint32_t record(std::uint32_t offset) {
        const auto index = static_cast<std::uint32_t>(columns.size());
        FileRecord one;
        one.nameOffset = offset;
        columns.set(index, one, pool);
        return index;
    }
    std::uint32_t named(const std::wstring& name) { return record(pool.add(name)); }
    void pooled(const std::vector<std::uint16_t>& units) {
        std::copy(units.begin(), units.end(), pool.beginStored(units.size()));
    }

    // Compares what is known with what a walk through each name tells; answers how many match.
    std::size_t compare(const std::vector<Glob>& globs) {
        GlobSweep sweep(globs, pool);
        std::size_t count = 0;
        unknown.clear();
        for (std::size_t begin = 0; begin < columns.size(); begin += GlobSweep::kMostAtOnce) {
            const GlobSweep::Answers answers = sweep.answersFor(columns, begin);
            for (std::size_t i = 0; i < GlobSweep::kMostAtOnce; ++i) {
                const std::size_t index = begin + i;
                const bool told = (answers.matching >> i & 1) != 0;
                if ((answers.unknown >> i & 1) != 0) {
                    unknown.push_back(static_cast<std::uint32_t>(index));
                    EXPECT_FALSE(told) << index;
                    continue;
                }
                const bool expected = index < columns.size() && matchesAny(globs, index);
                EXPECT_EQ(told, expected) << index;
                if (told != expected) return 0;
                count += told ? 1 : 0;
            }
        }
        return count;
    }
    bool matchesAny(const std::vector<Glob>& globs, std::size_t index) const {
        const std::uint32_t offset = columns.nameOffsets()[index];
        return pool.holds(offset) && std::any_of(globs.begin(), globs.end(), [&](const Glob& glob) {
                   return globMatches(glob.units(), pool.at(offset));
               });
    }

    std::mt19937 random{11};
    NamePool pool;
    RecordColumns columns;
    std::vector<std::uint32_t> unknown;
};

TEST_F(GlobSweepTest, MatchesWhatAWalkThroughEachNameMatches) {
    for (int i = 0; i < 3000; ++i) named(anyName(i % 20 == 0 ? 300 : 24));
    std::size_t hits = 0;
    for (int i = 0; i < 200 && !HasFailure(); ++i) {
        std::vector<Glob> globs;
        for (std::size_t count = 1 + random() % 3; count != 0; --count) globs.push_back(anyGlob());
        hits += compare(globs);
        ASSERT_EQ(unknown.size(), 0u);
    }
    EXPECT_GT(hits, 30000u);
}

TEST_F(GlobSweepTest, RecordsMayNameThePoolInAnyOrder) {
    std::vector<std::uint32_t> offsets;
    for (int i = 0; i < 1000; ++i) offsets.push_back(pool.add(anyName(24)));
    // In order, but for some that were renamed; out of order; and some names twice.
    for (const std::uint32_t offset : offsets) record(offset);
    for (std::size_t i = 0; i < 5; ++i) {
        FileRecord renamed;
        renamed.nameOffset = pool.add(anyName(24));
        columns.set(random() % 1000, renamed, pool);
    }
    std::shuffle(offsets.begin(), offsets.end(), random);
    for (const std::uint32_t offset : offsets) record(offset);
    std::size_t hits = 0;
    for (int i = 0; i < 50 && !HasFailure(); ++i) hits += compare({anyGlob()});
    EXPECT_GT(hits, 2000u);
    EXPECT_EQ(unknown.size(), 0u);
}

TEST_F(GlobSweepTest, ASweepMayBeginAtAnyName) {
    for (int i = 0; i < 1000; ++i) named(anyName(i % 20 == 0 ? 300 : 24));
    std::size_t known = 0;
    for (std::uint32_t first = 0; first < 1000; ++first) {
        const std::vector<Glob> globs = {anyGlob(), anyGlob()};
        GlobSweep sweep(globs, pool, columns.nameOffsets()[first]);
        // A row that is swept, and one of names before it too.
        for (const std::size_t begin : {first, first / 2}) {
            const GlobSweep::Answers answers = sweep.answersFor(columns, begin);
            for (std::size_t i = 0; i < std::min(GlobSweep::kMostAtOnce, columns.size() - begin); ++i) {
                const bool unknownOne = (answers.unknown >> i & 1) != 0;
                ASSERT_FALSE(unknownOne && begin + i >= first) << first << ": " << begin + i;
                known += unknownOne ? 0 : 1;
                ASSERT_EQ((answers.matching >> i & 1) != 0, !unknownOne && matchesAny(globs, begin + i))
                    << first << ": " << begin + i;
            }
        }
    }
    EXPECT_GT(known, 60000u);
}

TEST_F(GlobSweepTest, ASweepMayBeginBehindThePool) {
    named(L"abc");
    named(L"abc");
    const std::vector<Glob> globs = {Glob({'*'})};
    GlobSweep sweep(globs, pool, 0xFFFFFFFF);
    const GlobSweep::Answers answers = sweep.answersFor(columns, 0);
    EXPECT_EQ(answers.matching, 0u);
    EXPECT_EQ(answers.unknown, 3u);
}

TEST_F(GlobSweepTest, NamesMayBeLongerThanWhatIsSweptAtOnce) {
    for (const std::size_t size : {63, 64, 65, 2047, 2048, 2049, 10000, 32766}) {
        named(std::wstring(size, L'a') + L"-");
        named(L"b");
        named(std::wstring(size, L'A'));
        for (int i = 0; i < 90; ++i) named(L"ba");
    }
    for (const char* text : {"a*-", "*a*-", "*aaaa-", "*-", "a*", "*a?", "b", "?", "a*a*a", "*b*", "*-*-"}) {
        EXPECT_EQ(compare({Glob({text, text + std::strlen(text)})}) == 0, std::string(text) == "*-*-")
            << text;
    }
}

TEST_F(GlobSweepTest, AStarEndsWithTheName) {
    named(L"a");
    named(L"b");
    named(L"");
    named(L"ab");
    EXPECT_EQ(compare({Glob({'a', '*', 'b'})}), 1u);
    EXPECT_EQ(compare({Glob({'*'})}), 4u);
    EXPECT_EQ(compare({Glob({'?', '*'})}), 3u);
    EXPECT_EQ(compare({Glob({})}), 1u);
    EXPECT_EQ(compare({Glob({'a', 0, 'b'})}), 0u) << "a NUL is no unit of a name";
    EXPECT_EQ(compare({Glob({'A'})}), 0u) << "a pattern is lower-cased";
}

TEST_F(GlobSweepTest, APoolMayEndAtAnyPlaceAndWithoutANul) {
    for (std::size_t size = 1; size < 300; ++size) {
        columns.clear();
        std::vector<std::uint16_t> units(size, 'a');
        if (size > 3) units[size - 3] = 0;
        pooled(units);
        record(0);
        record(static_cast<std::uint32_t>(size > 3 ? size - 2 : 0));
        record(static_cast<std::uint32_t>(size));  // out of range
        record(0xFFFFFFFF);
        EXPECT_EQ(compare({Glob({'*', 'a'})}), 2u) << size;
        EXPECT_EQ(compare({Glob({'a', 'a'})}) > 0, size == 2 || size > 3) << size;
        EXPECT_EQ(unknown.size(), 0u);
    }
}

TEST_F(GlobSweepTest, NamesThatShareUnitsAreNotKnown) {
    for (int i = 0; i < 300; ++i) named(L"abc");
    EXPECT_EQ(compare({Glob({'*', 'c'})}), 300u);
    FileRecord inside;
    inside.nameOffset = 4 * 100 + 1;
    columns.set(100, inside, pool);
    EXPECT_EQ(compare({Glob({'*', 'c'})}), 299u);
    EXPECT_EQ(unknown, std::vector<std::uint32_t>{100});
}

TEST_F(GlobSweepTest, ARowThatBeginsInsideANameIsNotBelieved) {
    record(pool.add(L"xabc") + 1);
    for (int i = 0; i < 200; ++i) named(L"abc");
    EXPECT_EQ(compare({Glob({'a', 'b', 'c'})}), 200u);
    EXPECT_EQ(unknown, std::vector<std::uint32_t>{0});
}

TEST_F(GlobSweepTest, ANameThatCameIntoThePoolSinceItsLengthWasTakenIsNotKnown) {
    for (int i = 0; i < 100; ++i) named(L"ab");
    const std::uint32_t early = record(static_cast<std::uint32_t>(pool.size()) + 1);
    for (int i = 0; i < 100; ++i) named(L"xb");
    EXPECT_EQ(compare({Glob({'*', 'b'})}), 200u);
    EXPECT_EQ(unknown, std::vector<std::uint32_t>{early});
}

}  // namespace
}  // namespace varnelo
