#include "app/settings_store_win.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <array>

#include "platform/handles_win.h"

namespace varnelo {
namespace {

constexpr char kTestKey[] = "Software\\Varnelo Settings Test";

class RegistrySettingsTest : public testing::Test {
protected:
    RegistrySettingsTest() {
        RegDeleteTreeA(HKEY_CURRENT_USER, kTestKey);
        store = openRegistrySettings(kTestKey);
    }
    ~RegistrySettingsTest() override {
        store.reset();
        RegDeleteTreeA(HKEY_CURRENT_USER, kTestKey);
    }

    static RegKey openKey() {
        RegKey key;
        RegOpenKeyExA(HKEY_CURRENT_USER, kTestKey, 0, KEY_ALL_ACCESS, key.put());
        return key;
    }

    void givenValue(const char* name, DWORD type, const std::vector<std::uint8_t>& bytes) {
        ASSERT_EQ(
            RegSetValueExA(openKey().get(), name, 0, type, bytes.data(), static_cast<DWORD>(bytes.size())),
            ERROR_SUCCESS);
    }

    static std::pair<DWORD, std::vector<std::uint8_t>> valueOf(const char* name) {
        DWORD type = REG_NONE;
        std::vector<std::uint8_t> bytes(1024);
        auto size = static_cast<DWORD>(bytes.size());
        if (RegQueryValueExA(openKey().get(), name, nullptr, &type, bytes.data(), &size) != ERROR_SUCCESS)
            size = 0;
        bytes.resize(size);
        return {type, bytes};
    }

    static DWORD valueCount() {
        DWORD count = 0;
        RegQueryInfoKeyA(openKey().get(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &count,
                         nullptr, nullptr, nullptr, nullptr);
        return count;
    }

    std::unique_ptr<SettingsStore> store;
};

using Value = std::pair<DWORD, std::vector<std::uint8_t>>;

TEST_F(RegistrySettingsTest, AnEmptyKeyGivesDefaultsAndStaysEmptyUntilTheFirstSave) {
    ASSERT_NE(store, nullptr);
    EXPECT_TRUE(openKey()) << "the key is made when it is opened";
    Settings settings(store.get());
    settings.load();
    EXPECT_EQ(settings.sortTimeoutDays, 30);
    EXPECT_EQ(settings.iconScale, 1.0f);
    EXPECT_EQ(settings.languageIndex, -1);
    EXPECT_EQ(valueCount(), 0u);
    settings.save();
    EXPECT_EQ(valueCount(), 7u);
}

TEST_F(RegistrySettingsTest, SavedValuesHaveTheseTypesAndBytes) {
    Settings settings(store.get());
    settings.splitterRatio = 0.25f;
    settings.tabIndex = 3;
    settings.iconScale = 1.25f;
    settings.languageIndex = -1;
    settings.enabledMonitors = "1,3";
    settings.save();
    EXPECT_EQ(valueOf("splitterRatio"), (Value{REG_BINARY, {0x00, 0x00, 0x80, 0x3E}}));
    EXPECT_EQ(valueOf("tabIndex"), (Value{REG_DWORD, {0x03, 0x00, 0x00, 0x00}}));
    EXPECT_EQ(valueOf("sortTimeoutDays"), (Value{REG_DWORD, {0x1E, 0x00, 0x00, 0x00}}));
    EXPECT_EQ(valueOf("iconScale"), (Value{REG_BINARY, {0x00, 0x00, 0xA0, 0x3F}}));
    EXPECT_EQ(valueOf("hoverMode"), (Value{REG_DWORD, {0x00, 0x00, 0x00, 0x00}}));
    EXPECT_EQ(valueOf("languageIndex"), (Value{REG_DWORD, {0xFF, 0xFF, 0xFF, 0xFF}}));
    EXPECT_EQ(valueOf("enabledMonitors"), (Value{REG_SZ, {'1', ',', '3', 0}}));
}

TEST_F(RegistrySettingsTest, LoadsWhatAnotherRunSaved) {
    Settings settings(store.get());
    settings.iconScale = 1.1f;
    settings.hoverMode = 1;
    settings.enabledMonitors = "1,2";
    settings.save();
    settings.setSplitterRatioFor(2, 0.75f);
    settings.setTabIndexFor(2, 5);

    const auto again = openRegistrySettings(kTestKey);
    Settings loaded(again.get());
    loaded.load();
    EXPECT_EQ(loaded.iconScale, 1.1f);
    EXPECT_EQ(loaded.hoverMode, 1);
    EXPECT_EQ(loaded.enabledMonitors, "1,2");
    EXPECT_EQ(loaded.splitterRatioFor(2), 0.75f);
    EXPECT_EQ(loaded.tabIndexFor(2), 5);
    EXPECT_EQ(valueOf("splitterRatio_2"), (Value{REG_BINARY, {0x00, 0x00, 0x40, 0x3F}}));
    EXPECT_EQ(valueOf("tabIndex_2"), (Value{REG_DWORD, {0x05, 0x00, 0x00, 0x00}}));
}

TEST_F(RegistrySettingsTest, ValuesOfAnotherTypeAreTakenAsTheirBytes) {
    givenValue("tabIndex", REG_BINARY, {2, 0, 0, 0});
    givenValue("iconScale", REG_DWORD, {0x00, 0x00, 0x00, 0x40});
    givenValue("hoverMode", REG_SZ, {'A', 0});
    givenValue("enabledMonitors", REG_BINARY, {'1', ',', '2'});
    Settings settings(store.get());
    settings.load();
    EXPECT_EQ(settings.tabIndex, 2);
    EXPECT_EQ(settings.iconScale, 2.0f);
    EXPECT_EQ(settings.hoverMode, 'A');
    EXPECT_EQ(settings.enabledMonitors, "1,2");
}

TEST_F(RegistrySettingsTest, ValuesTooLargeGiveDefaults) {
    givenValue("tabIndex", REG_BINARY, {1, 2, 3, 4, 5, 6, 7, 8});
    givenValue("sortTimeoutDays", REG_QWORD, {1, 0, 0, 0, 0, 0, 0, 0});
    givenValue("splitterRatio", REG_SZ, {'l', 'o', 'n', 'g', 'e', 'r', 0});
    givenValue("enabledMonitors", REG_SZ, std::vector<std::uint8_t>(2000, '1'));
    Settings settings(store.get());
    settings.load();
    EXPECT_EQ(settings.tabIndex, 0);
    EXPECT_EQ(settings.sortTimeoutDays, 30);
    EXPECT_EQ(settings.splitterRatio, 0.0f);
    EXPECT_EQ(settings.enabledMonitors, "");
}

TEST_F(RegistrySettingsTest, EmptyValuesGiveDefaults) {
    for (const char* name : {"splitterRatio", "tabIndex", "languageIndex", "enabledMonitors"}) {
        givenValue(name, REG_BINARY, {});
    }
    Settings settings(store.get());
    settings.load();
    EXPECT_EQ(settings.splitterRatio, 0.0f);
    EXPECT_EQ(settings.tabIndex, 0);
    EXPECT_EQ(settings.languageIndex, -1);
    EXPECT_EQ(settings.enabledMonitors, "");
}

TEST_F(RegistrySettingsTest, AReadStaysWithinItsBuffer) {
    givenValue("some", REG_BINARY, {1, 2, 3, 4, 5, 6});
    std::array<std::uint8_t, 8> memory{};
    memory.fill(0xEE);
    EXPECT_EQ(store->read("some", std::span(memory).first(4)), std::nullopt);
    EXPECT_EQ(memory, (std::array<std::uint8_t, 8>{0xEE, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE}));
    EXPECT_EQ(store->read("some", memory), std::size_t{6});
    EXPECT_EQ(memory, (std::array<std::uint8_t, 8>{1, 2, 3, 4, 5, 6, 0xEE, 0xEE}));
}

TEST(RegistrySettings, AKeyThatCannotBeMadeGivesNoStore) {
    const std::string tooLong = "Software\\" + std::string(300, 'x');
    EXPECT_EQ(openRegistrySettings(tooLong.c_str()), nullptr);
}

}  // namespace
}  // namespace varnelo
