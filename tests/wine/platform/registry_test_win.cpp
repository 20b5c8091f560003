#include "platform/registry_win.h"

#include <gtest/gtest.h>

namespace varnelo {
namespace {

constexpr wchar_t kTestKey[] = L"Software\\Varnelo Registry Test";
using Bytes = std::vector<std::uint8_t>;

class RegistryTest : public testing::Test {
protected:
    RegistryTest() {
        RegCreateKeyExW(HKEY_CURRENT_USER, kTestKey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, key.put(),
                        nullptr);
    }
    ~RegistryTest() override {
        key.reset();
        RegDeleteTreeW(HKEY_CURRENT_USER, kTestKey);
    }

    RegKey key;
};

TEST_F(RegistryTest, ReadsBackWhatWasWritten) {
    const Bytes large(5000, 7);
    EXPECT_TRUE(writeRegistryBinary(key.get(), L"bytes", large));
    EXPECT_TRUE(writeRegistryDword(key.get(), L"number", 0xFFFFFFFE));
    EXPECT_TRUE(writeRegistryText(key.get(), L"text", L"\x65E5 \xD83D\xDE00"));
    EXPECT_EQ(readRegistryBinary(key.get(), L"bytes"), large);
    EXPECT_EQ(readRegistryDword(key.get(), L"number"), 0xFFFFFFFE);
    EXPECT_EQ(readRegistryText(key.get(), L"text"), L"\x65E5 \xD83D\xDE00");
}

TEST_F(RegistryTest, WhatIsMissingOrOfAnotherKindIsNothing) {
    EXPECT_EQ(readRegistryDword(key.get(), L"absent"), std::nullopt);
    writeRegistryText(key.get(), L"text", L"x");
    EXPECT_EQ(readRegistryDword(key.get(), L"text"), std::nullopt);
    EXPECT_EQ(readRegistryBinary(key.get(), L"text"), std::nullopt);
    EXPECT_EQ(readRegistryText(nullptr, L"text"), std::nullopt);
}

TEST_F(RegistryTest, ANumberOfAnotherSizeIsNothing) {
    const Bytes two{1, 2};
    RegSetValueExW(key.get(), L"number", 0, REG_DWORD, two.data(), 2);
    EXPECT_EQ(readRegistryDword(key.get(), L"number"), std::nullopt);
}

TEST_F(RegistryTest, ATextNeedsNoEndAndNoEvenSize) {
    const Bytes odd{'a', 0, 'b', 0, 'c'};
    RegSetValueExW(key.get(), L"text", 0, REG_SZ, odd.data(), static_cast<DWORD>(odd.size()));
    EXPECT_EQ(readRegistryText(key.get(), L"text"), L"ab");
    const Bytes inner{'a', 0, 0, 0, 'b', 0, 0, 0};
    RegSetValueExW(key.get(), L"text", 0, REG_SZ, inner.data(), static_cast<DWORD>(inner.size()));
    EXPECT_EQ(readRegistryText(key.get(), L"text"), L"a");
}

TEST_F(RegistryTest, AMissingKeyIsNull) {
    EXPECT_TRUE(openRegistryKey(HKEY_CURRENT_USER, kTestKey));
    EXPECT_FALSE(openRegistryKey(HKEY_CURRENT_USER, L"Software\\Varnelo No Such Key"));
}

}  // namespace
}  // namespace varnelo
