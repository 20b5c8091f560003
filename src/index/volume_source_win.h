#pragma once

#include "index/volume_source.h"

namespace varnelo {

// The drives of this machine, by the control codes of their volumes.
class WindowsVolumeSource final : public VolumeSource {
public:
    std::uint32_t drives() override;
    bool fixedDrive(wchar_t letter) override;
    std::unique_ptr<Volume> open(const std::wstring& name) override;
    std::optional<std::uint64_t> fileSize(const std::wstring& path) override;
};

}  // namespace varnelo
