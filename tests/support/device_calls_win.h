#pragma once

#include <d3d11.h>

#include <array>

namespace varnelo {

// Counts the objects that are created through devices while this lives: the places of the creating operations
// in the table that all devices share point to counting ones. One at a time; one thread.
class DeviceCalls {
public:
    explicit DeviceCalls(ID3D11Device* device);
    DeviceCalls(const DeviceCalls&) = delete;
    DeviceCalls& operator=(const DeviceCalls&) = delete;
    ~DeviceCalls();

    int created() const;

private:
    static constexpr int kOperations = 43;  // of ID3D11Device, with the three of IUnknown

    void write(const std::array<void*, kOperations>& operations);

    void** table;
    std::array<void*, kOperations> original{};
};

}  // namespace varnelo
