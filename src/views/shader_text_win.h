#pragma once

#include <d3d11.h>

#include <cstdint>
#include <string_view>

#include "platform/com_ref.h"

namespace varnelo {

// A shader with the entry point "main"; `name` is what the compiler calls it in its messages, and may be
// null.
struct ShaderText {
    std::string_view text;
    const char* name;
};
// Among the program's RCDATA resources; empty when it is not there.
ShaderText shaderResource(std::uint32_t id, const char* name);

// Byte code for `target`, for instance "ps_5_0"; null on failure, when the compiler's message has gone to the
// debug output.
ComRef<ID3DBlob> compileShader(const ShaderText& source, const char* target);

// Null when the text does not compile or the device refuses it.
ComRef<ID3D11PixelShader> createPixelShader(ID3D11Device* device, const ShaderText& source);

struct VertexShader {
    ComRef<ID3D11VertexShader> shader;
    ComRef<ID3DBlob> code;  // for the input layout that feeds it
};
VertexShader createVertexShader(ID3D11Device* device, const ShaderText& source);

}  // namespace varnelo
