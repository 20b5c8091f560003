// The monitors of the session, in the order that gives each its index.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace varnelo {

struct MonitorInfo {
    HMONITOR handle = nullptr;
    RECT monitorRect{};  // whole monitor, virtual-screen pixels
    RECT workRect{};     // without the taskbar, virtual-screen pixels
    UINT dpi = 96;       // effective horizontal; 96 when the system does not say
    bool primary = false;
    std::wstring deviceName;
};

// Main thread only. A monitor's index is its place in `monitors` and nothing else.
class MultiMonitorManager {
public:
    // Rebuilds the list and logs it. A monitor that cannot be asked is left out.
    void refresh();

    // The first primary record, or the first of all; null when no monitor was found.
    const MonitorInfo* primaryMonitor() const;

    const std::vector<MonitorInfo>& monitors() const { return list; }

    // Primary monitors first, then by left edge; equals keep their order.
    static void sort(std::vector<MonitorInfo>& monitors);

private:
    std::vector<MonitorInfo> list;
};

}  // namespace varnelo
