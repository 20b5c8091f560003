// One running instance a session.
#pragma once

#include <windows.h>

#include "platform/handles_win.h"

namespace varnelo {

// Holds a named mutex for as long as it lives. A mutex that cannot be made is tolerated: the caller counts as
// first.
class SingleInstance {
public:
    explicit SingleInstance(const wchar_t* name) : mutex(CreateMutexW(nullptr, TRUE, name)) {
        if (mutex && GetLastError() == ERROR_ALREADY_EXISTS) {
            mutex.reset();
            first = false;
        }
    }
    ~SingleInstance() {
        if (mutex) ReleaseMutex(mutex.get());
    }
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    bool isFirst() const { return first; }

private:
    MutexHandle mutex;
    bool first = true;
};

}  // namespace varnelo
