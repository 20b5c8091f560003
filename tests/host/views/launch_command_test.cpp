#include "views/launch_command.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace varnelo {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// A name of that many units.
std::wstring nameOfUnits(std::size_t units) { return L"C:\\" + std::wstring(units - 3, L'n'); }

TEST(LaunchCommand, StartsTheQuotedNameWithAnEmptyTitle) {
    EXPECT_EQ(launchCommand(L"C:\\plan.txt"), L"/c start \"\" \"C:\\plan.txt\"");
}

TEST(LaunchCommand, CarriesBlanksAndEveryScript) {
    EXPECT_EQ(launchCommand(L"C:\\My plans\\\u65E5\u672C\u8A9E \u00E4.txt"),
              L"/c start \"\" \"C:\\My plans\\\u65E5\u672C\u8A9E \u00E4.txt\"");
}

TEST(SafeToLaunchByName, AreOrdinaryFilesFoldersAndPrograms) {
    for (const wchar_t* name : {L"C:\\plan.txt", L"z:\\x", L"C:\\Program Files (x86)\\Tool\\tool.exe",
                                L"C:\\-rf", L"C:\\a;b,c=d.txt", L"C:\\it's #1 @home {x} [y] +~`$.txt",
                                L"C:\\\u65E5\u672C\u8A9E\\\U0001F600.txt", L"\\\\server\\share\\plan.txt",
                                L"C:\\x.y\\.hidden", L"C:\\run.bat", L"C:\\My tools\\run it.CMD"}) {
        EXPECT_TRUE(isSafeToLaunchByName(name)) << name;
    }
}

TEST(SafeToLaunchByName, IsNothingThatIsExpanded) {
    for (const wchar_t* name : {L"C:\\%PATH%.txt", L"C:\\%PATH:~0,1%", L"C:\\100 %.txt", L"C:\\a%b%c.txt",
                                L"C:\\!PATH!.txt", L"C:\\hello!.txt"}) {
        EXPECT_FALSE(isSafeToLaunchByName(name)) << name;
    }
}

TEST(SafeToLaunchByName, IsNothingThatCouldEndTheQuotesOrTheCommand) {
    for (const wchar_t* name :
         {L"C:\\a\" & calc.exe \".txt", L"C:\\a & b.txt", L"C:\\a&calc.exe", L"C:\\a^b.txt", L"C:\\a|b",
          L"C:\\a<b", L"C:\\a>b", L"C:\\folder\\", L"C:\\", L"\\\\server\\share\\"}) {
        EXPECT_FALSE(isSafeToLaunchByName(name)) << name;
    }
}

TEST(SafeToLaunchByName, IsNothingWithAControlCharacter) {
    for (wchar_t unit = 0; unit < 0x20; ++unit) {
        EXPECT_FALSE(isSafeToLaunchByName(std::wstring(L"C:\\a") + unit + L"b.txt")) << int(unit);
    }
    EXPECT_FALSE(isSafeToLaunchByName(L"C:\\a\x7F.txt"));
}

TEST(SafeToLaunchByName, IsOnlyAWholeFilePath) {
    for (const wchar_t* name :
         {L"", L"plan.txt", L"-plan.txt", L"/wait", L"C:", L"C:plan.txt", L"\\plan.txt", L"1:\\plan.txt",
          L"::{20D04FE0-3AEA-1069-A2D8-08002B30309D}", L"https://example.com/", L"\\\\", L"\\\\\\plan.txt",
          L"\\\\?\\C:\\plan.txt", L"\\\\?\\UNC\\server\\plan.txt", L"\\\\.\\PhysicalDrive0", L"C:\\a/b.txt",
          L"C:\\*.txt", L"C:\\a?.txt", L"C:\\a.txt:stream"}) {
        EXPECT_FALSE(isSafeToLaunchByName(name)) << name;
    }
}

TEST(SafeToLaunchByName, IsNoNameThatTheSystemShortens) {
    for (const wchar_t* name : {L"C:\\plan.txt.", L"C:\\plan.txt ", L"C:\\dir.\\plan.txt",
                                L"C:\\dir \\plan.txt", L"C:\\..\\plan.txt", L"C:\\."}) {
        EXPECT_FALSE(isSafeToLaunchByName(name)) << name;
    }
}

TEST(SafeToLaunchByName, IsNoNameThatFillsTheBufferAndMayBeCutOff) {
    EXPECT_TRUE(isSafeToLaunchByName(nameOfUnits(kLaunchNameUnits - 2)));
    EXPECT_FALSE(isSafeToLaunchByName(nameOfUnits(kLaunchNameUnits - 1)));
    EXPECT_FALSE(isSafeToLaunchByName(nameOfUnits(kLaunchNameUnits)));
}

TEST(SafeToLaunchByName, ABatchFileIsReadTwiceAndMustBePlain) {
    for (const wchar_t* name : {L"C:\\Program Files (x86)\\run.bat", L"C:\\a,b.cmd", L"C:\\a;b.BAT",
                                L"C:\\a=b.bat", L"C:\\@x.bat", L"C:\\a\u00A0b.bat", L"C:\\it's.bat"}) {
        EXPECT_FALSE(isSafeToLaunchByName(name)) << name;
    }
    EXPECT_TRUE(isSafeToLaunchByName(L"C:\\Program Files (x86)\\run.bat.txt"));
}

TEST(ProgramsTriedFor, AreTheNameWithEachExtension) {
    EXPECT_THAT(programsTriedFor(L"C:\\tool", L".COM;.EXE"), ElementsAre(L"C:\\tool.COM", L"C:\\tool.EXE"));
    EXPECT_THAT(programsTriedFor(L"C:\\a.b", L".BAT"), ElementsAre(L"C:\\a.b.BAT"));
}

TEST(ProgramsTriedFor, LeavesOutEmptyExtensions) {
    EXPECT_THAT(programsTriedFor(L"C:\\tool", L""), IsEmpty());
    EXPECT_THAT(programsTriedFor(L"C:\\tool", L";; ;.EXE;"), ElementsAre(L"C:\\tool.EXE"));
}

}  // namespace
}  // namespace varnelo
