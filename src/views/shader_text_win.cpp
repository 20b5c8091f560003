#include "views/shader_text_win.h"

#include <d3dcompiler.h>
#include <windows.h>

#include <string>

#include "platform/resources.h"

namespace varnelo {

ShaderText shaderResource(std::uint32_t id, const char* name) {
    const std::span<const std::uint8_t> bytes = resourceBytes(nullptr, id);
    return {{reinterpret_cast<const char*>(bytes.data()), bytes.size()}, name};
}

ComRef<ID3DBlob> compileShader(const ShaderText& source, const char* target) {
    ComRef<ID3DBlob> code;
    ComRef<ID3DBlob> messages;
    const HRESULT result = D3DCompile(source.text.data(), source.text.size(), source.name, nullptr, nullptr,
                                      "main", target, 0, 0, code.put(), messages.put());
    if (SUCCEEDED(result)) return code;
    if (messages) {
        const std::string message(static_cast<const char*>(messages->GetBufferPointer()),
                                  messages->GetBufferSize());
        OutputDebugStringA(message.c_str());
    }
    return {};
}

ComRef<ID3D11PixelShader> createPixelShader(ID3D11Device* device, const ShaderText& source) {
    ComRef<ID3D11PixelShader> shader;
    if (const ComRef<ID3DBlob> code = compileShader(source, "ps_5_0")) {
        device->CreatePixelShader(code->GetBufferPointer(), code->GetBufferSize(), nullptr, shader.put());
    }
    return shader;
}

VertexShader createVertexShader(ID3D11Device* device, const ShaderText& source) {
    VertexShader made;
    made.code = compileShader(source, "vs_5_0");
    if (made.code) {
        device->CreateVertexShader(made.code->GetBufferPointer(), made.code->GetBufferSize(), nullptr,
                                   made.shader.put());
    }
    return made;
}

}  // namespace varnelo
