#include "index/mft_record.h"

#include <gtest/gtest.h>

#include "support/ntfs_bytes.h"

namespace varnelo {
namespace {

using test::Bytes;
using test::MftRecordBytes;

MftRecordFacts factsOf(const Bytes& record, RecordTime time = RecordTime::LastWrite) {
    return readMftRecord(record, time);
}

TEST(MftRecordTest, TheAnswerHoldsANumberAndARecord) {
    const Bytes output = test::fileRecordOutput(0x0003000000000042, MftRecordBytes().ended());
    const auto answer = fileRecordAnswer(output);
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->frn, 0x0003000000000042u);
    EXPECT_EQ(answer->record.size(), 1024u);
    EXPECT_TRUE(hasFileSignature(answer->record));
    EXPECT_FALSE(fileRecordAnswer(std::span(output).first(11)));
    EXPECT_FALSE(hasFileSignature(fileRecordAnswer(std::span(output).first(15))->record));
}

TEST(MftRecordTest, AnotherSignatureIsNoFile) {
    Bytes record = MftRecordBytes().ended();
    record[0] = 'B';
    EXPECT_FALSE(hasFileSignature(record));
}

TEST(MftRecordTest, StandardInformationGivesOneOfTwoTimesAndTheAttributes) {
    const Bytes record = MftRecordBytes().standardInformation(801, 802, 0x2022).ended();
    EXPECT_EQ(factsOf(record).modified, 801u);
    EXPECT_EQ(factsOf(record, RecordTime::RecordChange).modified, 802u);
    EXPECT_EQ(factsOf(record).attributes, 0x2022u);
    EXPECT_FALSE(factsOf(record).hasData);
    EXPECT_FALSE(factsOf(record).hasAttributeList);
}

TEST(MftRecordTest, StandardInformationThatLiesElsewhereIsNotRead) {
    Bytes record = MftRecordBytes().standardInformation(801, 802, 0x20).ended();
    record[56 + 8] = 1;
    EXPECT_EQ(factsOf(record).modified, 0u);
    EXPECT_EQ(factsOf(record).attributes, std::nullopt);
}

TEST(MftRecordTest, OfSeveralTheLastOneCounts) {
    const auto facts = factsOf(MftRecordBytes()
                                   .standardInformation(1, 2, 3)
                                   .standardInformation(4, 5, 6)
                                   .nonResidentData(90000)
                                   .residentData(7)
                                   .ended());
    EXPECT_EQ(facts.modified, 4u);
    EXPECT_EQ(facts.attributes, 6u);
    EXPECT_EQ(facts.size, 7u);
}

TEST(MftRecordTest, WithoutAttributesThereIsNothing) {
    const MftRecordFacts facts = factsOf(MftRecordBytes().ended());
    EXPECT_EQ(facts.modified, 0u);
    EXPECT_EQ(facts.attributes, std::nullopt);
    EXPECT_EQ(facts.size, 0u);
}

TEST(MftRecordTest, ResidentDataIsAsLongAsItsValue) {
    const auto facts = factsOf(MftRecordBytes().residentData(300).ended());
    EXPECT_TRUE(facts.hasData);
    EXPECT_EQ(facts.size, 300u);
}

TEST(MftRecordTest, OtherDataHasItsRealSizeNotTheAllocatedOne) {
    const auto facts = factsOf(MftRecordBytes().nonResidentData(5'000'000'123).ended());
    EXPECT_TRUE(facts.hasData);
    EXPECT_EQ(facts.size, 5'000'000'123u);
}

TEST(MftRecordTest, NamedStreamsAreNotTheFile) {
    const auto facts =
        factsOf(MftRecordBytes().residentData(300, L"stream").nonResidentData(70000, 0, L"other").ended());
    EXPECT_FALSE(facts.hasData);
    EXPECT_EQ(facts.size, 0u);
}

TEST(MftRecordTest, ALaterPieceNeitherChangesTheSizeNorCountsAsData) {
    EXPECT_EQ(factsOf(MftRecordBytes().nonResidentData(90000).nonResidentData(0, 22).ended()).size, 90000u);
    EXPECT_FALSE(factsOf(MftRecordBytes().nonResidentData(4, 22).ended()).hasData);
}

TEST(MftRecordTest, AnAttributeListIsNoticedInBothForms) {
    EXPECT_TRUE(factsOf(MftRecordBytes().attributeList(true).ended()).hasAttributeList);
    EXPECT_TRUE(factsOf(MftRecordBytes().attributeList(false).ended()).hasAttributeList);
}

TEST(MftRecordTest, TheWalkEndsAtTheEndMark) {
    MftRecordBytes record;
    record.standardInformation(1, 2, 3).attribute(0xFFFFFFFF, 32, 32).residentData(9);
    EXPECT_FALSE(factsOf(record.ended()).hasData) << "whatever stands where others have their length";
}

TEST(MftRecordTest, TheWalkEndsAtALengthOfZero) {
    EXPECT_FALSE(factsOf(MftRecordBytes().attribute(0x30, 0, 32).residentData(9).ended()).hasData);
}

TEST(MftRecordTest, TheWalkEndsWhereTheNextAttributeLiesBehindTheRecord) {
    // Two numbers of the length beyond the end, and one that would turn around in 32 bits.
    for (const std::uint32_t length : {5000u, 1024u - 56u, 0xFFFFFFC8u}) {
        const Bytes record = MftRecordBytes().attribute(0x30, length, 32).residentData(9).ended();
        EXPECT_FALSE(factsOf(record).hasData) << length;
    }
}

TEST(MftRecordTest, AttributesMayStandAtOddPlaces) {
    const Bytes record = MftRecordBytes().attribute(0x30, 33, 33).residentData(9).ended();
    EXPECT_EQ(factsOf(record).size, 9u);
}

TEST(MftRecordTest, AnAttributeThatCountsByOneEnds) {
    const Bytes record(4'000'000, 1);
    EXPECT_FALSE(factsOf(record).hasData);
}

TEST(MftRecordTest, FirstAttributesBeyondTheRecordAreNone) {
    for (const std::uint16_t at :
         {std::uint16_t{0}, std::uint16_t{1020}, std::uint16_t{1024}, std::uint16_t{0xFFFF}}) {
        Bytes record = MftRecordBytes().residentData(9).ended();
        test::put(record, 20, at);
        EXPECT_FALSE(factsOf(record).hasData) << at;
    }
}

TEST(MftRecordTest, AValueThatLiesBeyondTheRecordIsNotRead) {
    Bytes record = MftRecordBytes().standardInformation(1, 2, 3).ended();
    test::put(record, 56 + 20, std::uint16_t{0xFFF0});
    EXPECT_EQ(factsOf(record).attributes, std::nullopt);
    test::put(record, 56 + 20, std::uint16_t{1024 - 56 - 35});
    EXPECT_EQ(factsOf(record).attributes, std::nullopt) << "one byte is missing";
}

TEST(MftRecordTest, DataWhoseSizeLiesBeyondTheRecordIsNotSeen) {
    for (const MftRecordBytes& bytes :
         {MftRecordBytes().residentData(9), MftRecordBytes().nonResidentData(9)}) {
        const Bytes whole = bytes.ended(0);
        for (std::size_t size = 0; size <= whole.size(); ++size) {
            const auto facts =
                factsOf(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
            EXPECT_EQ(facts.hasData, facts.size == 9) << size;
        }
    }
}

TEST(MftRecordTest, EveryCutOfARecordIsReadAsFarAsItGoes) {
    const Bytes whole = MftRecordBytes()
                            .standardInformation(801, 802, 0x20)
                            .attributeList()
                            .residentData(3, L"s")
                            .nonResidentData(77)
                            .ended(0);
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        const auto facts = factsOf(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
        EXPECT_TRUE(facts.modified == 0 || facts.modified == 801) << size;
        EXPECT_TRUE(facts.size == 0 || facts.size == 77) << size;
    }
    EXPECT_EQ(factsOf(whole).size, 77u);
}

}  // namespace
}  // namespace varnelo
