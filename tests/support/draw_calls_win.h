#pragma once

#include <d3d11.h>

namespace varnelo {

// Counts what a device context is asked to draw while this lives, by the program and by Direct2D alike: the
// drawing operations in its table point to counting ones. One at a time; one thread.
class DrawCalls {
public:
    explicit DrawCalls(ID3D11DeviceContext* context);
    DrawCalls(const DrawCalls&) = delete;
    DrawCalls& operator=(const DrawCalls&) = delete;
    ~DrawCalls();

    int count() const;

private:
    void** table;
};

}  // namespace varnelo
