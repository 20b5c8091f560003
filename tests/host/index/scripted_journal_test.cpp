#include "support/scripted_journal.h"

#include <gtest/gtest.h>

#include "platform/binary_stream.h"
#include "support/ntfs_attribute.h"

namespace varnelo::test {
namespace {

constexpr std::uint64_t kId = 77, kFirst = 0x500;
constexpr std::uint32_t kClose = 0x80000000, kCreate = 0x100;

Bytes request(std::uint64_t start, std::uint32_t reasons = 0xFFFFFFFF, std::uint64_t id = kId) {
    BinaryWriter out;
    out.u64(start);
    out.u32(reasons);
    out.u32(0);
    out.u64(0);
    out.u64(0);
    out.u64(id);
    return out.take();
}

class ScriptedJournalTest : public testing::Test {
protected:
    ScriptedJournalTest() {
        for (const wchar_t* name : {L"a", L"bb", L"ccc"}) {
            UsnFields fields;
            fields.frn = 100;
            fields.reason = name[0] == L'b' ? kCreate : kClose;
            fields.name = name;
            journal.add(fields);
        }
    }
    // The numbers of the records that a read gives, and then the one to go on with.
    std::vector<std::uint64_t> read(const Bytes& asked, std::size_t bufferBytes = 1000) {
        answer.assign(bufferBytes, 0);
        const auto count = journal.read(asked, answer);
        if (!count) return {};
        std::vector<std::uint64_t> usns;
        for (std::size_t at = 8; at < *count; at += littleEndian(answer, at, 4))
            usns.push_back(littleEndian(answer, at + 24, 8));
        usns.push_back(littleEndian(answer, 0, 8));
        return usns;
    }

    using Usns = std::vector<std::uint64_t>;
    ScriptedJournal journal{kId, kFirst};
    Bytes answer;
};

TEST_F(ScriptedJournalTest, GivesRecordsThatFollowEachOther) {
    EXPECT_EQ(read(request(kFirst)), (Usns{kFirst, kFirst + 64, kFirst + 128, kFirst + 200}));
    EXPECT_EQ(journal.nextUsn(), kFirst + 200);
    EXPECT_EQ(read(request(kFirst + 64)), (Usns{kFirst + 64, kFirst + 128, kFirst + 200}));
    EXPECT_EQ(read(request(kFirst + 200)), (Usns{kFirst + 200}));
}

TEST_F(ScriptedJournalTest, GivesAsManyAsFit) {
    EXPECT_EQ(read(request(kFirst), 8 + 130), (Usns{kFirst, kFirst + 64, kFirst + 128}));
    EXPECT_EQ(read(request(kFirst), 8 + 63), Usns{});
}

TEST_F(ScriptedJournalTest, GivesOnlyWhatHasOneOfTheReasons) {
    EXPECT_EQ(read(request(kFirst, kCreate)), (Usns{kFirst + 64, kFirst + 200}));
}

TEST_F(ScriptedJournalTest, RefusesWhatIsNoLongerOrNotYetThere) {
    EXPECT_EQ(read(request(kFirst, ~0u, kId + 1)), Usns{});
    EXPECT_EQ(read(request(kFirst + 201)), Usns{});
    journal.dropOldest(1);
    EXPECT_EQ(read(request(kFirst)), Usns{});
    EXPECT_EQ(read(request(kFirst + 64)).size(), 3u);
    journal.recreate(kId + 1, 0);
    EXPECT_EQ(read(request(0, ~0u, kId + 1)), Usns{0});
}

TEST_F(ScriptedJournalTest, TellsWhatItHoldsInTheLongestFormThatFits) {
    Bytes data(100);
    EXPECT_EQ(journal.query(data), 80u);
    EXPECT_EQ(littleEndian(data, 0, 8), kId);
    EXPECT_EQ(littleEndian(data, 8, 8), kFirst);
    EXPECT_EQ(littleEndian(data, 16, 8), kFirst + 200);
    EXPECT_EQ(journal.query(std::span(data).first(64)), 64u);
    EXPECT_EQ(journal.query(std::span(data).first(60)), 56u);
    EXPECT_EQ(journal.query(std::span(data).first(55)), std::nullopt);
}

TEST_F(ScriptedJournalTest, HoldsBytesAsTheyAre) {
    journal.addBytes(Bytes(24, 0xEE), kClose);
    answer.assign(1000, 0);
    EXPECT_EQ(journal.read(request(kFirst + 200), answer), 32u);
    EXPECT_EQ(answer[8], 0xEE);
}

}  // namespace
}  // namespace varnelo::test
