#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "support/grid_world.h"
#include "views/grid_groups.h"
#include "views/grid_hit_test.h"

namespace varnelo {

using Words = std::vector<std::wstring>;

// A pane of words and hands to use it. Places are pixels of the client area.
class GridTest : public ::testing::Test, protected GridWorld {
protected:
    static constexpr float kCellWidth = 94;  // of the standard icon of 48 pixels
    static constexpr float kCellHeight = 110;
    static constexpr float kFrame = 1.0f / 60;

    void givenPane(float width, float height, float x = 0, float y = 0) {
        ViewRect rect{x, y, width, height};
        grid.setViewRect(rect, false, 0);
    }

    // Items without a group: the pane is Flat.
    void givenItems(const Words& names) {
        EntryList list;
        for (const std::wstring& name : names) list.entries.push_back(item(name));
        grid.setEntries(std::move(list), grid.tabKind);
    }

    // Items "Name0", "Name1", ... of each group, the first the newest. The first group is the most used.
    void givenGroups(const std::vector<std::pair<std::wstring, int>>& groups) {
        EntryList list;
        std::int64_t timestamp = clock.unixTime;
        for (const auto& [name, count] : groups) {
            timestamp -= 10000000;
            for (int i = 0; i < count; ++i) {
                list.entries.push_back(item(name + std::to_wstring(i), cluster(name), timestamp - i));
            }
        }
        grid.setEntries(std::move(list), grid.tabKind);
    }

    // Items "row0", "row1", ... behind a source, in rows of a grid or of a list.
    void givenSource(std::uint64_t count) {
        grid.setVirtualSource(
            count, [this](std::uint64_t first, std::uint64_t asked) { return rows(first, asked); });
    }
    std::vector<FileEntry> rows(std::uint64_t first, std::uint64_t asked) {
        std::vector<FileEntry> entries;
        for (std::uint64_t i = first; i < first + asked; ++i)
            entries.push_back(item(L"row" + std::to_wstring(i)));
        return entries;
    }

    bool frame(float seconds = kFrame) {
        input.deltaTime = seconds;
        clock.steady += seconds;
        return grid.update();
    }
    void frames(int count) {
        for (int i = 0; i < count; ++i) frame();
    }
    // Frames until nothing moves; the number of them.
    int settle() {
        for (int i = 0; i < 10000; ++i) {
            if (!frame()) return i;
        }
        ADD_FAILURE() << "the grid never comes to rest";
        return -1;
    }

    void cursorTo(float x, float y) {
        input.cursorX = x;
        input.cursorY = y;
    }
    void press(float x, float y) {
        cursorTo(x, y);
        grid.onMouseDown();
    }
    void drag(float x, float y) {
        cursorTo(x, y);
        grid.onMouseMove(true);
    }
    void hover(float x, float y) {
        cursorTo(x, y);
        grid.onMouseMove(false);
    }
    void release() { grid.onMouseUp(); }
    void click(float x, float y) {
        press(x, y);
        release();
    }
    void clickOn(const std::wstring& name) {
        const auto [x, y] = iconOf(name);
        click(x, y);
    }
    void ctrlClickOn(const std::wstring& name) {
        input.ctrlDown = true;
        clickOn(name);
        input.ctrlDown = false;
    }
    void hoverOver(const std::wstring& name) {
        const auto [x, y] = iconOf(name);
        hover(x, y);
    }
    void key(int virtualKey) { grid.onKeyDown(virtualKey); }
    void ctrlKey(int virtualKey) {
        input.ctrlDown = true;
        grid.onKeyDown(virtualKey);
        input.ctrlDown = false;
    }
    // The keys go to this pane from now on.
    void givenActive() { IconGridManager::activeGrid = &grid; }

    int indexOf(const std::wstring& name) {
        for (std::size_t i = 0; i < grid.cells.size(); ++i) {
            if (nameOf(grid.cells[i].entry.pidl) == name) return static_cast<int>(i);
        }
        ADD_FAILURE() << "no cell of that name";
        return 0;
    }
    IconCell& cell(const std::wstring& name) { return grid.cells[static_cast<std::size_t>(indexOf(name))]; }
    IconGroup& group(const std::wstring& name) {
        for (IconGroup& each : grid.groups) {
            if (each.name == name) return each;
        }
        ADD_FAILURE() << "no group of that name";
        return grid.groups.front();
    }
    // The middle of the cell's icon, where a drag takes hold of it.
    std::pair<float, float> iconOf(const std::wstring& name) {
        const IconCell& c = cell(name);
        return {c.x + grid.cellWidth / 2, c.y + grid.iconSize / 2 - grid.scrollY};
    }
    std::pair<float, float> headerOf(const std::wstring& name) {
        return {grid.viewRect.x + 20, group(name).y + 5 - grid.scrollY};
    }
    void clickHeader(const std::wstring& name) {
        const auto [x, y] = headerOf(name);
        hover(x, y);
        frame();
        click(x, y);
    }

    Words cellNames() {
        Words names;
        for (const IconCell& c : grid.cells) names.push_back(nameOf(c.entry.pidl));
        return names;
    }
    Words groupNames() {
        Words names;
        for (const IconGroup& g : grid.groups) names.push_back(g.name);
        return names;
    }
    Words orderOf(const std::wstring& name) {
        Words names;
        for (const std::int32_t i : group(name).cells) {
            names.push_back(nameOf(grid.cells[static_cast<std::size_t>(i)].entry.pidl));
        }
        return names;
    }
    Words selectedNames() {
        Words names;
        for (const IconCell& c : grid.cells) {
            if (c.selected) names.push_back(nameOf(c.entry.pidl));
        }
        return names;
    }
    Words visibleNames() {
        Words names;
        for (const IconCell& c : grid.cells) {
            if (c.visible) names.push_back(nameOf(c.entry.pidl));
        }
        return names;
    }
};

}  // namespace varnelo
