// What the system is asked for, down to its numbers: Wine has no volume that would tell a wrong question from
// a right one.

#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "index/volume_source_win.h"
#include "support/import_patch_win.h"

extern "C" void* __imp_CreateFileW;
extern "C" void* __imp_DeviceIoControl;
extern "C" void* __imp_GetDriveTypeW;

namespace varnelo {
namespace {

using Bytes = std::vector<std::uint8_t>;

struct Opening {
    std::wstring name;
    DWORD access, sharing, creation, flags;
    bool withTemplate;
    HANDLE handle;
};

struct Control {
    HANDLE volume;
    DWORD code;
    Bytes input;
    bool inputAligned;
    const void* answer;
    DWORD room;
    bool overlapped;
};

// Of the calls that the stand-ins below were given, and what they answer.
struct Told {
    std::vector<Opening> openings;
    std::vector<Control> controls;
    std::wstring root;
    Bytes answer;
    bool refuse = false;
    UINT driveType = DRIVE_FIXED;
};
Told told;

HANDLE WINAPI openFile(LPCWSTR name, DWORD access, DWORD sharing, LPSECURITY_ATTRIBUTES, DWORD creation,
                       DWORD flags, HANDLE like) {
    // A handle of the system's own kind, so that closing it can be seen.
    const HANDLE handle = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    told.openings.push_back({name, access, sharing, creation, flags, like != nullptr, handle});
    return handle;
}

BOOL WINAPI control(HANDLE volume, DWORD code, LPVOID input, DWORD inputBytes, LPVOID output, DWORD room,
                    LPDWORD count, LPOVERLAPPED overlapped) {
    const auto* bytes = static_cast<const std::uint8_t*>(input);
    told.controls.push_back({volume, code, Bytes(bytes, bytes + inputBytes),
                             reinterpret_cast<std::uintptr_t>(input) % 8 == 0, output, room,
                             overlapped != nullptr});
    if (told.refuse) {
        *count = 7;
        return FALSE;
    }
    std::copy(told.answer.begin(), told.answer.end(), static_cast<std::uint8_t*>(output));
    *count = static_cast<DWORD>(told.answer.size());
    return TRUE;
}

UINT WINAPI driveType(LPCWSTR root) {
    told.root = root;
    return told.driveType;
}

class VolumeControlTest : public ::testing::Test {
protected:
    VolumeControlTest() {
        told = {};
        volume = source.open(L"D:");
    }

    // What the system was asked, once, for the only volume that is open.
    const Control& asked() {
        EXPECT_EQ(told.controls.size(), 1u);
        const Control& one = told.controls.back();
        EXPECT_EQ(one.volume, told.openings.back().handle);
        EXPECT_EQ(one.answer, room.data());
        EXPECT_EQ(one.room, room.size());
        EXPECT_TRUE(one.inputAligned);
        EXPECT_FALSE(one.overlapped) << "the call lasts until the answer is there";
        return one;
    }

    const test::ImportPatch opening{__imp_CreateFileW, openFile};
    const test::ImportPatch controlling{__imp_DeviceIoControl, control};
    const test::ImportPatch typing{__imp_GetDriveTypeW, driveType};
    WindowsVolumeSource source;
    std::unique_ptr<Volume> volume;
    alignas(8) std::array<std::uint8_t, 4112> room{};
};

TEST_F(VolumeControlTest, AVolumeIsOpenedForReadingBesideThoseWhoReadAndWrite) {
    ASSERT_EQ(told.openings.size(), 1u);
    const Opening& one = told.openings.front();
    EXPECT_EQ(one.name, L"\\\\.\\D:");
    EXPECT_EQ(one.access, 0x80000000u);
    EXPECT_EQ(one.sharing, 3u);
    EXPECT_EQ(one.creation, 3u) << "only what is there";
    EXPECT_EQ(one.flags, 1u);
    EXPECT_FALSE(one.withTemplate);
}

TEST_F(VolumeControlTest, ItsEndClosesTheVolume) {
    const HANDLE handle = told.openings.front().handle;
    DWORD flags = 0;
    EXPECT_TRUE(GetHandleInformation(handle, &flags));
    volume.reset();
    EXPECT_FALSE(GetHandleInformation(handle, &flags));
}

// https://learn.microsoft.com/en-us/windows/win32/api/winioctl/ni-winioctl-fsctl_get_ntfs_volume_data
TEST_F(VolumeControlTest, VolumeDataTakesNoInput) {
    volume->volumeData(room);
    EXPECT_EQ(asked().code, 0x90064u);
    EXPECT_EQ(asked().input, Bytes{});
}

// https://learn.microsoft.com/en-us/windows/win32/api/winioctl/ni-winioctl-fsctl_query_usn_journal
TEST_F(VolumeControlTest, JournalDataTakesNoInput) {
    volume->journalData(room);
    EXPECT_EQ(asked().code, 0x900F4u);
    EXPECT_EQ(asked().input, Bytes{});
}

// https://learn.microsoft.com/en-us/windows/win32/api/winioctl/ni-winioctl-fsctl_enum_usn_data
TEST_F(VolumeControlTest, AnEnumerationHandsItsRequestOn) {
    Bytes request(24);
    for (std::size_t i = 0; i < request.size(); ++i) request[i] = static_cast<std::uint8_t>(i + 1);
    volume->enumerate(request, room);
    EXPECT_EQ(asked().code, 0x900B3u);
    EXPECT_EQ(asked().input, request);
}

// https://learn.microsoft.com/en-us/windows/win32/api/winioctl/ni-winioctl-fsctl_get_ntfs_file_record
TEST_F(VolumeControlTest, AFileRecordIsAskedForByItsWholeNumber) {
    volume->fileRecord(0xFEDCBA9876543210, room);
    EXPECT_EQ(asked().code, 0x90068u);
    EXPECT_EQ(asked().input, (Bytes{0x10, 0x32, 0x54, 0x76, 0x98, 0xBA, 0xDC, 0xFE}));
}

// https://learn.microsoft.com/en-us/windows/win32/api/winioctl/ni-winioctl-fsctl_read_usn_journal
TEST_F(VolumeControlTest, AReadOfTheJournalHandsItsRequestOnFromAnyPlace) {
    Bytes request(41);
    for (std::size_t i = 0; i < request.size(); ++i) request[i] = static_cast<std::uint8_t>(200 - i);
    const auto odd = std::span(request).subspan(1);
    volume->readJournal(odd, room);
    EXPECT_EQ(asked().code, 0x900BBu);
    EXPECT_EQ(asked().input, Bytes(odd.begin(), odd.end()));
}

TEST_F(VolumeControlTest, AnAnswerIsAsLongAsTheSystemSays) {
    told.answer = {1, 2, 3, 4, 5};
    EXPECT_EQ(volume->enumerate(Bytes(24), room), 5u);
    EXPECT_EQ(room[4], 5);
    told.answer.clear();
    EXPECT_EQ(volume->volumeData(room), 0u);
}

TEST_F(VolumeControlTest, ARefusalIsNoAnswerWhateverItsLength) {
    told.refuse = true;
    EXPECT_EQ(volume->volumeData(room), std::nullopt);
    EXPECT_EQ(volume->fileRecord(24, room), std::nullopt);
}

TEST_F(VolumeControlTest, OnlyADriveOfTheFixedKindIsFixed) {
    for (const UINT type : {DRIVE_UNKNOWN, DRIVE_NO_ROOT_DIR, DRIVE_REMOVABLE, DRIVE_FIXED, DRIVE_REMOTE,
                            DRIVE_CDROM, DRIVE_RAMDISK}) {
        told.driveType = type;
        EXPECT_EQ(source.fixedDrive(L'Q'), type == 3) << type;
    }
    EXPECT_EQ(told.root, L"Q:\\");
}

}  // namespace
}  // namespace varnelo
