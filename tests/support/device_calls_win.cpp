#include "support/device_calls_win.h"

#include <windows.h>

#include <cstring>

namespace varnelo {

namespace {

int creations = 0;
void* forwarded[64] = {};

// All arguments of the creating operations are integers or pointers, so one shape fits those with up to six.
using Operation = HRESULT(STDMETHODCALLTYPE*)(void*, UINT_PTR, UINT_PTR, UINT_PTR, UINT_PTR, UINT_PTR);

template <int Place>
HRESULT STDMETHODCALLTYPE counted(void* self, UINT_PTR a, UINT_PTR b, UINT_PTR c, UINT_PTR d, UINT_PTR e) {
    ++creations;
    return reinterpret_cast<Operation>(forwarded[Place])(self, a, b, c, d, e);
}

template <int... Places, class Table>
void count(Table& table) {
    ((table[Places] = reinterpret_cast<void*>(&counted<Places>)), ...);
}

}  // namespace

DeviceCalls::DeviceCalls(ID3D11Device* device) : table(*reinterpret_cast<void***>(device)) {
    std::memcpy(original.data(), table, sizeof original);
    std::memcpy(forwarded, table, sizeof original);
    creations = 0;
    std::array<void*, kOperations> counting = original;
    // Buffers, textures and views are 3 to 10, the layout 11, shaders 12, 13 and 15, states 20 to 23.
    count<3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 15, 20, 21, 22, 23>(counting);
    write(counting);
}

DeviceCalls::~DeviceCalls() { write(original); }

int DeviceCalls::created() const { return creations; }

void DeviceCalls::write(const std::array<void*, kOperations>& operations) {
    DWORD protection = 0;
    if (!VirtualProtect(table, sizeof operations, PAGE_READWRITE, &protection)) return;
    std::memcpy(table, operations.data(), sizeof operations);
    VirtualProtect(table, sizeof operations, protection, &protection);
}

}  // namespace varnelo
