#include <windows.h>

#include "platform/clock.h"

namespace varnelo {

LocalTime localTime() {
    SYSTEMTIME now;
    GetLocalTime(&now);
    return {now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond, now.wMilliseconds};
}

}  // namespace varnelo
