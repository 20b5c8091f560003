#include "platform/registry_win.h"

#include <cstring>

namespace varnelo {

namespace {

// The bytes of a value of that type. Another process may change it between asking for the size and for the
// content, so this goes on until both fit.
std::optional<std::vector<std::uint8_t>> readValue(HKEY key, const wchar_t* name, DWORD type) {
    std::vector<std::uint8_t> bytes(256);
    for (;;) {
        auto size = static_cast<DWORD>(bytes.size());
        DWORD found = REG_NONE;
        const LSTATUS status = RegQueryValueExW(key, name, nullptr, &found, bytes.data(), &size);
        if (status == ERROR_MORE_DATA && size > bytes.size()) {
            bytes.resize(size);
            continue;
        }
        if (status != ERROR_SUCCESS || found != type) return std::nullopt;
        bytes.resize(size);
        return bytes;
    }
}

bool writeValue(HKEY key, const wchar_t* name, DWORD type, const void* bytes, std::size_t size) {
    return RegSetValueExW(key, name, 0, type, static_cast<const BYTE*>(bytes), static_cast<DWORD>(size)) ==
           ERROR_SUCCESS;
}

}  // namespace

RegKey openRegistryKey(HKEY root, const wchar_t* path, REGSAM access) {
    RegKey key;
    if (RegOpenKeyExW(root, path, 0, access, key.put()) != ERROR_SUCCESS) return {};
    return key;
}

std::optional<std::vector<std::uint8_t>> readRegistryBinary(HKEY key, const wchar_t* name) {
    return readValue(key, name, REG_BINARY);
}

std::optional<std::uint32_t> readRegistryDword(HKEY key, const wchar_t* name) {
    const auto bytes = readValue(key, name, REG_DWORD);
    std::uint32_t value = 0;
    if (!bytes || bytes->size() != sizeof value) return std::nullopt;
    std::memcpy(&value, bytes->data(), sizeof value);
    return value;
}

std::optional<std::wstring> readRegistryText(HKEY key, const wchar_t* name) {
    const auto bytes = readValue(key, name, REG_SZ);
    if (!bytes) return std::nullopt;
    std::wstring text(bytes->size() / sizeof(wchar_t), L'\0');
    std::memcpy(text.data(), bytes->data(), text.size() * sizeof(wchar_t));
    return text.substr(0, text.find(L'\0'));
}

bool writeRegistryBinary(HKEY key, const wchar_t* name, std::span<const std::uint8_t> value) {
    return writeValue(key, name, REG_BINARY, value.data(), value.size());
}

bool writeRegistryDword(HKEY key, const wchar_t* name, std::uint32_t value) {
    return writeValue(key, name, REG_DWORD, &value, sizeof value);
}

bool writeRegistryText(HKEY key, const wchar_t* name, const std::wstring& value) {
    return writeValue(key, name, REG_SZ, value.c_str(), (value.size() + 1) * sizeof(wchar_t));
}

}  // namespace varnelo
