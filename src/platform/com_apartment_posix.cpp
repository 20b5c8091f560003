#include "platform/com_apartment.h"

namespace varnelo {

ComApartment::ComApartment(Kind) : joined(true) {}

ComApartment::~ComApartment() { joined = false; }

}  // namespace varnelo
