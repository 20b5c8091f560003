#pragma once

namespace varnelo {

// Hands a text to the debugger or debug viewer that listens, if any. The host build drops it. Any thread;
// allocates nothing.
void debugOutput(const wchar_t* text);

}  // namespace varnelo
