#pragma once

#include "model/file_probe.h"

namespace varnelo {

// The file system itself.
class WindowsFileProbe final : public FileProbe {
public:
    std::optional<std::uint32_t> attributes(const std::wstring& path) const override;
    std::optional<Facts> facts(const std::wstring& path) const override;
    std::optional<FileTimes> fileTimes(const std::wstring& path) const override;
    bool hasZoneIdentifier(const std::wstring& path) const override;
    std::vector<std::uint8_t> beginning(const std::wstring& path, std::size_t limitBytes) const override;
};

}  // namespace varnelo
