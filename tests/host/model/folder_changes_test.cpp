#include "model/folder_changes.h"

#include <gtest/gtest.h>

#include <random>

#include "platform/binary_stream.h"

namespace varnelo {
namespace {

using Kind = FolderChange::Kind;

struct Record {
    std::uint32_t action;
    std::wstring name;
};

// As the system writes them: each at a multiple of four bytes, the last with the offset zero.
std::vector<std::uint8_t> chainOf(const std::vector<Record>& records) {
    BinaryWriter out;
    for (std::size_t i = 0; i < records.size(); ++i) {
        const std::size_t bytes = 12 + 2 * records[i].name.size();
        const std::size_t padding = (4 - bytes % 4) % 4;
        out.u32(i + 1 == records.size() ? 0 : static_cast<std::uint32_t>(bytes + padding));
        out.u32(records[i].action);
        out.u32(static_cast<std::uint32_t>(2 * records[i].name.size()));
        out.units(records[i].name);
        for (std::size_t pad = 0; pad < padding; ++pad) out.u8(0xCC);
    }
    return out.take();
}

TEST(FolderChangesTest, AllRecordsOfAChainAreReadInOrder) {
    const auto bytes =
        chainOf({{1, L"a.txt"}, {4, L"b"}, {5, L"\u65E5\u672C.txt"}, {3, L"a.txt"}, {2, L"c"}});
    const std::vector<FolderChange> expected = {{Kind::Added, L"a.txt"},
                                                {Kind::RenamedOldName, L"b"},
                                                {Kind::RenamedNewName, L"\u65E5\u672C.txt"},
                                                {Kind::Modified, L"a.txt"},
                                                {Kind::Removed, L"c"}};
    EXPECT_EQ(decodeFolderChanges(bytes), expected);
}

TEST(FolderChangesTest, RecordsOfAnotherKindAreLeftOut) {
    const std::vector<FolderChange> expected = {{Kind::Removed, L"c"}};
    EXPECT_EQ(decodeFolderChanges(chainOf({{0, L"a"}, {6, L"b"}, {2, L"c"}, {0xFFFFFFFF, L"d"}})), expected);
}

TEST(FolderChangesTest, ATruncatedRecordEndsTheChain) {
    const auto bytes = chainOf({{1, L"first"}, {1, L"second"}});
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        const auto changes = decodeFolderChanges(std::span(bytes).first(length));
        EXPECT_EQ(changes.size(), length >= 22 ? 1u : 0u) << length;
    }
}

TEST(FolderChangesTest, ANameThatClaimsMoreThanThereIsEndsTheChain) {
    auto bytes = chainOf({{1, L"a"}});
    for (int i = 8; i < 12; ++i) bytes[static_cast<std::size_t>(i)] = 0xFF;
    EXPECT_TRUE(decodeFolderChanges(bytes).empty());
}

TEST(FolderChangesTest, AChainOfAnyBytesComesToAnEnd) {
    std::mt19937 random(7);
    for (int round = 0; round < 2000; ++round) {
        std::vector<std::uint8_t> bytes(random() % 300);
        for (auto& byte : bytes)
            byte = static_cast<std::uint8_t>(random() % 4 == 0 ? random() : random() % 8);
        EXPECT_LE(decodeFolderChanges(bytes).size(), bytes.size());
    }
}

}  // namespace
}  // namespace varnelo
