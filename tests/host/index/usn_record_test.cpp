#include "index/usn_record.h"

#include <gtest/gtest.h>

#include "support/ntfs_bytes.h"

namespace varnelo {
namespace {

using test::Bytes;
using test::usnAnswer;
using test::usnRecord;
using test::usnRecordOfVersion;
using Names = std::vector<std::wstring>;

Names namesIn(const Bytes& answer) {
    Names names;
    UsnRecordWalk walk(answer);
    for (UsnRecord record; walk.next(record);) record.nameInto(names.emplace_back());
    return names;
}

Bytes named(const wchar_t* name) { return usnRecord({30, 5, name}); }

TEST(UsnRecordTest, ARecordTellsWhatItWasGiven) {
    const Bytes answer =
        usnAnswer(0x123456789A,
                  {usnRecord({0x0007000000000123, 0x0009000000000456, L"caf\u00E9", 0x26, 0x80000100, 99})});
    UsnRecordWalk walk(answer);
    EXPECT_EQ(walk.nextPosition(), 0x123456789Au);
    UsnRecord record;
    ASSERT_TRUE(walk.next(record));
    EXPECT_EQ(record.frn, 0x0007000000000123u);
    EXPECT_EQ(record.parentFrn, 0x0009000000000456u);
    EXPECT_EQ(record.reason, 0x80000100u);
    EXPECT_EQ(record.attributes, 0x26u);
    EXPECT_EQ(record.nameBytes, 8u);
    std::wstring name = L"something longer from before";
    record.nameInto(name);
    EXPECT_EQ(name, L"caf\u00E9");
    EXPECT_FALSE(walk.next(record));
}

TEST(UsnRecordTest, RecordsFollowOneAnotherAndOtherVersionsArePassedOver) {
    EXPECT_EQ(namesIn(usnAnswer(1, {named(L"a"), usnRecordOfVersion(3, 96), named(L"b"),
                                    usnRecordOfVersion(4, 80), usnRecordOfVersion(4, 8), named(L"c")})),
              (Names{L"a", L"b", L"c"}));
}

TEST(UsnRecordTest, OnlyTheVersionTellsARecordThatIsPassedOver) {
    for (const std::uint16_t version : {std::uint16_t{1}, std::uint16_t{3}, std::uint16_t{4}}) {
        Bytes other = named(L"other");
        test::put(other, 4, version);
        EXPECT_EQ(namesIn(usnAnswer(1, {other, named(L"a")})), Names{L"a"}) << version;
    }
    Bytes later = named(L"later");
    test::put(later, 6, std::uint16_t{1});
    EXPECT_EQ(namesIn(usnAnswer(1, {later})), Names{L"later"}) << "the minor version adds at most";
}

TEST(UsnRecordTest, AnAnswerOfTheNumberAloneHasNoRecords) {
    const Bytes answer = usnAnswer(77, {});
    EXPECT_EQ(UsnRecordWalk(answer).nextPosition(), 77u);
    EXPECT_EQ(namesIn(answer), Names{});
}

TEST(UsnRecordTest, AnAnswerTooShortForTheNumberHasNothing) {
    const Bytes answer(7, 1);
    EXPECT_EQ(UsnRecordWalk(answer).nextPosition(), std::nullopt);
    EXPECT_EQ(namesIn(answer), Names{});
}

TEST(UsnRecordTest, ALengthThatCannotBeRightEndsTheWalk) {
    for (const std::uint32_t length : {0u, 1u, 7u, 59u, 4000u, 0xFFFFFFFFu}) {
        Bytes wrong = named(L"wrong");
        test::put(wrong, 0, length);
        EXPECT_EQ(namesIn(usnAnswer(1, {named(L"a"), wrong, named(L"b")})), Names{L"a"}) << length;
    }
}

TEST(UsnRecordTest, ALengthBelowThatOfEveryRecordEndsTheWalkThoughOneFollows) {
    EXPECT_EQ(namesIn(usnAnswer(1, {named(L"a"), Bytes{4, 0, 0, 0}, named(L"b")})), Names{L"a"});
}

TEST(UsnRecordTest, AnotherVersionIsNotTrustedEither) {
    Bytes wrong = usnRecordOfVersion(3, 96);
    test::put(wrong, 0, 97u);
    EXPECT_EQ(namesIn(usnAnswer(1, {named(L"a"), wrong})), Names{L"a"}) << "beyond the end";
    test::put(wrong, 0, 0u);
    EXPECT_EQ(namesIn(usnAnswer(1, {named(L"a"), wrong, named(L"b")})), Names{L"a"});
}

TEST(UsnRecordTest, ANameThatReachesBeyondItsRecordIsLeftOut) {
    Bytes wrong = named(L"four");
    test::put(wrong, 56, std::uint16_t{14});  // the record has room for six units
    EXPECT_EQ(namesIn(usnAnswer(1, {wrong, named(L"next")})), Names{L"next"});
    test::put(wrong, 56, std::uint16_t{12});
    EXPECT_EQ(namesIn(usnAnswer(1, {wrong})).front().substr(0, 4), L"four");
}

TEST(UsnRecordTest, TheNamesPlaceIsTheVersionsOwnWhateverTheRecordSays) {
    Bytes record = named(L"name");
    test::put(record, 58, std::uint16_t{0xFFFF});
    EXPECT_EQ(namesIn(usnAnswer(1, {record})), Names{L"name"});
}

TEST(UsnRecordTest, AnOddLengthLosesItsLastByte) {
    Bytes record = named(L"name");
    test::put(record, 56, std::uint16_t{7});
    EXPECT_EQ(namesIn(usnAnswer(1, {record})), Names{L"nam"});
    test::put(record, 56, std::uint16_t{0});
    EXPECT_EQ(namesIn(usnAnswer(1, {record})), Names{L""});
}

TEST(UsnRecordTest, EveryCutEndsTheWalkInPeace) {
    const Bytes whole = usnAnswer(1, {named(L"first"), usnRecordOfVersion(3, 80), named(L"second")});
    const std::size_t firstEnd = 8 + named(L"first").size();
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_EQ(namesIn(cut).size(), size < firstEnd ? 0u : 1u) << size;
    }
}

TEST(UsnRecordTest, LoneSurrogatesSurvive) {
    const std::wstring name = {L'a', wchar_t{0xD800}, L'b'};
    EXPECT_EQ(namesIn(usnAnswer(1, {usnRecord({30, 5, name})})), Names{name});
}

}  // namespace
}  // namespace varnelo
