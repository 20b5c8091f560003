#include "app/settings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>

#include "support/memory_settings_store.h"

namespace varnelo {
namespace {

using Kind = SettingsStore::Kind;
using testing::ElementsAre;
using testing::IsEmpty;

class SettingsTest : public testing::Test {
protected:
    void givenBytes(const char* name, std::vector<std::uint8_t> bytes, Kind kind = Kind::Binary) {
        store.values[name] = {kind, std::move(bytes)};
    }

    test::MemorySettingsStore store;
    Settings settings{&store};
};

TEST_F(SettingsTest, AnEmptyKeyGivesTheDefaultsAndWritesNothing) {
    settings.splitterRatio = 9.0f;
    settings.load();
    EXPECT_EQ(settings.splitterRatio, 0.0f);
    EXPECT_EQ(settings.tabIndex, 0);
    EXPECT_EQ(settings.sortTimeoutDays, 30);
    EXPECT_EQ(settings.iconScale, 1.0f);
    EXPECT_EQ(settings.hoverMode, 0);
    EXPECT_EQ(settings.languageIndex, -1);
    EXPECT_EQ(settings.enabledMonitors, "");
    EXPECT_THAT(store.writes, IsEmpty());
}

TEST_F(SettingsTest, ReadsAndWritesItsSevenValuesInOrder) {
    const auto inOrder = ElementsAre("splitterRatio", "tabIndex", "sortTimeoutDays", "iconScale", "hoverMode",
                                     "languageIndex", "enabledMonitors");
    settings.load();
    EXPECT_THAT(store.reads, inOrder);
    settings.save();
    EXPECT_THAT(store.writes, inOrder);
}

TEST_F(SettingsTest, StoresTheseBytes) {
    settings.splitterRatio = 0.25f;
    settings.tabIndex = 3;
    settings.sortTimeoutDays = 365;
    settings.iconScale = 1.25f;
    settings.hoverMode = 1;
    settings.languageIndex = -1;
    settings.enabledMonitors = "1,3";
    settings.save();
    using Value = test::MemorySettingsStore::Value;
    const std::map<std::string, Value> expected = {
        {"splitterRatio", {Kind::Binary, {0x00, 0x00, 0x80, 0x3E}}},
        {"tabIndex", {Kind::Dword, {0x03, 0x00, 0x00, 0x00}}},
        {"sortTimeoutDays", {Kind::Dword, {0x6D, 0x01, 0x00, 0x00}}},
        {"iconScale", {Kind::Binary, {0x00, 0x00, 0xA0, 0x3F}}},
        {"hoverMode", {Kind::Dword, {0x01, 0x00, 0x00, 0x00}}},
        {"languageIndex", {Kind::Dword, {0xFF, 0xFF, 0xFF, 0xFF}}},
        {"enabledMonitors", {Kind::Text, {'1', ',', '3', 0x00}}},
    };
    EXPECT_TRUE(store.values == expected);
}

TEST_F(SettingsTest, LoadsWhatWasSaved) {
    settings.splitterRatio = 0.75f;
    settings.tabIndex = 5;
    settings.sortTimeoutDays = 7;
    settings.iconScale = 1.1f;
    settings.hoverMode = 1;
    settings.languageIndex = 2;
    settings.enabledMonitors = "2";
    settings.save();

    Settings loaded(&store);
    loaded.load();
    EXPECT_EQ(loaded.splitterRatio, 0.75f);
    EXPECT_EQ(loaded.tabIndex, 5);
    EXPECT_EQ(loaded.sortTimeoutDays, 7);
    EXPECT_EQ(loaded.iconScale, 1.1f) << "a scale between the dialog's steps stays what it is";
    EXPECT_EQ(loaded.hoverMode, 1);
    EXPECT_EQ(loaded.languageIndex, 2);
    EXPECT_EQ(loaded.enabledMonitors, "2");
}

TEST_F(SettingsTest, WithoutAStoreItHasDefaultsAndWritesNothing) {
    Settings alone(nullptr);
    alone.load();
    alone.tabIndex = 4;
    alone.splitterRatio = 0.5f;
    alone.save();
    alone.setTabIndexFor(1, 2);
    alone.setSplitterRatioFor(1, 0.3f);
    EXPECT_EQ(alone.sortTimeoutDays, 30);
    EXPECT_EQ(alone.languageIndex, -1);
    EXPECT_EQ(alone.tabIndexFor(1), 4);
    EXPECT_EQ(alone.splitterRatioFor(1), 0.5f);
}

TEST_F(SettingsTest, AMonitorWithoutValuesOfItsOwnHasTheCommonOnes) {
    settings.splitterRatio = 0.4f;
    settings.tabIndex = 2;
    EXPECT_EQ(settings.splitterRatioFor(1), 0.4f);
    EXPECT_EQ(settings.tabIndexFor(1), 2);
}

TEST_F(SettingsTest, AStoredRatioOfZeroCountsAsNone) {
    settings.splitterRatio = 0.4f;
    givenBytes("splitterRatio_1", {0, 0, 0, 0});
    EXPECT_EQ(settings.splitterRatioFor(1), 0.4f);
    settings.setSplitterRatioFor(1, -0.5f);
    EXPECT_EQ(settings.splitterRatioFor(1), -0.5f) << "only a zero does";
    givenBytes("tabIndex_1", {0, 0, 0, 0});
    settings.tabIndex = 2;
    EXPECT_EQ(settings.tabIndexFor(1), 0) << "a tab of zero is a tab";
}

TEST_F(SettingsTest, AMonitorsValuesAreWrittenAtOnceUnderItsDecimalIndex) {
    settings.setSplitterRatioFor(12, 0.5f);
    settings.setTabIndexFor(0, -1);
    EXPECT_THAT(store.writes, ElementsAre("splitterRatio_12", "tabIndex_0"));
    EXPECT_EQ(store.values["splitterRatio_12"].kind, Kind::Binary);
    EXPECT_EQ(store.values["tabIndex_0"].kind, Kind::Dword);
    EXPECT_EQ(settings.splitterRatioFor(12), 0.5f);
    EXPECT_EQ(settings.tabIndexFor(0), -1);
}

TEST_F(SettingsTest, TheKindOfAStoredValueIsNotLookedAt) {
    givenBytes("tabIndex", {0x02, 0x00, 0x00, 0x00}, Kind::Binary);
    givenBytes("iconScale", {0x00, 0x00, 0x00, 0x40}, Kind::Dword);
    givenBytes("enabledMonitors", {'1', ',', '2', 0}, Kind::Dword);
    settings.load();
    EXPECT_EQ(settings.tabIndex, 2);
    EXPECT_EQ(settings.iconScale, 2.0f);
    EXPECT_EQ(settings.enabledMonitors, "1,2");
}

TEST_F(SettingsTest, AShortValueTakesThePlaceOfTheDefaultsFirstBytes) {
    givenBytes("sortTimeoutDays", {0x05});
    givenBytes("languageIndex", {0x01, 0x00});
    givenBytes("hoverMode", {});
    settings.load();
    EXPECT_EQ(settings.sortTimeoutDays, 5);
    EXPECT_EQ(settings.languageIndex, static_cast<std::int32_t>(0xFFFF0001));
    EXPECT_EQ(settings.hoverMode, 0);
}

TEST_F(SettingsTest, AValueTooLargeGivesTheDefault) {
    givenBytes("sortTimeoutDays", {1, 2, 3, 4, 5});
    givenBytes("enabledMonitors", std::vector<std::uint8_t>(513, '1'), Kind::Text);
    settings.load();
    EXPECT_EQ(settings.sortTimeoutDays, 30);
    EXPECT_EQ(settings.enabledMonitors, "");
}

TEST_F(SettingsTest, ATextWithoutAnEndIsTakenUpToItsLastByte) {
    givenBytes("enabledMonitors", std::vector<std::uint8_t>(512, '1'), Kind::Text);
    settings.load();
    EXPECT_EQ(settings.enabledMonitors, std::string(512, '1'));
}

TEST_F(SettingsTest, ATextEndsAtItsFirstZero) {
    givenBytes("enabledMonitors", {'1', 0, '2', 0}, Kind::Text);
    settings.load();
    EXPECT_EQ(settings.enabledMonitors, "1");
}

TEST_F(SettingsTest, AScaleThatNothingCanBeLaidOutWithIsOneForTheLayoutAlone) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float infinity = std::numeric_limits<float>::infinity();
    for (const float scale : {nan, infinity, -infinity, 0.0f, -1.0f, 1e-30f, 0.09f, 10.1f, 1e30f}) {
        settings.iconScale = scale;
        EXPECT_EQ(settings.iconScaleForLayout(), 1.0f) << scale;
    }
    for (const float scale : {0.1f, 0.5f, 1.1f, 2.0f, 10.0f}) {
        settings.iconScale = scale;
        EXPECT_EQ(settings.iconScaleForLayout(), scale);
    }
}

}  // namespace
}  // namespace varnelo
