#include "model/entry_cache.h"

#include <gtest/gtest.h>

#include <deque>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <random>

#include "platform/binary_stream.h"
#include "support/scripted_shell.h"

namespace varnelo {
namespace {

// Items with a place, as an organiser holds them.
class EntryCacheTest : public ::testing::Test {
protected:
    DesktopFileInfo& item(const ItemIdList& list, std::int64_t timestamp = 0, std::int32_t slot = -1,
                          std::int64_t slotTime = 0) {
        DesktopFileInfo& info = infos.emplace_back();
        info.pidl = list;
        info.timestamp = timestamp;
        info.slot = slot;
        info.slotTime = slotTime;
        return info;
    }
    DesktopFileInfo& item(const std::wstring& name, std::int64_t timestamp = 0, std::int32_t slot = -1,
                          std::int64_t slotTime = 0) {
        return item(ScriptedShell::list(name), timestamp, slot, slotTime);
    }
    std::vector<CachedEntry> entries() {
        std::vector<CachedEntry> cached;
        for (DesktopFileInfo& info : infos) cached.push_back({&info.pidl, &info});
        return cached;
    }
    std::vector<std::uint8_t> encoded() { return encodeEntryCache(entries()); }
    bool decode(std::span<const std::uint8_t> bytes) {
        return decodeEntryCache(bytes, entries(), [this](const ItemIdList& a, const ItemIdList& b) {
            ++questions;
            return shell.equal(a, b);
        });
    }
    void forgetPlaces() {
        for (DesktopFileInfo& info : infos) {
            info.timestamp = 0;
            info.slot = -1;
            info.slotTime = 0;
        }
    }

    ScriptedShell shell;
    std::deque<DesktopFileInfo> infos;
    int questions = 0;
};

TEST_F(EntryCacheTest, TheBytesAreThoseOfTheFormat) {
    const std::uint8_t list[] = {4, 0, 'a', 'b', 0, 0};
    item(ItemIdList::fromBytes(list).value(), 0x0102030405060708, 7, -2);
    item(ItemIdList(), 1, -1, 0);
    const std::vector<std::uint8_t> golden = {
        1,    0,    0,    0,                                   // version
        2,    0,    0,    0,    0,    0,    0,    0,           // count
        6,    0,    0,    0,    4,    0,    'a',  'b',  0, 0,  // pidlSize, pidl
        8,    7,    6,    5,    4,    3,    2,    1,           // timestamp
        7,    0,    0,    0,                                   // slot
        0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF,        // slotTime
        0,    0,    0,    0,                                   // no list
        1,    0,    0,    0,    0,    0,    0,    0,           // timestamp
        0xFF, 0xFF, 0xFF, 0xFF,                                // slot
        0,    0,    0,    0,    0,    0,    0,    0,           // slotTime
    };
    EXPECT_EQ(encoded(), golden);
    forgetPlaces();
    ASSERT_TRUE(decode(golden));
    EXPECT_EQ(infos[0].timestamp, 0x0102030405060708);
    EXPECT_EQ(infos[0].slot, 7);
    EXPECT_EQ(infos[0].slotTime, -2);
}

TEST_F(EntryCacheTest, NoItemsGiveAHeaderOnly) {
    const std::vector<std::uint8_t> golden = {1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
    EXPECT_EQ(encoded(), golden);
    EXPECT_TRUE(decode(golden));
}

TEST_F(EntryCacheTest, AnItemGetsItsPlaceBack) {
    item(L"a.txt", 100, 3, 200);
    item(L"b.txt", 101, 0, 0);
    const auto bytes = encoded();
    forgetPlaces();
    EXPECT_TRUE(decode(bytes));
    EXPECT_EQ(infos[0].timestamp, 100);
    EXPECT_EQ(infos[0].slot, 3);
    EXPECT_EQ(infos[0].slotTime, 200);
    EXPECT_EQ(infos[1].slot, 0);
    EXPECT_EQ(questions, 0) << "equal bytes need no question";
}

TEST_F(EntryCacheTest, AListWithOtherBytesIsRecognisedByTheShell) {
    item(ScriptedShell::list(L"a.txt", 1), 100, 3, 200);
    const auto bytes = encoded();
    infos.clear();
    item(L"b.txt");
    item(ScriptedShell::list(L"a.txt", 2));
    EXPECT_TRUE(decode(bytes));
    EXPECT_EQ(infos[0].slot, -1);
    EXPECT_EQ(infos[1].slot, 3);
}

TEST_F(EntryCacheTest, TheFirstOfSeveralEqualItemsGetsThePlace) {
    item(ScriptedShell::list(L"a.txt", 1), 100, 3, 200);
    const auto bytes = encoded();
    infos.clear();
    item(ScriptedShell::list(L"a.txt", 2));
    item(ScriptedShell::list(L"a.txt", 3));
    EXPECT_TRUE(decode(bytes));
    EXPECT_EQ(infos[0].slot, 3);
    EXPECT_EQ(infos[1].slot, -1);

    infos.clear();
    item(ScriptedShell::list(L"a.txt", 1));
    item(ScriptedShell::list(L"a.txt", 1));
    EXPECT_TRUE(decode(bytes));
    EXPECT_EQ(infos[0].slot, 3) << "of equal bytes too";
    EXPECT_EQ(infos[1].slot, -1);
}

TEST_F(EntryCacheTest, AnItemThatItsOwnBytesFoundIsNotAskedAbout) {
    item(ScriptedShell::list(L"a.txt", 1), 100, 3, 200);
    item(ScriptedShell::list(L"a.txt", 2), 101, 4, 201);
    const auto bytes = encoded();
    infos.clear();
    item(ScriptedShell::list(L"a.txt", 1));
    EXPECT_TRUE(decode(bytes));
    EXPECT_EQ(infos[0].slot, 3);
    EXPECT_EQ(questions, 0);
}

TEST_F(EntryCacheTest, ARecordWithoutAListOrAMatchIsPassedOver) {
    item(ItemIdList(), 1, 1, 1);
    item(L"gone.txt", 2, 2, 2);
    item(L"a.txt", 3, 3, 3);
    const auto bytes = encoded();
    infos.clear();
    item(ItemIdList());
    item(L"a.txt");
    EXPECT_TRUE(decode(bytes));
    EXPECT_EQ(infos[0].slot, -1);
    EXPECT_EQ(infos[1].slot, 3);
}

TEST_F(EntryCacheTest, AnotherVersionIsIgnored) {
    item(L"a.txt", 100, 3, 200);
    auto bytes = encoded();
    bytes[0] = 2;
    forgetPlaces();
    EXPECT_FALSE(decode(bytes));
    EXPECT_EQ(infos[0].slot, -1);
}

TEST_F(EntryCacheTest, WhatStoodBeforeATruncationIsCopied) {
    item(L"a.txt", 100, 3, 200);
    item(L"b.txt", 101, 4, 201);
    const auto bytes = encoded();
    const std::size_t recordBytes = (bytes.size() - 12) / 2;
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        forgetPlaces();
        EXPECT_FALSE(decode(std::span(bytes).first(length))) << length;
        EXPECT_EQ(infos[0].slot, length >= 12 + recordBytes ? 3 : -1) << length;
        EXPECT_EQ(infos[1].slot, -1) << length;
    }
}

TEST_F(EntryCacheTest, AHugeCountReadsWhatIsThereAndFails) {
    item(L"a.txt", 100, 3, 200);
    auto bytes = encoded();
    for (std::size_t i = 4; i < 12; ++i) bytes[i] = 0xFF;
    forgetPlaces();
    EXPECT_FALSE(decode(bytes));
    EXPECT_EQ(infos[0].slot, 3);
}

TEST_F(EntryCacheTest, AHugeListSizeFails) {
    item(L"a.txt", 100, 3, 200);
    auto bytes = encoded();
    for (std::size_t i = 12; i < 16; ++i) bytes[i] = 0xFF;
    forgetPlaces();
    EXPECT_FALSE(decode(bytes));
    EXPECT_EQ(infos[0].slot, -1);
}

TEST_F(EntryCacheTest, AListWithoutAnEndIsNoListAndTheRestIsRead) {
    BinaryWriter out;
    out.u32(1);
    out.u64(2);
    out.u32(4);
    for (const int byte : {0x50, 0, 1, 2}) out.u8(static_cast<std::uint8_t>(byte));  // claims 80 bytes
    out.i64(9);
    out.i32(9);
    out.i64(9);
    item(L"a.txt");
    const auto list = infos[0].pidl.bytes();
    out.u32(static_cast<std::uint32_t>(list.size()));
    out.bytes(list);
    out.i64(100);
    out.i32(3);
    out.i64(200);
    EXPECT_TRUE(decode(out.bytes()));
    EXPECT_EQ(infos[0].slot, 3);
}

TEST_F(EntryCacheTest, DamagedBytesNeverDoHarm) {
    for (int i = 0; i < 20; ++i) item(L"file " + std::to_wstring(i), i, i, i);
    const auto bytes = encoded();
    std::mt19937 random(11);
    for (int round = 0; round < 500; ++round) {
        auto damaged = bytes;
        for (int hits = 0; hits < 8; ++hits) {
            damaged[random() % damaged.size()] = static_cast<std::uint8_t>(random());
        }
        damaged[0] = 1;
        decode(damaged);
        for (auto& byte : damaged) byte = static_cast<std::uint8_t>(random());
        EXPECT_FALSE(decode(damaged));
    }
    EXPECT_EQ(infos.size(), 20u);
}

class EntryCacheFileTest : public EntryCacheTest {
protected:
    EntryCacheFileTest() {
        folder = std::filesystem::temp_directory_path() /
                 ("varnelo_cache_" + std::to_string(reinterpret_cast<std::uintptr_t>(this)) + "_" +
                  std::to_string(std::random_device{}()));
        std::filesystem::create_directories(folder);
        file = folder / "desktop.cache";
    }
    ~EntryCacheFileTest() override {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }
    std::vector<std::uint8_t> onDisk() const {
        std::ifstream in(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    std::filesystem::path folder;
    std::filesystem::path file;
};

TEST_F(EntryCacheFileTest, WhatIsSavedIsLoaded) {
    item(L"a.txt", 100, 3, 200);
    ASSERT_TRUE(saveEntryCache(file.wstring(), entries()));
    EXPECT_EQ(onDisk(), encoded());
    forgetPlaces();
    EXPECT_TRUE(loadEntryCache(file.wstring(), entries(), {}));
    EXPECT_EQ(infos[0].slot, 3);
}

TEST_F(EntryCacheFileTest, AMissingFileLoadsNothing) {
    item(L"a.txt");
    EXPECT_FALSE(loadEntryCache(file.wstring(), entries(), {}));
    EXPECT_EQ(infos[0].slot, -1);
}

TEST_F(EntryCacheFileTest, AFailedSaveLeavesTheOldFile) {
    item(L"a.txt", 100, 3, 200);
    ASSERT_TRUE(saveEntryCache(file.wstring(), entries()));
    const auto before = onDisk();
    // A folder in the place of the file cannot be replaced.
    const auto blocked = folder / "blocked.cache";
    std::filesystem::create_directories(blocked / "inside");
    EXPECT_FALSE(saveEntryCache(blocked.wstring(), entries()));
    EXPECT_TRUE(std::filesystem::is_directory(blocked / "inside"));
    EXPECT_FALSE(saveEntryCache((folder / "missing" / "desktop.cache").wstring(), entries()));
    EXPECT_EQ(onDisk(), before);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 2) << "nothing is left beside";
}

}  // namespace
}  // namespace varnelo
