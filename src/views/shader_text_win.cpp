#include "views/shader_text_win.h"

#include <d3dcompiler.h>
#include <windows.h>

#include <string>

#include "platform/resources.h"

namespace varnelo {

ComRef<ID3DBlob> compileShader(std::string_view text, const char* name, const char* target) {
    ComRef<ID3DBlob> code;
    ComRef<ID3DBlob> messages;
    const HRESULT result = D3DCompile(text.data(), text.size(), name, nullptr, nullptr, "main", target, 0, 0,
                                      code.put(), messages.put());
    if (SUCCEEDED(result)) return code;
    if (messages) {
        const std::string message(static_cast<const char*>(messages->GetBufferPointer()),
                                  messages->GetBufferSize());
        OutputDebugStringA(message.c_str());
    }
    return {};
}

ComRef<ID3DBlob> compileShaderResource(std::uint32_t id, const char* name, const char* target) {
    const std::span<const std::uint8_t> bytes = resourceBytes(nullptr, id);
    return compileShader({reinterpret_cast<const char*>(bytes.data()), bytes.size()}, name, target);
}

}  // namespace varnelo
