#pragma once

#include <dwrite.h>

#include <string>

namespace varnelo {

// `wanted`, or a family that exists when it does not: some text engines draw nothing in a font that they do
// not have.
std::wstring availableFamily(IDWriteFactory* factory, const wchar_t* wanted);

}  // namespace varnelo
