#pragma once

#include <d3dcommon.h>

#include <cstdint>
#include <string_view>

#include "platform/com_ref.h"

namespace varnelo {

// Byte code of the entry point "main"; null on failure, when the compiler's message has gone to the debug
// output. `name` is what the compiler calls the text in its messages, `target` for instance "ps_5_0".
ComRef<ID3DBlob> compileShader(std::string_view text, const char* name, const char* target);
// The same for a text among the program's RCDATA resources.
ComRef<ID3DBlob> compileShaderResource(std::uint32_t id, const char* name, const char* target);

}  // namespace varnelo
