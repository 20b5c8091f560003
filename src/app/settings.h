#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace varnelo {

// Where the values are kept: the registry in the program, memory in tests.
class SettingsStore {
public:
    enum class Kind { Binary, Dword, Text };

    virtual ~SettingsStore() = default;
    // Copies the value's bytes to the start of `buffer`, whatever their kind, and answers how many they are.
    // Nothing, and a buffer left alone, when there is no such value or it is larger than `buffer`.
    virtual std::optional<std::size_t> read(const char* name, std::span<std::uint8_t> buffer) = 0;
    // Best effort. `bytes` of Text hold their terminating zero.
    virtual void write(const char* name, Kind kind, std::span<const std::uint8_t> bytes) = 0;
};

// The user's lasting choices. Change the members, then save(). Main thread only. The values' names, kinds and
// bytes are told in docs/formats/settings.md.
class Settings {
public:
    // The settings of the user who runs the program.
    static Settings& instance();

    // `store` outlives the settings. Without one, reads give the defaults and nothing is written.
    explicit Settings(SettingsStore* store = nullptr) : key(store) {}

    void load();
    void save();

    // A monitor's own values, read and written at once. `monitor` is its place in the sorted list.
    // Without one of its own, a monitor has the values above; a stored ratio of 0.0 counts as none.
    float splitterRatioFor(int monitor) const;
    std::int32_t tabIndexFor(int monitor) const;
    void setSplitterRatioFor(int monitor, float value);
    void setTabIndexFor(int monitor, std::int32_t value);

    // iconScale, or 1.0 when what was stored is nothing that icons can be laid out with: a registry value of
    // another kind can leave any bit pattern there.
    float iconScaleForLayout() const;

    float splitterRatio = 0.0f;         // 0.0: no position was chosen yet
    std::int32_t tabIndex = 0;          // last tab of the primary view
    std::int32_t sortTimeoutDays = 30;  // 1 to 365 in the dialog
    float iconScale = 1.0f;             // 0.5 to 2.0 in seven steps in the dialog
    std::int32_t hoverMode = 0;         // 0 shake, 1 enlarge
    std::int32_t languageIndex = -1;    // row of languages(), -1: none was chosen yet
    std::string enabledMonitors;        // "1,3": the monitors beside the primary, comma-joined

private:
    SettingsStore* key;
};

}  // namespace varnelo
