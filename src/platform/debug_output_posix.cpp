#include "platform/debug_output.h"

namespace varnelo {

void debugOutput(const wchar_t*) {}

}  // namespace varnelo
