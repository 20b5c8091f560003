#pragma once

#include <windows.h>

namespace varnelo::test {

// Leads this program's own calls of a function of the system to one of a test while it lives. The place is
// the pointer that such calls go through, `__imp_` and the function's name: a test declares it. One at a time
// for a place; no other thread may be about to call.
class ImportPatch {
public:
    template <class Function>
    ImportPatch(void*& importPlace, Function* replacement) : place(importPlace), original(importPlace) {
        write(reinterpret_cast<void*>(replacement));
    }
    ImportPatch(const ImportPatch&) = delete;
    ImportPatch& operator=(const ImportPatch&) = delete;
    ~ImportPatch() { write(original); }

    void* real() const { return original; }

private:
    void write(void* function) {
        DWORD before = 0;
        VirtualProtect(&place, sizeof place, PAGE_READWRITE, &before);
        place = function;
        VirtualProtect(&place, sizeof place, before, &before);
    }

    void*& place;
    void* const original;
};

}  // namespace varnelo::test
