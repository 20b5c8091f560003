#include "index/posting_map.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>

namespace varnelo {
namespace {

using Entries = std::vector<std::uint32_t>;

void append(PostingMap& map, std::uint64_t key, std::uint32_t index) { map.append({&key, 1}, index); }

Entries listOf(const PostingMap& map, std::uint64_t key) {
    const auto list = map.find(key);
    return list ? map.entries(*list) : Entries{};
}

// The bytes of a map as a file holds them.
std::vector<std::uint8_t> written(const PostingMap& map) {
    std::vector<std::uint8_t> bytes;
    map.writeTo(
        [&](std::span<const std::uint8_t> piece) { bytes.insert(bytes.end(), piece.begin(), piece.end()); });
    return bytes;
}

// Reads such bytes; the map refers to them from then on.
void read(PostingMap& map, std::size_t keyBytes, std::vector<std::uint8_t>& bytes) {
    map.beginStored(bytes, 0);
    for (std::size_t at = 0; at < bytes.size();) {
        std::uint64_t count = 0;
        std::memcpy(&count, &bytes[at + keyBytes], sizeof count);
        map.addStored(at);
        at += keyBytes + 8 + 4 * count;
    }
    map.endStored();
}

// The bytes of lists.
std::vector<std::uint8_t> stored(const std::vector<std::pair<std::uint64_t, Entries>>& lists) {
    std::vector<std::uint8_t> bytes;
    const auto add = [&](const void* from, std::size_t count) {
        const auto* begin = static_cast<const std::uint8_t*>(from);
        bytes.insert(bytes.end(), begin, begin + count);
    };
    for (const auto& [key, entries] : lists) {
        const std::uint64_t count = entries.size();
        add(&key, 8);
        add(&count, 8);
        add(entries.data(), 4 * entries.size());
    }
    return bytes;
}

TEST(PostingMap, KeepsTheOrderOfEntriesAndEveryDuplicate) {
    PostingMap map(8);
    for (const std::uint32_t index : {5u, 5u, 9u, 2u, 5u}) append(map, 7, index);
    EXPECT_EQ(listOf(map, 7), (Entries{5, 5, 9, 2, 5}));
    EXPECT_EQ(listOf(map, 8), Entries{});
    EXPECT_EQ(map.size(), 1u);
}

TEST(PostingMap, RemovesEveryOccurrenceAndKeepsTheRestInOrder) {
    PostingMap map(8);
    for (const std::uint32_t index : {5u, 5u, 9u, 2u, 5u, 9u}) append(map, 7, index);
    map.remove(7, 5);
    EXPECT_EQ(listOf(map, 7), (Entries{9, 2, 9}));
    map.remove(7, 4);
    map.remove(8, 9);
    EXPECT_EQ(listOf(map, 7), (Entries{9, 2, 9}));
}

TEST(PostingMap, AStoredListIsAsLongAsItsImageHasRoomFor) {
    PostingMap sound(8);
    for (const std::uint32_t index : {5u, 6u, 7u}) append(sound, 9, index);
    std::vector<std::uint8_t> bytes = written(sound);
    bytes.resize(bytes.size() - 5);
    PostingMap cut(8);
    cut.beginStored(bytes, 1);
    cut.addStored(0);
    EXPECT_EQ(listOf(cut, 9), Entries{5});
    PostingMap expected(8);
    append(expected, 9, 5);
    EXPECT_EQ(written(cut), written(expected));
    cut.remove(9, 5);
    append(cut, 9, 8);
    EXPECT_EQ(listOf(cut, 9), Entries{8});
}

TEST(PostingMap, TheOrderOfAStoredListMayBeFoundLater) {
    for (const Entries& entries : {Entries{1, 4, 4, 9}, Entries{4, 1, 9, 4}}) {
        PostingMap sound(8);
        for (const std::uint32_t index : entries) append(sound, 9, index);
        std::vector<std::uint8_t> bytes = written(sound);
        PostingMap shown(8);
        shown.beginStored(bytes, 1);
        shown.addStored(0, PostingMap::Order::FoundWhenAsked);
        std::vector<std::uint8_t> again = bytes;
        PostingMap changed(8);
        changed.beginStored(again, 1);
        changed.addStored(0, PostingMap::Order::FoundWhenAsked);
        shown.forEachSegment(*shown.find(9), [&](const PostingSegment& segment) {
            EXPECT_EQ(segment.ascending, std::is_sorted(entries.begin(), entries.end()));
        });
        changed.remove(9, 4);
        EXPECT_EQ(listOf(changed, 9), (Entries{1, 9}));
    }
}

TEST(PostingMap, KeepsAListThatBecameEmpty) {
    PostingMap map(8);
    append(map, 7, 1);
    map.remove(7, 1);
    EXPECT_TRUE(map.find(7));
    EXPECT_EQ(listOf(map, 7), Entries{});
    EXPECT_EQ(map.size(), 1u);
}

TEST(PostingMap, EmptyListsOfAFileStay) {
    std::vector<std::uint8_t> bytes = stored({{2, {5, 6}}, {1, {}}, {4, {}}, {9, {3}}, {4, {}}});
    PostingMap map(8);
    read(map, 8, bytes);
    EXPECT_EQ(map.size(), 4u);
    EXPECT_EQ(written(map), stored({{2, {5, 6}}, {9, {3}}, {1, {}}, {4, {}}}));
    append(map, 4, 7);
    EXPECT_EQ(listOf(map, 4), Entries{7});
    EXPECT_EQ(map.size(), 4u) << "it is the same list";
    EXPECT_EQ(written(map), stored({{2, {5, 6}}, {9, {3}}, {4, {7}}, {1, {}}}));
    map.clear();
    EXPECT_EQ(map.size(), 0u);
}

TEST(PostingMap, OfTwoStoredListsWithOneKeyTheFirstStaysThoughItIsEmpty) {
    std::vector<std::uint8_t> bytes =
        stored({{1, {}}, {2, {5}}, {1, {6}}, {2, {}}, {3, {7}}, {3, {8}}, {2, {9}}});
    PostingMap map(8);
    read(map, 8, bytes);
    EXPECT_EQ(listOf(map, 1), Entries{});
    EXPECT_EQ(listOf(map, 2), Entries{5});
    EXPECT_EQ(listOf(map, 3), Entries{7});
    EXPECT_EQ(map.size(), 3u);
    EXPECT_EQ(written(map), stored({{2, {5}}, {1, {}}, {3, {7}}}));
}

TEST(PostingMap, EmptyListsThatChangeInTheirFileDoNoHarm) {
    std::vector<std::uint8_t> bytes = stored({{1, {}}, {2, {}}, {3, {}}});
    PostingMap map(8);
    read(map, 8, bytes);
    for (std::uint64_t count : {std::uint64_t{1}, std::uint64_t{5}, ~std::uint64_t{0}}) {
        std::memcpy(&bytes[8], &count, sizeof count);
        EXPECT_LE(map.size(), 3u);
        EXPECT_LE(written(map).size(), bytes.size());
    }
}

TEST(PostingMap, WhatIsAddedAgainAfterItsRemovalStandsAtTheEnd) {
    PostingMap map(8);
    for (const std::uint32_t index : {1u, 2u, 3u}) append(map, 7, index);
    map.remove(7, 1);
    append(map, 7, 1);
    EXPECT_EQ(listOf(map, 7), (Entries{2, 3, 1}));
}

TEST(PostingMap, AListDoesNotGrowByWhatComesAndGoes) {
    PostingMap map(8);
    append(map, 7, 1);
    std::vector<std::uint8_t> bytes = written(map);
    read(map, 8, bytes);
    for (std::uint32_t i = 2; i < 5000; ++i) {
        append(map, 7, i);
        map.remove(7, i);
    }
    EXPECT_EQ(listOf(map, 7), Entries{1});
    EXPECT_LT(map.roughSize(*map.find(7)), 200u);
}

TEST(PostingMap, WritesListsInTheOrderInWhichTheyCame) {
    PostingMap map(4);
    append(map, 0x00620061, 3);
    append(map, 0x00630062, 4);
    append(map, 0x00620061, 3);
    const std::vector<std::uint8_t> expected = {
        0x61, 0, 0x62, 0, 2, 0, 0, 0, 0, 0, 0, 0, 3, 0, 0, 0, 3, 0, 0, 0,  // first list
        0x62, 0, 0x63, 0, 1, 0, 0, 0, 0, 0, 0, 0, 4, 0, 0, 0,              // second list
    };
    EXPECT_EQ(written(map), expected);
}

TEST(PostingMap, OfTwoStoredListsWithOneKeyTheFirstStays) {
    std::vector<std::uint8_t> bytes = {
        0x61, 0, 1, 0, 0, 0, 0, 0, 0, 0, 3, 0, 0, 0,  //
        0x61, 0, 1, 0, 0, 0, 0, 0, 0, 0, 4, 0, 0, 0,
    };
    PostingMap map(2);
    read(map, 2, bytes);
    EXPECT_EQ(map.size(), 1u);
    EXPECT_EQ(listOf(map, 0x61), (Entries{3}));
}

TEST(PostingMap, HoldsWhatAMapOfVectorsHoldsThroughChangesSavesAndLoads) {
    for (const std::size_t keyBytes : {2u, 4u, 8u}) {
        std::mt19937 random(static_cast<unsigned>(keyBytes));
        std::map<std::uint64_t, Entries> expected;
        PostingMap map(keyBytes);
        std::vector<std::uint8_t> image;
        for (int step = 0; step < 60000; ++step) {
            const std::uint64_t key = random() % (step % 2 == 0 ? 5 : 300);
            const std::uint32_t index = random() % 3 == 0 ? random() % 1000 : static_cast<unsigned>(step);
            if (random() % 4 == 0) {
                // A burst of removals, so that lists get packed.
                for (int i = 0; i < 5; ++i) {
                    const std::uint32_t gone = random() % 1000;
                    map.remove(key, gone);
                    if (const auto list = expected.find(key); list != expected.end())
                        std::erase(list->second, gone);
                }
            } else {
                append(map, key, index);
                expected[key].push_back(index);
            }
            if (step % 20000 != 19999) continue;
            std::vector<std::uint8_t> bytes = written(map);
            map.clear();
            image = std::move(bytes);
            read(map, keyBytes, image);
        }
        ASSERT_EQ(map.size(), expected.size());
        for (const auto& [key, entries] : expected) ASSERT_EQ(listOf(map, key), entries) << key;
    }
}

TEST(PostingSegment, FindsTheFirstEntryThatIsNotBelow) {
    std::vector<std::uint32_t> entries;
    for (std::uint32_t i = 0; i < 200; ++i) entries.push_back(i / 3 * 2 | (i % 5 == 0 ? kRemovedEntry : 0));
    const PostingSegment segment{reinterpret_cast<std::uint8_t*>(entries.data()), entries.size(), true};
    for (std::size_t from = 0; from <= entries.size(); from += 7) {
        for (std::uint32_t wanted = 0; wanted < 140; ++wanted) {
            std::size_t expected = from;
            while (expected < entries.size() && (entries[expected] & ~kRemovedEntry) < wanted) ++expected;
            ASSERT_EQ(segment.lowerBound(wanted, from), expected);
        }
    }
}

TEST(PostingSegment, AscendsWhileNoEntryIsSmallerThanTheOneBefore) {
    const auto ascends = [](const Entries& entries) {
        return isAscending(reinterpret_cast<const std::uint8_t*>(entries.data()), entries.size());
    };
    EXPECT_TRUE(ascends({}));
    EXPECT_TRUE(ascends({4}));
    for (std::size_t length = 2; length < 40; ++length) {
        Entries entries(length);
        for (std::size_t i = 0; i < length; ++i) entries[i] = static_cast<std::uint32_t>(i / 2);
        ASSERT_TRUE(ascends(entries));
        for (std::size_t i = 2; i < length; i += 2) {
            Entries broken = entries;
            broken[i - 1] = 1000;
            ASSERT_FALSE(ascends(broken)) << length << " " << i;
        }
        entries.back() = kRemovedEntry;
        ASSERT_FALSE(ascends(entries));
    }
}

}  // namespace
}  // namespace varnelo
