#include "platform/text.h"

#include <gtest/gtest.h>

namespace varnelo {
namespace {

TEST(Text, LowersAsciiLettersAndNothingElse) {
    EXPECT_EQ(lowered(L"AZ az 09 @[`{"), L"az az 09 @[`{");
    EXPECT_EQ(lowered(L"\xC4\xD6\x0410\x0130"), L"\xC4\xD6\x0410\x0130");
}

TEST(Text, ComparesIgnoringAsciiCase) {
    EXPECT_TRUE(equalIgnoringCase(L"ReadMe.TXT", L"readme.txt"));
    EXPECT_FALSE(equalIgnoringCase(L"readme", L"readme.txt"));
    EXPECT_FALSE(equalIgnoringCase(L"\xC4", L"\xE4"));
    EXPECT_TRUE(equalIgnoringCase(L"", L""));
}

TEST(Text, FormatsWideStringsAndNumbers) {
    EXPECT_EQ(formatText(L"%ls has %d of 0x%08X", L"\x65E5\xFC", -3, 0xABCu),
              L"\x65E5\xFC has -3 of 0x00000ABC");
}

TEST(Text, ANotTooLongTextIsKeptWhole) {
    const std::wstring longest(kFormatLimitUnits, L'x');
    EXPECT_EQ(formatText(L"%ls", longest.c_str()), longest);
}

TEST(Text, ATooLongTextIsCutOffAtTheLimit) {
    const std::wstring longer(3 * kFormatLimitUnits, L'x');
    EXPECT_EQ(formatText(L"%ls", longer.c_str()), longer.substr(0, kFormatLimitUnits));
}

TEST(Text, TrimsBlanksTabsAndLineEnds) {
    EXPECT_EQ(trimmed(L" \t\r\n a b \n\r\t "), L"a b");
    EXPECT_EQ(trimmed(L" \r\n"), L"");
    EXPECT_EQ(trimmed(L""), L"");
    EXPECT_EQ(trimmed(L"\xA0x\v"), L"\xA0x\v");
}

TEST(Text, FindsTheLeafOfAPath) {
    EXPECT_EQ(leafOf(L"C:\\a\\b.txt"), L"b.txt");
    EXPECT_EQ(leafOf(L"/a/b"), L"b");
    EXPECT_EQ(leafOf(L"C:\\a\\"), L"");
    EXPECT_EQ(leafOf(L"b"), L"b");
}

TEST(Text, FindsTheExtensionOfTheLeafAlone) {
    EXPECT_EQ(extensionOf(L"C:\\a.d\\b.tar.gz"), L".gz");
    EXPECT_EQ(extensionOf(L"C:\\a.d\\b"), L"");
    EXPECT_EQ(extensionOf(L"b."), L".");
    EXPECT_EQ(extensionOf(L".profile"), L".profile");
}

}  // namespace
}  // namespace varnelo
