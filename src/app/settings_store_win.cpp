#include "app/settings_store_win.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "app/settings_store.h"
#include "platform/handles_win.h"

namespace varnelo {

namespace {

constexpr char kUserKeyPath[] = "Software\\Varnelo";

DWORD typeOf(SettingsStore::Kind kind) {
    switch (kind) {
        case SettingsStore::Kind::Binary:
            return REG_BINARY;
        case SettingsStore::Kind::Dword:
            return REG_DWORD;
        case SettingsStore::Kind::Text:
            return REG_SZ;
    }
    return REG_NONE;
}

class RegistrySettings final : public SettingsStore {
public:
    explicit RegistrySettings(RegKey opened) : key(std::move(opened)) {}

    std::optional<std::size_t> read(const char* name, std::span<std::uint8_t> buffer) override {
        // The call never writes more than `size` bytes, but a text that is too long may leave a part of it.
        std::vector<std::uint8_t> bytes(buffer.size());
        auto size = static_cast<DWORD>(bytes.size());
        if (RegQueryValueExA(key.get(), name, nullptr, nullptr, bytes.data(), &size) != ERROR_SUCCESS) {
            return std::nullopt;
        }
        const auto count = std::min<std::size_t>(size, buffer.size());
        std::copy_n(bytes.begin(), count, buffer.begin());
        return count;
    }

    void write(const char* name, Kind kind, std::span<const std::uint8_t> bytes) override {
        RegSetValueExA(key.get(), name, 0, typeOf(kind), bytes.data(), static_cast<DWORD>(bytes.size()));
    }

private:
    RegKey key;
};

}  // namespace

std::unique_ptr<SettingsStore> openRegistrySettings(const char* keyPath) {
    RegKey key;
    if (RegCreateKeyExA(HKEY_CURRENT_USER, keyPath, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS,
                        nullptr, key.put(), nullptr) != ERROR_SUCCESS) {
        return nullptr;
    }
    return std::make_unique<RegistrySettings>(std::move(key));
}

std::unique_ptr<SettingsStore> openUserSettingsStore() { return openRegistrySettings(kUserKeyPath); }

}  // namespace varnelo
