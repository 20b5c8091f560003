#include "app/crash_guard.h"

namespace varnelo {

void installCrashGuard() {}

void installThreadCrashGuard() {}

bool onCrashedThread() { return false; }

}  // namespace varnelo
