// A save while somebody else has the cache open.

#include <windows.h>

#include <gtest/gtest.h>

#include "host/index/cache_fixture.h"
#include "platform/handles_win.h"
#include "support/import_patch_win.h"

extern "C" void* __imp_MoveFileExW;

namespace varnelo {
namespace {

class NtfsCacheOpenTest : public ::testing::Test, protected IndexWorld {
protected:
    NtfsCacheOpenTest() {
        EXPECT_TRUE(cache.save(index));
        before = cache.bytes();
        file(L"new.txt");
    }
    FileHandle open(DWORD sharing) const {
        return FileHandle(
            CreateFileW(cache.path().c_str(), GENERIC_READ, sharing, nullptr, OPEN_EXISTING, 0, nullptr));
    }

    CacheFixture cache;
    Bytes before;
};

TEST_F(NtfsCacheOpenTest, AFileThatMayBeWrittenToGetsTheNewContentByACopy) {
    {
        const FileHandle reader = open(FILE_SHARE_READ | FILE_SHARE_WRITE);
        ASSERT_TRUE(reader);
        EXPECT_TRUE(cache.save(index));
        EXPECT_FALSE(cache.exists(L"ntfs.cache.tmp"));
    }
    NTFSIndex loaded;
    EXPECT_TRUE(cache.load(loaded));
    EXPECT_EQ(loaded.records().size(), 1u);
}

TEST_F(NtfsCacheOpenTest, AFileThatIsNotSharedStaysAndNobodyIsTold) {
    {
        const FileHandle reader = open(0);
        ASSERT_TRUE(reader);
        EXPECT_TRUE(cache.save(index)) << "the file aside could be deleted";
        EXPECT_FALSE(cache.exists(L"ntfs.cache.tmp"));
    }
    EXPECT_EQ(cache.bytes(), before);
}

DWORD moveFlags;

BOOL WINAPI noteFlags(LPCWSTR, LPCWSTR, DWORD flags) {
    moveFlags = flags;
    return FALSE;
}

TEST_F(NtfsCacheOpenTest, TheMoveMayReplaceAndMayCopyFromOneVolumeToAnother) {
    const test::ImportPatch patch(__imp_MoveFileExW, noteFlags);
    cache.save(index);
    EXPECT_EQ(moveFlags, 3u);
}

}  // namespace
}  // namespace varnelo
