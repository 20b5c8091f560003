#include "desktop/shell_watcher_win.h"

#include <shlobj.h>

#include "app/logger.h"
#include "desktop/window_state_win.h"

namespace varnelo {

ULONG startShellWatcher(HWND window) {
    logInfo(L"Shell watcher starting");
    PIDLIST_ABSOLUTE desktop = nullptr;
    if (FAILED(SHGetSpecialFolderLocation(nullptr, CSIDL_DESKTOP, &desktop)) || !desktop) {
        logError(L"Shell watcher: failed to get desktop PIDL");
        return 0;
    }
    constexpr int kSources = SHCNRF_ShellLevel | SHCNRF_NewDelivery;
    constexpr LONG kEvents = SHCNE_RENAMEITEM | SHCNE_CREATE | SHCNE_DELETE | SHCNE_MKDIR | SHCNE_RMDIR |
                             SHCNE_UPDATEDIR | SHCNE_UPDATEITEM | SHCNE_UPDATEIMAGE;
    static_assert(kSources == 0x8002 && kEvents == 0xB01F);
    const SHChangeNotifyEntry entry{desktop, TRUE};
    const ULONG id = SHChangeNotifyRegister(window, kSources, kEvents, kMessageShellChange, 1, &entry);
    ILFree(desktop);
    logInfo(L"Shell watcher registered");
    return id;
}

}  // namespace varnelo
