#include "desktop/multi_monitor_manager_win.h"

#include <shellscalingapi.h>

#include <algorithm>

#include "app/logger.h"
#include "platform/text.h"

namespace varnelo {

namespace {

BOOL CALLBACK addMonitor(HMONITOR handle, HDC, LPRECT, LPARAM parameter) {
    MONITORINFOEXW info{};
    info.cbSize = sizeof info;
    if (!GetMonitorInfoW(handle, &info)) return TRUE;

    MonitorInfo monitor;
    monitor.handle = handle;
    monitor.monitorRect = info.rcMonitor;
    monitor.workRect = info.rcWork;
    monitor.primary = (info.dwFlags & MONITORINFOF_PRIMARY) != 0;
    monitor.deviceName = info.szDevice;
    UINT horizontal = 0;
    UINT vertical = 0;
    if (SUCCEEDED(GetDpiForMonitor(handle, MDT_EFFECTIVE_DPI, &horizontal, &vertical)))
        monitor.dpi = horizontal;
    reinterpret_cast<std::vector<MonitorInfo>*>(parameter)->push_back(std::move(monitor));
    return TRUE;
}

int asInt(LONG value) { return static_cast<int>(value); }

void logMonitor(unsigned index, const MonitorInfo& m) {
    const RECT& whole = m.monitorRect;
    const RECT& work = m.workRect;
    logInfo(formatText(L"  [%u] %ls %ls  monitor=(%d,%d,%d,%d)  work=(%d,%d,%d,%d)  dpi=%u", index,
                       m.deviceName.c_str(), m.primary ? L"(primary)" : L"", asInt(whole.left),
                       asInt(whole.top), asInt(whole.right), asInt(whole.bottom), asInt(work.left),
                       asInt(work.top), asInt(work.right), asInt(work.bottom), m.dpi));
}

}  // namespace

void MultiMonitorManager::refresh() {
    list.clear();
    EnumDisplayMonitors(nullptr, nullptr, addMonitor, reinterpret_cast<LPARAM>(&list));
    sort(list);
    logInfo(formatText(L"MultiMonitorManager: %u monitor(s) detected", static_cast<unsigned>(list.size())));
    for (unsigned index = 0; index < list.size(); ++index) logMonitor(index, list[index]);
}

const MonitorInfo* MultiMonitorManager::primaryMonitor() const {
    for (const MonitorInfo& monitor : list) {
        if (monitor.primary) return &monitor;
    }
    return list.empty() ? nullptr : &list.front();
}

void MultiMonitorManager::sort(std::vector<MonitorInfo>& monitors) {
    std::stable_sort(monitors.begin(), monitors.end(), [](const MonitorInfo& a, const MonitorInfo& b) {
        if (a.primary != b.primary) return a.primary;
        return a.monitorRect.left < b.monitorRect.left;
    });
}

}  // namespace varnelo
