#include <gtest/gtest.h>

#include "host/index/index_world.h"

namespace varnelo {
namespace {

class FullPathTest : public ::testing::Test, protected IndexWorld {
protected:
    FullPathTest() { onVolume(L'C'); }
};

TEST_F(FullPathTest, NamesAreJoinedFromTheDriveDown) {
    file(100, L"Users");
    file(101, L"me", 100);
    EXPECT_EQ(pathOf(file(102, L"plan.txt", 101)), L"C:\\Users\\me\\plan.txt");
}

TEST_F(FullPathTest, ARecordWithoutAParentStandsRightBelowItsDrive) {
    EXPECT_EQ(pathOf(file(100, L"lost.txt", 999)), L"C:\\lost.txt");
    EXPECT_EQ(pathOf(file(101, L"own.txt", 101)), L"C:\\own.txt");
}

TEST_F(FullPathTest, TheRootEndsTheWalk) {
    file(5, L"root", 900);
    file(900, L"above");
    EXPECT_EQ(pathOf(file(100, L"a", 5)), L"C:\\root\\a");
}

TEST_F(FullPathTest, AParentIsLookedUpOnTheSameVolume) {
    file(100, L"onC");
    onVolume(L'D');
    EXPECT_EQ(pathOf(file(101, L"a", 100)), L"D:\\a");
}

TEST_F(FullPathTest, ANameThatIsEmptyIsPassedOver) {
    file(100, L"top");
    file(101, L"", 100);
    EXPECT_EQ(pathOf(file(102, L"a", 101)), L"C:\\top\\a");
}

TEST_F(FullPathTest, AVolumeThatIsNotKnownGivesNoDrive) {
    index.currentVolume = 7;
    EXPECT_EQ(pathOf(file(100, L"a")), L"\\a");
}

TEST_F(FullPathTest, OnlyTheLowest256LevelsAreTold) {
    std::uint64_t parent = kRootFrn;
    std::uint32_t last = 0;
    for (std::uint64_t i = 0; i < 300; ++i) {
        last = file(1000 + i, L"d" + std::to_wstring(i), parent);
        parent = 1000 + i;
    }
    std::wstring expected = L"C:";
    for (int i = 300 - 256; i < 300; ++i) expected += L"\\d" + std::to_wstring(i);
    EXPECT_EQ(pathOf(last), expected);
}

TEST_F(FullPathTest, ACircleOfParentsEnds) {
    file(100, L"a", 101);
    const std::wstring path = pathOf(file(101, L"b", 100));
    EXPECT_EQ(path.size(), 2u + 256 * 2);
    EXPECT_EQ(path.substr(path.size() - 4), L"\\a\\b");
}

TEST_F(FullPathTest, APathIsRememberedForTheRecordAlone) {
    const std::uint32_t folder = file(100, L"old");
    const std::uint32_t inside = file(101, L"a", 100);
    const std::uint32_t later = file(102, L"b", 100);
    EXPECT_EQ(pathOf(inside), L"C:\\old\\a");
    index.renameRecord(folder, {100, kRootFrn, 1, 0, 0, 0}, L"new");
    EXPECT_EQ(pathOf(folder), L"C:\\new");
    EXPECT_EQ(pathOf(inside), L"C:\\old\\a") << "what lies below a renamed folder keeps its path";
    EXPECT_EQ(pathOf(later), L"C:\\new\\b") << "the walk did not remember the folder";
}

TEST_F(FullPathTest, ARememberedParentIsThePrefix) {
    const std::uint32_t top = file(100, L"top");
    const std::uint32_t folder = file(101, L"folder", 100);
    EXPECT_EQ(pathOf(folder), L"C:\\top\\folder");
    index.renameRecord(top, {100, kRootFrn, 1, 0, 0, 0}, L"new");
    EXPECT_EQ(pathOf(file(102, L"a", 101)), L"C:\\top\\folder\\a");
}

TEST_F(FullPathTest, AnUpdateForgetsThePath) {
    const std::uint32_t folder = file(100, L"folder");
    const std::uint32_t moved = file(101, L"a");
    EXPECT_EQ(pathOf(moved), L"C:\\a");
    index.updateRecord(moved, 100, 0, 0, 0);
    EXPECT_EQ(pathOf(moved), L"C:\\folder\\a");
    index.removeRecord(folder);
    EXPECT_EQ(pathOf(moved), L"C:\\folder\\a") << "a removal forgets the record's own path alone";
}

TEST_F(FullPathTest, ARemovalForgetsThePath) {
    const std::uint32_t first = file(100, L"first");
    EXPECT_EQ(pathOf(first), L"C:\\first");
    index.removeRecord(first);
    EXPECT_EQ(pathOf(index.createRecord({100, kRootFrn, 0, 0, 0, 0}, L"second")), L"C:\\second");
}

}  // namespace
}  // namespace varnelo
