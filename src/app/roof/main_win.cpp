// Entry point of varnelo.exe.
#include <windows.h>

#include <objbase.h>

#include "app/roof/command_line.h"
#include "app/roof/single_instance_win.h"
#include "app/roof/varnelo_win.h"
#include "index/index_service.h"
#include "index/volume_source_win.h"
#include "platform/com_apartment.h"

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR commandLine, int) {
    using namespace varnelo;
    const ComApartment apartment(ComApartment::Kind::Single);
    SetProcessDpiAwarenessContext(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2);

    const CommandLine switches = parseCommandLine(commandLine ? commandLine : L"");

    // A helper run does its one job beside the instance that raised it.
    if (switches.ntfsScan) {
        WindowsVolumeSource volumes;
        return scanAndSave(volumes) ? 0 : 1;
    }

    // A second instance ends at once and leaves no trace.
    const SingleInstance only(L"Local\\VarneloSingleInstanceMutex");
    if (!only.isFirst()) return 0;

    return Varnelo::instance().run(instance, switches.windowed);
}
