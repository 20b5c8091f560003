#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/handles_win.h"

namespace varnelo {

// Null when the key is missing or may not be opened; `access` as for RegOpenKeyExW.
RegKey openRegistryKey(HKEY root, const wchar_t* path, REGSAM access = KEY_READ);

// A value's content when it is there and of that very kind, and nothing otherwise. A null name means the
// key's default value. Text ends at its first zero, stored or not.
std::optional<std::vector<std::uint8_t>> readRegistryBinary(HKEY key, const wchar_t* name);
std::optional<std::uint32_t> readRegistryDword(HKEY key, const wchar_t* name);
std::optional<std::wstring> readRegistryText(HKEY key, const wchar_t* name);

bool writeRegistryBinary(HKEY key, const wchar_t* name, std::span<const std::uint8_t> value);
bool writeRegistryDword(HKEY key, const wchar_t* name, std::uint32_t value);
bool writeRegistryText(HKEY key, const wchar_t* name, const std::wstring& value);

}  // namespace varnelo
