#include "model/json_text.h"

#include <gtest/gtest.h>

#include <memory>

namespace varnelo {
namespace {

using namespace std::string_literals;

TEST(JsonEscapeTest, TheFiveCharactersWithAShortFormGetIt) {
    EXPECT_EQ(jsonEscape("a\tb\nc\rd\"e\\f"), R"(a\tb\nc\rd\"e\\f)");
}

TEST(JsonEscapeTest, OtherControlBytesBecomeFourLowerCaseDigits) {
    EXPECT_EQ(jsonEscape("\x1F"), "\\u001f");
    EXPECT_EQ(jsonEscape("\0\x01\x08\x0B\x0C\x1A"s), "\\u0000\\u0001\\u0008\\u000b\\u000c\\u001a");
}

TEST(JsonEscapeTest, EveryOtherBytePassesAsItIs) {
    std::string others;
    for (int byte = 0x20; byte <= 0xFF; ++byte)
        if (byte != '"' && byte != '\\') others += static_cast<char>(byte);
    EXPECT_EQ(jsonEscape(others), others);
    EXPECT_EQ(jsonEscape("\xC3\xBC/\xE6\x97\xA5/\xF0\x9F\x8E\x89"), "\xC3\xBC/\xE6\x97\xA5/\xF0\x9F\x8E\x89");
    EXPECT_EQ(jsonEscape(""), "");
}

TEST(JsonValueTest, AMemberIsFoundByItsQuotedKey) {
    EXPECT_EQ(jsonValue(L"{\"group\":\"Office\"}", L"group"), L"Office");
    EXPECT_EQ(jsonValue(L"{\"a\":\"1\",\"b\":\"2\",\"c\":\"3\"}", L"b"), L"2");
    EXPECT_EQ(jsonValue(L"{\"latest_version\":\"1\",\"version\":\"2\"}", L"version"), L"2");
    EXPECT_EQ(jsonValue(L"{\"a:b\":\"1\"}", L"a:b"), L"1");
    EXPECT_EQ(jsonValue(L"{group:\"Office\"}", L"group"), L"");
}

TEST(JsonValueTest, TheFirstOfTwoEqualKeysCounts) {
    EXPECT_EQ(jsonValue(L"{\"a\":\"1\",\"a\":\"2\"}", L"a"), L"1");
}

TEST(JsonValueTest, ACommaOrABraceInsideAStringEndsTheValue) {
    EXPECT_EQ(jsonValue(L"{\"group\": \"A, B\"}", L"group"), L"\"A");
    EXPECT_EQ(jsonValue(L"{\"group\": \"A} B\"}", L"group"), L"\"A");
}

TEST(JsonValueTest, TheColonMayStandAnywhereBehindTheKey) {
    EXPECT_EQ(jsonValue(L"{\"a\" \r\n:\t1}", L"a"), L"1");
    EXPECT_EQ(jsonValue(L"{\"x\":\"a\",\"b\":\"2\"}", L"a"), L"2");
    EXPECT_EQ(jsonValue(L": {\"a\" 1}", L"a"), L"");
    EXPECT_EQ(jsonValue(L"{\"a\":\"http://x\"}", L"a"), L"http://x");
}

TEST(JsonValueTest, BlanksTabsAndLineEndsAroundTheValueAreStripped) {
    EXPECT_EQ(jsonValue(L"{\"a\": \t\r\n\" 1 \"\n\r\t }", L"a"), L" 1 ");
    EXPECT_EQ(jsonValue(L"{\"a\":\u00A0 1\v}", L"a"), L"\u00A0 1\v");
    EXPECT_EQ(jsonValue(L"{\"a\": \t }", L"a"), L"");
}

TEST(JsonValueTest, OnlyOnePairOfQuotesIsRemoved) {
    EXPECT_EQ(jsonValue(L"{\"a\":\"\"1\"\"}", L"a"), L"\"1\"");
    EXPECT_EQ(jsonValue(L"{\"a\":\"\"}", L"a"), L"");
    EXPECT_EQ(jsonValue(L"{\"a\":\"}", L"a"), L"\"");
    EXPECT_EQ(jsonValue(L"{\"a\":1\"}", L"a"), L"1\"");
}

TEST(JsonValueTest, NothingIsUnescaped) {
    EXPECT_EQ(jsonValue(L"{\"url\":\"https:\\/\\/x\\u0041\\\"\"}", L"url"), L"https:\\/\\/x\\u0041\\\"");
}

TEST(JsonValueTest, AValueThatIsNotAStringIsTakenAsItStands) {
    EXPECT_EQ(jsonValue(L"{\"a\":true,\"b\":null}", L"a"), L"true");
    EXPECT_EQ(jsonValue(L"{\"a\":{\"b\":2}}", L"a"), L"{\"b\":2");
}

TEST(JsonValueTest, TextThatBreaksOffGivesWhatIsThere) {
    EXPECT_EQ(jsonValue(L"", L"a"), L"");
    EXPECT_EQ(jsonValue(L"\"a", L"a"), L"");
    EXPECT_EQ(jsonValue(L"\"a\"", L"a"), L"");
    EXPECT_EQ(jsonValue(L"\"a\":", L"a"), L"");
    EXPECT_EQ(jsonValue(L"\"a\":\"12", L"a"), L"\"12");
}

// The text is copied to memory of exactly its size, so that the sanitizer sees a step past its end.
TEST(JsonValueTest, NoBeginningOfATextIsReadPastItsEnd) {
    const std::wstring whole = L"{\"x\":\"\",\"group\" : \"Office\" }";
    const std::wstring member = L"\"Office\"";
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        const std::unique_ptr<wchar_t[]> exact(new wchar_t[length]);
        whole.copy(exact.get(), length);
        const std::wstring value = jsonValue({exact.get(), length}, L"group");
        EXPECT_NE(member.find(value), std::wstring::npos) << length;
    }
}

}  // namespace
}  // namespace varnelo
