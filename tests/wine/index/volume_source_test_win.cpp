// Wine opens volumes and refuses all that a scan asks of them; what real volumes answer is served by tests of
// the host.

#include "index/volume_source_win.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <array>
#include <filesystem>

#include "index/file_change_monitor.h"
#include "index/index_service.h"
#include "index/volume_data.h"
#include "index/volume_scan.h"
#include "platform/handles_win.h"
#include "support/temp_folder.h"

namespace varnelo {
namespace {

class WindowsVolumeTest : public ::testing::Test {
protected:
    // What the call answers is taken with the error that it leaves.
    template <class Call>
    static void expectRefused(Call call, const char* what) {
        SetLastError(ERROR_SUCCESS);
        EXPECT_FALSE(call().has_value()) << what;
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_NOT_SUPPORTED)) << what;
    }

    WindowsVolumeSource source;
    NTFSIndex index;
};

TEST_F(WindowsVolumeTest, DrivesAreThoseOfTheSystem) {
    EXPECT_EQ(source.drives(), GetLogicalDrives());
    EXPECT_NE(source.drives() & 4, 0u);
    EXPECT_TRUE(source.fixedDrive(L'C'));
    EXPECT_FALSE(source.fixedDrive(L'B')) << "there is none";
}

TEST_F(WindowsVolumeTest, AVolumeOpensAndEachQuestionReachesIt) {
    const auto volume = source.open(L"C:");
    ASSERT_TRUE(volume);
    std::array<std::uint8_t, 4096> answer{};
    expectRefused([&] { return volume->volumeData(answer); }, "volume data");
    expectRefused([&] { return volume->journalData(answer); }, "journal data");
    expectRefused([&] { return volume->enumerate(enumerationRequest(0, 9), answer); }, "enumeration");
    expectRefused([&] { return volume->fileRecord(24, answer); }, "file record");
    expectRefused([&] { return volume->readJournal(journalRequest(0, 1, 2), answer); }, "journal");
}

TEST_F(WindowsVolumeTest, AVolumeThatIsNotThereDoesNotOpen) { EXPECT_EQ(source.open(L"B:"), nullptr); }

TEST_F(WindowsVolumeTest, TheSizeOfAFileIsThatOfTheFileSystem) {
    const test::TempFolder folder;
    const std::wstring path = folder.file(L"sparse");
    const FileHandle file(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
    ASSERT_TRUE(file);
    LARGE_INTEGER end;
    end.QuadPart = 5'000'000'000;
    ASSERT_TRUE(SetFilePointerEx(file.get(), end, nullptr, FILE_BEGIN));
    ASSERT_TRUE(SetEndOfFile(file.get()));
    EXPECT_EQ(source.fileSize(path), 5'000'000'000u);
    EXPECT_EQ(source.fileSize(folder.file(L"missing")), std::nullopt);
}

TEST_F(WindowsVolumeTest, AScanFailsAndLeavesTheIndexEmpty) {
    EXPECT_FALSE(scanAllVolumes(index, source));
    EXPECT_TRUE(index.records().empty());
    const test::TempFolder folder;
    EXPECT_FALSE(scanAndSave(source, folder.path()));
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_F(WindowsVolumeTest, AMonitorFindsNoJournal) {
    index.volumeIndexOf(L'C');
    FileChangeMonitor monitor(index, source);
    EXPECT_FALSE(monitor.start([](const FileChange&) {}));
}

}  // namespace
}  // namespace varnelo
