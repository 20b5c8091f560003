#include <windows.h>

#include "platform/debug_output.h"

namespace varnelo {

void debugOutput(const wchar_t* text) { OutputDebugStringW(text); }

}  // namespace varnelo
