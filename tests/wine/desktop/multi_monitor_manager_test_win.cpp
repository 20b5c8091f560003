#include "desktop/multi_monitor_manager_win.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/logger.h"

namespace varnelo {
namespace {

MonitorInfo monitor(const wchar_t* name, LONG left, bool primary = false) {
    MonitorInfo info;
    info.deviceName = name;
    info.monitorRect = {left, 0, left + 100, 100};
    info.primary = primary;
    return info;
}

std::vector<std::wstring> sortedNames(std::vector<MonitorInfo> monitors) {
    MultiMonitorManager::sort(monitors);
    std::vector<std::wstring> names;
    for (const MonitorInfo& info : monitors) names.push_back(info.deviceName);
    return names;
}

TEST(MultiMonitorManagerTest, ThePrimaryComesFirstAndTheOthersFromLeftToRight) {
    EXPECT_THAT(sortedNames({monitor(L"right", 100), monitor(L"middle", 0, true), monitor(L"left", -100)}),
                testing::ElementsAre(L"middle", L"left", L"right"));
}

TEST(MultiMonitorManagerTest, MonitorsAtTheSameEdgeKeepTheirOrder) {
    EXPECT_THAT(sortedNames({monitor(L"b", 7), monitor(L"a", 7)}), testing::ElementsAre(L"b", L"a"));
}

TEST(MultiMonitorManagerTest, ARefreshFindsAPrimaryMonitorAndLogsEachOne) {
    const std::size_t before = Logger::instance().lines().size();
    MultiMonitorManager manager;
    EXPECT_EQ(manager.primaryMonitor(), nullptr);
    manager.refresh();
    ASSERT_NE(manager.primaryMonitor(), nullptr);
    EXPECT_TRUE(manager.primaryMonitor()->primary);
    EXPECT_GE(manager.primaryMonitor()->dpi, 96u);

    const std::vector<std::wstring> lines = Logger::instance().lines();
    ASSERT_EQ(lines.size(), before + 1 + manager.monitors().size());
    EXPECT_THAT(lines[before],
                testing::HasSubstr(L"MultiMonitorManager: " + std::to_wstring(manager.monitors().size()) +
                                   L" monitor(s) detected"));
    EXPECT_THAT(lines[before + 1], testing::HasSubstr(L"  [0] "));
    EXPECT_THAT(lines[before + 1], testing::HasSubstr(L"(primary)  monitor=("));
}

TEST(MultiMonitorManagerTest, ASecondRefreshReplacesTheList) {
    MultiMonitorManager manager;
    manager.refresh();
    const std::size_t count = manager.monitors().size();
    manager.refresh();
    EXPECT_EQ(manager.monitors().size(), count);
}

}  // namespace
}  // namespace varnelo
