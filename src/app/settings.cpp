#include "app/settings.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <memory>

#include "app/settings_store.h"

namespace varnelo {

namespace {

constexpr char kSplitterRatio[] = "splitterRatio";
constexpr char kTabIndex[] = "tabIndex";
constexpr char kSortTimeoutDays[] = "sortTimeoutDays";
constexpr char kIconScale[] = "iconScale";
constexpr char kHoverMode[] = "hoverMode";
constexpr char kLanguageIndex[] = "languageIndex";
constexpr char kEnabledMonitors[] = "enabledMonitors";
constexpr std::size_t kTextLimitBytes = 512;

std::string monitorName(const char* name, int monitor) {
    return std::string(name) + "_" + std::to_string(monitor);
}

std::array<std::uint8_t, 4> littleEndian(std::uint32_t value) {
    return {static_cast<std::uint8_t>(value), static_cast<std::uint8_t>(value >> 8),
            static_cast<std::uint8_t>(value >> 16), static_cast<std::uint8_t>(value >> 24)};
}

// The kind of what is stored is not looked at. Fewer than four bytes take the place of the default's first.
std::uint32_t readFourBytes(SettingsStore* store, const char* name, std::uint32_t fallback) {
    std::array<std::uint8_t, 4> bytes = littleEndian(fallback);
    if (!store || !store->read(name, bytes)) return fallback;
    return bytes[0] | bytes[1] << 8 | bytes[2] << 16 | static_cast<std::uint32_t>(bytes[3]) << 24;
}

float readFloat(SettingsStore* store, const char* name, float fallback) {
    return std::bit_cast<float>(readFourBytes(store, name, std::bit_cast<std::uint32_t>(fallback)));
}

std::int32_t readInt(SettingsStore* store, const char* name, std::int32_t fallback) {
    return static_cast<std::int32_t>(readFourBytes(store, name, static_cast<std::uint32_t>(fallback)));
}

// Up to the first zero, or all of it: not every stored text has one.
std::string readText(SettingsStore* store, const char* name) {
    std::array<std::uint8_t, kTextLimitBytes> bytes{};
    const auto size = store ? store->read(name, bytes) : std::nullopt;
    if (!size) return {};
    const auto end = std::find(bytes.begin(), bytes.begin() + std::min(*size, bytes.size()), std::uint8_t{0});
    return {bytes.begin(), end};
}

void writeFloat(SettingsStore* store, const char* name, float value) {
    if (store)
        store->write(name, SettingsStore::Kind::Binary, littleEndian(std::bit_cast<std::uint32_t>(value)));
}

void writeInt(SettingsStore* store, const char* name, std::int32_t value) {
    if (store)
        store->write(name, SettingsStore::Kind::Dword, littleEndian(static_cast<std::uint32_t>(value)));
}

void writeText(SettingsStore* store, const char* name, const std::string& value) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(value.c_str());
    if (store) store->write(name, SettingsStore::Kind::Text, {bytes, value.size() + 1});
}

// Well beyond what the dialog offers, in both directions.
constexpr float kSmallestIconScale = 0.1f;
constexpr float kLargestIconScale = 10.0f;

}  // namespace

Settings& Settings::instance() {
    static const std::unique_ptr<SettingsStore> store = openUserSettingsStore();
    static Settings settings(store.get());
    return settings;
}

void Settings::load() {
    splitterRatio = readFloat(key, kSplitterRatio, 0.0f);
    tabIndex = readInt(key, kTabIndex, 0);
    sortTimeoutDays = readInt(key, kSortTimeoutDays, 30);
    iconScale = readFloat(key, kIconScale, 1.0f);
    hoverMode = readInt(key, kHoverMode, 0);
    languageIndex = readInt(key, kLanguageIndex, -1);
    enabledMonitors = readText(key, kEnabledMonitors);
}

void Settings::save() {
    writeFloat(key, kSplitterRatio, splitterRatio);
    writeInt(key, kTabIndex, tabIndex);
    writeInt(key, kSortTimeoutDays, sortTimeoutDays);
    writeFloat(key, kIconScale, iconScale);
    writeInt(key, kHoverMode, hoverMode);
    writeInt(key, kLanguageIndex, languageIndex);
    writeText(key, kEnabledMonitors, enabledMonitors);
}

float Settings::splitterRatioFor(int monitor) const {
    const float own = readFloat(key, monitorName(kSplitterRatio, monitor).c_str(), 0.0f);
    return own == 0.0f ? splitterRatio : own;
}

std::int32_t Settings::tabIndexFor(int monitor) const {
    return readInt(key, monitorName(kTabIndex, monitor).c_str(), tabIndex);
}

void Settings::setSplitterRatioFor(int monitor, float value) {
    writeFloat(key, monitorName(kSplitterRatio, monitor).c_str(), value);
}

void Settings::setTabIndexFor(int monitor, std::int32_t value) {
    writeInt(key, monitorName(kTabIndex, monitor).c_str(), value);
}

float Settings::iconScaleForLayout() const {
    // Written so that a NaN fails too.
    return iconScale >= kSmallestIconScale && iconScale <= kLargestIconScale ? iconScale : 1.0f;
}

}  // namespace varnelo
