#include "index/name_needle.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "platform/text.h"

namespace varnelo {
namespace {

std::vector<std::uint16_t> unitsOf(const std::wstring& text) { return {text.begin(), text.end()}; }

bool isIn(const NamePool& pool, std::uint32_t offset, const std::wstring& text) {
    return NameNeedle(unitsOf(text), pool).isInNameAt(offset);
}

TEST(NameNeedle, IsFoundWhereAPlainSearchFindsIt) {
    std::mt19937 random(8);
    // Units that share a byte with those of the texts are among them.
    const std::wstring units = L"abABab-.\u0161\u0142\u8061\uFF61\u007F\u00E4";
    const auto any = [&](std::size_t size) {
        std::wstring text(size, L' ');
        for (wchar_t& unit : text) unit = units[random() % units.size()];
        return text;
    };
    std::size_t hits = 0;
    for (int i = 0; i < 20000; ++i) {
        NamePool pool;
        if (random() % 2 == 0) pool.add(any(random() % 9));
        std::wstring name = any(random() % 140);
        std::wstring text = lowered(any(2 + random() % 22));
        if (random() % 2 == 0 && !name.empty()) {
            const std::size_t at = random() % name.size();
            name.replace(at, text.size(), text);
            if (random() % 4 == 0) name.resize(at + text.size() - 1);
        }
        if (random() % 8 == 0) text = text.substr(0, 3);
        const std::uint32_t offset = pool.add(name);
        if (random() % 2 == 0) pool.add(any(60));
        const bool expected = lowered(name).find(text) != std::wstring::npos;
        hits += expected ? 1 : 0;
        ASSERT_EQ(isIn(pool, offset, text), expected) << i;
    }
    EXPECT_GT(hits, 6000u);
    EXPECT_LT(hits, 14000u);
}

TEST(NameNeedle, IsNotFoundInTheNextNameNorAcrossTheEnd) {
    NamePool pool;
    const std::uint32_t first = pool.add(L"tes");
    pool.add(L"test");
    for (int i = 0; i < 20; ++i) pool.add(L"filler");
    EXPECT_FALSE(isIn(pool, first, L"test"));
    EXPECT_TRUE(isIn(pool, first + 4, L"test"));
    EXPECT_FALSE(isIn(pool, 0xFFFFFFFF, L"test"));
}

TEST(NameNeedle, WhatLiesBehindThePoolIsNotTakenForAName) {
    for (std::size_t size = 4; size < 80; ++size) {
        NamePool pool;
        const std::wstring text = L"abcd";
        std::uint16_t* units = pool.beginStored(size);
        std::fill_n(units, size + NamePool::kReadableBeyond, std::uint16_t{'x'});
        // The pool ends behind "xa", without a NUL; the rest of the text lies beyond.
        for (std::size_t i = 0; i < 4; ++i) units[size - 1 + i] = unitsOf(text)[i];
        EXPECT_FALSE(isIn(pool, 0, text)) << size;
        units[size - 4] = 'A';
        units[size - 3] = 'B';
        units[size - 2] = 'c';
        units[size - 1] = 'd';
        EXPECT_TRUE(isIn(pool, 0, text)) << size;
    }
}

}  // namespace
}  // namespace varnelo
