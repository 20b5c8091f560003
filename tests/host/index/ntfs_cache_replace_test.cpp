// How a saved file takes the place of the one before, step by step.

#include <gtest/gtest.h>

#include <vector>

#include "host/index/cache_fixture.h"
#include "support/file_steps.h"

namespace varnelo {
namespace {

using test::FileStep;
using Steps = std::vector<FileStep>;

class NtfsCacheReplaceTest : public ::testing::Test, protected IndexWorld {
protected:
    NtfsCacheReplaceTest() {
        EXPECT_TRUE(cache.save(index));
        before = cache.bytes();
        file(L"new.txt");
    }

    // Saves while the steps named fail. `look` is called before each step.
    bool saveWithout(
        const Steps& failing, const std::function<void(FileStep)>& look = [](FileStep) {}) {
        const test::FileSteps watch([&](FileStep step) {
            steps.push_back(step);
            look(step);
            return std::find(failing.begin(), failing.end(), step) == failing.end();
        });
        return cache.save(index);
    }
    bool holdsTheNewFile() {
        NTFSIndex loaded;
        return cache.load(loaded) && loaded.records().size() == 1;
    }
    bool leftAside() const { return cache.exists(L"ntfs.cache.tmp"); }

    CacheFixture cache;
    Bytes before;
    Steps steps;
};

TEST_F(NtfsCacheReplaceTest, TheDiskHasTheWholeFileBeforeItMoves) {
    std::uintmax_t bytesAtFlush = 0;
    const bool saved = saveWithout({}, [&](FileStep step) {
        if (step == FileStep::Flush) bytesAtFlush = std::filesystem::file_size(cache.path() + L".tmp");
        EXPECT_EQ(cache.bytes(), before);
    });
    EXPECT_TRUE(saved);
    EXPECT_EQ(steps, (Steps{FileStep::Flush, FileStep::Move}));
    EXPECT_NE(cache.bytes(), before);
    EXPECT_EQ(bytesAtFlush, cache.bytes().size());
    EXPECT_TRUE(holdsTheNewFile());
}

TEST_F(NtfsCacheReplaceTest, AFileThatDoesNotReachTheDiskIsNotMoved) {
    EXPECT_FALSE(saveWithout({FileStep::Flush}));
    EXPECT_EQ(steps, (Steps{FileStep::Flush, FileStep::Delete}));
    EXPECT_EQ(cache.bytes(), before);
    EXPECT_FALSE(leftAside());
}

TEST_F(NtfsCacheReplaceTest, WhatCannotBeMovedIsCopiedAndThenDeleted) {
    bool copiedFirst = false;
    const bool saved = saveWithout({FileStep::Move}, [&](FileStep step) {
        if (step == FileStep::Delete) copiedFirst = cache.bytes() != before;
    });
    EXPECT_TRUE(saved);
    EXPECT_EQ(steps, (Steps{FileStep::Flush, FileStep::Move, FileStep::Delete}));
    EXPECT_TRUE(copiedFirst);
    EXPECT_FALSE(leftAside());
    EXPECT_TRUE(holdsTheNewFile());
}

TEST_F(NtfsCacheReplaceTest, ACopyThatCannotBeDeletedAsideIsAFailureThoughTheFileIsThere) {
    EXPECT_FALSE(saveWithout({FileStep::Move, FileStep::Delete}));
    EXPECT_TRUE(leftAside());
    EXPECT_TRUE(holdsTheNewFile());
}

}  // namespace
}  // namespace varnelo
