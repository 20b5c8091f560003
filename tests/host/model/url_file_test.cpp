#include "model/url_file.h"

#include <gtest/gtest.h>

#include <string_view>

namespace varnelo {
namespace {

std::optional<std::wstring> targetOf(std::string_view text) {
    return urlFileTarget({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

TEST(UrlFileTest, TheFirstLineThatBeginsWithUrlNamesTheAddress) {
    EXPECT_EQ(targetOf("[InternetShortcut]\r\nURL=https://a.example/\r\nURL=https://b.example/\r\n"),
              L"https://a.example/");
}

TEST(UrlFileTest, ALineEndsWithEitherLineEndOrWithTheFile) {
    EXPECT_EQ(targetOf("URL=a\nIconIndex=0"), L"a");
    EXPECT_EQ(targetOf("URL=a\r\nIconIndex=0"), L"a");
    EXPECT_EQ(targetOf("x\nURL=a"), L"a");
    EXPECT_EQ(targetOf("x\nURL=a\r"), L"a");
}

TEST(UrlFileTest, TheKeyIsCaseSensitiveAndStandsAtTheLineStart) {
    EXPECT_EQ(targetOf("url=a\nUrl=b\n URL=c\nBASEURL=d\n"), std::nullopt);
    EXPECT_EQ(targetOf("URL = a\n"), std::nullopt);
}

TEST(UrlFileTest, ShortLinesArePassedOver) { EXPECT_EQ(targetOf("\n\nURL\nU\n\nURL=a\n"), L"a"); }

TEST(UrlFileTest, AnEmptyAddressStillEndsTheSearch) { EXPECT_EQ(targetOf("URL=\nURL=b\n"), L""); }

TEST(UrlFileTest, NothingIsFoundInNothing) {
    EXPECT_EQ(targetOf(""), std::nullopt);
    EXPECT_EQ(targetOf("\n"), std::nullopt);
    EXPECT_EQ(targetOf("[InternetShortcut]\r\nIconFile=x.ico"), std::nullopt);
}

TEST(UrlFileTest, Utf8IsReadAsSuchAndOtherBytesAsLatin1) {
    EXPECT_EQ(targetOf("URL=http://\xC3\xA4.example"), L"http://\u00E4.example");
    EXPECT_EQ(targetOf("URL=http://\xE4.example"), L"http://\u00E4.example");
    EXPECT_EQ(targetOf("URL=\xEF\xBF\xBD"), L"\uFFFD");
    EXPECT_EQ(targetOf("\xEF\xBB\xBFURL=a"), L"a");
}

TEST(UrlFileTest, Utf16IsKnownByItsMark) {
    EXPECT_EQ(targetOf(std::string_view("\xFF\xFEU\0R\0L\0=\0\xE4\0\r\0\n\0", 16)), L"\u00E4");
    EXPECT_EQ(targetOf(std::string_view("\xFE\xFF\0U\0R\0L\0=\0\xE4\0\n", 14)), L"\u00E4");
    EXPECT_EQ(targetOf(std::string_view("\xFF\xFEU\0R\0L\0=\0a\0b", 13)), L"a");
    EXPECT_EQ(targetOf("\xFF\xFE"), std::nullopt);
    const std::string_view twice("\xFF\xFEU\0R\0L\0=\0a\0\n\0U\0R\0L\0=\0b\0", 22);
    EXPECT_EQ(targetOf(twice), L"a") << "the first here too";
}

}  // namespace
}  // namespace varnelo
