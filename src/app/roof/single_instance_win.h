// One running instance a session.
#pragma once

#include <windows.h>

namespace varnelo {

// Holds a named mutex for as long as it lives. A mutex that cannot be made is tolerated: the caller counts as
// first.
class SingleInstance {
public:
    explicit SingleInstance(const wchar_t* name) : mutex(CreateMutexW(nullptr, TRUE, name)) {
        if (mutex && GetLastError() == ERROR_ALREADY_EXISTS) {
            CloseHandle(mutex);
            mutex = nullptr;
            first = false;
        }
    }
    ~SingleInstance() {
        if (!mutex) return;
        ReleaseMutex(mutex);
        CloseHandle(mutex);
    }
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    bool isFirst() const { return first; }

private:
    HANDLE mutex;
    bool first = true;
};

}  // namespace varnelo
