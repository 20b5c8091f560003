#include <windows.h>

#include <objbase.h>

#include "platform/com_apartment.h"

namespace varnelo {

ComApartment::ComApartment(Kind kind)
    : joined(SUCCEEDED(
          CoInitializeEx(nullptr, kind == Kind::Single ? COINIT_APARTMENTTHREADED : COINIT_MULTITHREADED))) {}

ComApartment::~ComApartment() {
    if (joined) CoUninitialize();
}

}  // namespace varnelo
