#include "index/list_proof.h"

#include <gtest/gtest.h>

#include <random>

#include "host/index/index_world.h"
#include "index/grams.h"

namespace varnelo {
namespace {

class ListProofTest : public ::testing::Test, protected IndexWorld {
protected:
    ListProofTest() {
        for (const wchar_t* name : {L"abc.txt", L"aaaa", L"", L"x", L"\u00C4B\u65E5\u672C"}) file(name);
    }
    bool fits() const {
        return listsFitNames(index.records(), index.names(), index.unigrams(), index.bigrams(),
                             index.trigrams());
    }
};

TEST_F(ListProofTest, TheListsOfAnIndexFitThroughAllChanges) {
    EXPECT_TRUE(fits());
    index.removeRecord(0);
    EXPECT_TRUE(fits());
    index.createRecord({99, kRootFrn, 0, 0, 0, 0}, L"in its place");
    index.renameRecord(1, {25, kRootFrn, 0, 0, 0, 0}, L"aabaa");
    index.pruneRecord(3);
    index.addRecord({98, kRootFrn, FileRecord::kDeleted, 0, 0, 0}, L"never listed");
    EXPECT_TRUE(fits());
    index.clearIndex();
    EXPECT_TRUE(fits()) << "of nothing too";
}

TEST_F(ListProofTest, AMissingEntryIsNoticed) {
    index.removePostings(1, L"a");
    EXPECT_FALSE(fits()) << "all of them";
}

TEST_F(ListProofTest, AnEntryTooManyIsNoticed) {
    index.addPostings(0, L"q");
    EXPECT_FALSE(fits());
    index.removePostings(0, L"q");
    EXPECT_TRUE(fits());
    index.addPostings(1, L"a");
    EXPECT_FALSE(fits()) << "one more than there are in the name";
}

TEST_F(ListProofTest, AnEntryOfATombstoneIsNoticed) {
    index.removeRecord(3);
    index.addPostings(3, L"x");
    EXPECT_FALSE(fits());
}

TEST_F(ListProofTest, AnEntryThatIsNoRecordIsNoticed) {
    index.addPostings(5, L"x");
    EXPECT_FALSE(fits());
}

TEST_F(ListProofTest, AGramOfAnotherLengthIsAnotherGram) {
    // The same number is the key of "x" and of a pair that begins with a NUL.
    NTFSIndex other;
    other.addRecord({24, kRootFrn, 0, 0, 0, 0}, L"x");
    PostingMap none{4};
    const std::uint64_t key = unigramKey('x');
    none.append(std::span(&key, 1), 0);
    EXPECT_FALSE(listsFitNames(other.records(), other.names(), PostingMap{2}, none, other.trigrams()));
    EXPECT_TRUE(
        listsFitNames(other.records(), other.names(), other.unigrams(), PostingMap{4}, PostingMap{8}));
}

TEST_F(ListProofTest, ANameThatIsNotInThePoolYetIsNoticed) {
    std::vector<FileRecord> records(index.records().begin(), index.records().end());
    records[2].nameOffset = static_cast<std::uint32_t>(index.names().size());
    EXPECT_FALSE(listsFitNames(records, index.names(), index.unigrams(), index.bigrams(), index.trigrams()))
        << "another name may come to lie there";
}

TEST_F(ListProofTest, EntriesThatChangedPlacesAreNoticed) {
    std::mt19937 random(2);
    for (int i = 0; i < 50; ++i) file(std::wstring(1 + random() % 5, L"ab"[random() % 2]));
    ASSERT_TRUE(fits());
    std::vector<FileRecord> records(index.records().begin(), index.records().end());
    int noticed = 0;
    int swapped = 0;
    for (int round = 0; round < 200; ++round) {
        FileRecord& a = records[random() % records.size()];
        FileRecord& b = records[random() % records.size()];
        const NameUnits nameOfA = index.names().at(a.nameOffset);
        const NameUnits nameOfB = index.names().at(b.nameOffset);
        if (std::equal(nameOfA.begin(), nameOfA.end(), nameOfB.begin(), nameOfB.end())) continue;
        ++swapped;
        std::swap(a.nameOffset, b.nameOffset);
        noticed += listsFitNames(records, index.names(), index.unigrams(), index.bigrams(), index.trigrams())
                       ? 0
                       : 1;
        std::swap(a.nameOffset, b.nameOffset);
    }
    EXPECT_GT(swapped, 100);
    EXPECT_EQ(noticed, swapped);
}

}  // namespace
}  // namespace varnelo
