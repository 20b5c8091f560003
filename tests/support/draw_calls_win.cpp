#include "support/draw_calls_win.h"

#include <windows.h>

namespace varnelo {

namespace {

// Of ID3D11DeviceContext, with the three operations of IUnknown and the four of ID3D11DeviceChild.
constexpr int kDrawIndexed = 12;
constexpr int kDraw = 13;

using DrawIndexed = void(STDMETHODCALLTYPE*)(ID3D11DeviceContext*, UINT, UINT, INT);
using Draw = void(STDMETHODCALLTYPE*)(ID3D11DeviceContext*, UINT, UINT);

int draws = 0;
DrawIndexed realDrawIndexed = nullptr;
Draw realDraw = nullptr;

void STDMETHODCALLTYPE countedDrawIndexed(ID3D11DeviceContext* self, UINT count, UINT first, INT base) {
    ++draws;
    realDrawIndexed(self, count, first, base);
}

void STDMETHODCALLTYPE countedDraw(ID3D11DeviceContext* self, UINT count, UINT first) {
    ++draws;
    realDraw(self, count, first);
}

void write(void** table, DrawIndexed drawIndexed, Draw draw) {
    DWORD protection = 0;
    if (!VirtualProtect(table, (kDraw + 1) * sizeof *table, PAGE_READWRITE, &protection)) return;
    table[kDrawIndexed] = reinterpret_cast<void*>(drawIndexed);
    table[kDraw] = reinterpret_cast<void*>(draw);
    VirtualProtect(table, (kDraw + 1) * sizeof *table, protection, &protection);
}

}  // namespace

DrawCalls::DrawCalls(ID3D11DeviceContext* context) : table(*reinterpret_cast<void***>(context)) {
    draws = 0;
    realDrawIndexed = reinterpret_cast<DrawIndexed>(table[kDrawIndexed]);
    realDraw = reinterpret_cast<Draw>(table[kDraw]);
    write(table, &countedDrawIndexed, &countedDraw);
}

DrawCalls::~DrawCalls() { write(table, realDrawIndexed, realDraw); }

int DrawCalls::count() const { return draws; }

}  // namespace varnelo
