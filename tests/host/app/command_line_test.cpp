#include "app/roof/command_line.h"

#include <gtest/gtest.h>

namespace varnelo {
namespace {

TEST(CommandLineTest, WithoutASwitchTheDesktopLayerIsChosen) {
    EXPECT_FALSE(parseCommandLine(L"").windowed);
    EXPECT_FALSE(parseCommandLine(L"windowed -windowed --window").windowed);
}

TEST(CommandLineTest, WindowedIsFoundAnywhereAlsoInsideAnotherWord) {
    EXPECT_TRUE(parseCommandLine(L"--windowed").windowed);
    EXPECT_TRUE(parseCommandLine(L"first --windowed last").windowed);
    EXPECT_TRUE(parseCommandLine(L"x--windowedness").windowed);
}

TEST(CommandLineTest, TheScanIsFoundAnywhereToo) {
    EXPECT_TRUE(parseCommandLine(L"--ntfs-scan").ntfsScan);
    EXPECT_TRUE(parseCommandLine(L"--windowed x--ntfs-scanner").ntfsScan);
    EXPECT_TRUE(parseCommandLine(L"--windowed --ntfs-scan").windowed);
    EXPECT_FALSE(parseCommandLine(L"ntfs-scan --ntfs --windowed").ntfsScan);
}

TEST(CommandLineTest, SwitchesAreCaseSensitive) { EXPECT_FALSE(parseCommandLine(L"--Windowed").windowed); }

}  // namespace
}  // namespace varnelo
