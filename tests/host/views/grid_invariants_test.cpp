// Whatever the user and the desktop do, in whatever order, the grid stays in one piece.

#include <cmath>
#include <random>

#include "host/views/grid_test.h"

namespace varnelo {
namespace {

class GridInvariantsTest : public GridTest {
protected:
    std::mt19937 random{1};

    int upTo(int below) { return static_cast<int>(random() % static_cast<unsigned>(below)); }
    float place(float from, float to) {
        return from + (to - from) * static_cast<float>(random() % 10000) / 10000;
    }
    std::optional<GroupKey> anyGroup() {
        switch (upTo(5)) {
            case 0:
                return std::nullopt;
            case 1:
                return special(SpecialGroup::Downloads);
            default:
                return cluster(L"G" + std::to_wstring(upTo(6)));
        }
    }
    FileEntry anyShown() {
        return grid.cells.empty() ? item(L"x") : grid.cells[random() % grid.cells.size()].entry;
    }

    void changeSomething() {
        switch (upTo(12)) {
            case 0: {
                EntryList list;
                for (int i = upTo(60); i > 0; --i)
                    list.entries.push_back(item(L"n" + std::to_wstring(i), anyGroup(), i));
                return grid.setEntries(std::move(list), static_cast<TabKind>(upTo(6)));
            }
            case 1:
                return givenSource(static_cast<std::uint64_t>(upTo(3) == 0 ? 0 : upTo(3000)));
            case 2:
            case 3:
            case 4:
                return grid.addEntry(item(L"a" + std::to_wstring(random()), anyGroup(), upTo(1000)));
            case 5:
            case 6:
                return grid.removeEntry(anyShown());
            case 7: {
                FileEntry entry = anyShown();
                entry.group = anyGroup();
                return grid.updateEntry(entry);
            }
            case 8:
                return grid.renameEntry(anyShown());
            case 9: {
                ViewRect rect{place(-50, 200), place(-50, 200), place(0, 900), place(0, 900)};
                return grid.setViewRect(rect, upTo(2) == 0, upTo(2));
            }
            case 10: {
                const ViewRect rect{0, 0, place(0, 900), place(0, 900)};
                ViewRect result;
                return grid.setViewRect(rect, upTo(2) == 0, upTo(2), result);
            }
            default:
                settings.iconScale = 0.5f + 0.25f * static_cast<float>(upTo(7));
                settings.hoverMode = upTo(2);
                grid.listMode.listEnabled = upTo(2) == 0;
                grid.selectable = upTo(4) != 0;
                if (!grid.virtualMode && upTo(4) == 0) grid.layoutMode = LayoutMode::List;
        }
    }

    void useHands() {
        const float x = place(-50, 900);
        const float y = place(-50, 900);
        input.ctrlDown = upTo(4) == 0;
        switch (upTo(12)) {
            case 0:
            case 1:
                return press(x, y);
            case 2:
            case 3:
            case 4:
                return drag(x, y);
            case 5:
            case 6:
                return release();
            case 7:
                return hover(x, y);
            case 8:
                cursorTo(x, y);
                return grid.onMouseWheel(static_cast<float>(upTo(7) - 3) * 120);
            case 9:
                return grid.onDoubleClick();
            case 10:
                return grid.onRightClick();
            default:
                return key(upTo(256));
        }
    }

    void expectIntact() {
        std::vector<int> groupsOf(grid.cells.size(), 0);
        for (const IconGroup& g : grid.groups) {
            EXPECT_FALSE(g.cells.empty());
            EXPECT_TRUE(std::isfinite(g.y) && std::isfinite(g.height));
            for (const std::int32_t i : g.cells) {
                ASSERT_GE(i, 0);
                ASSERT_LT(static_cast<std::size_t>(i), grid.cells.size());
                ++groupsOf[static_cast<std::size_t>(i)];
            }
        }
        bool dragged = false;
        for (std::size_t i = 0; i < grid.cells.size(); ++i) {
            const IconCell& c = grid.cells[i];
            ASSERT_EQ(groupsOf[i], c.entry.group && !grid.virtualMode ? 1 : 0);
            ASSERT_TRUE(std::isfinite(c.x) && std::isfinite(c.y) && std::isfinite(c.targetX) &&
                        std::isfinite(c.targetY));
            dragged |= c.dragged;
        }
        EXPECT_EQ(grid.cellDragActive, dragged);
        const int count = static_cast<int>(grid.cells.size());
        EXPECT_LT(grid.hoverIndex, count);
        EXPECT_LT(grid.pressedIndex, count);
        EXPECT_LT(grid.hoverGroup, static_cast<int>(grid.groups.size()));
        EXPECT_GE(grid.columns, 1);
        if (grid.lasso.active) {
            EXPECT_EQ(grid.lasso.wasSelected.size(), grid.cells.size());
        }
        if (grid.virtualMode) {
            EXPECT_LE(grid.cells.size(), grid.windowCount);
        }
        EXPECT_TRUE(std::isfinite(grid.scrollY));
    }
};

TEST_F(GridInvariantsTest, AnyStreamOfEventsLeavesTheGridIntact) {
    givenPane(700, 500);
    for (int step = 0; step < 20000; ++step) {
        if (upTo(8) == 0) {
            changeSomething();
        } else {
            useHands();
        }
        if (upTo(2) == 0) frame(place(0, 0.1f));
        if (upTo(50) == 0) {
            release();
            frames(3);
            const float most = std::max(grid.contentHeight - visibleHeight(grid), 0.0f);
            EXPECT_GE(grid.scrollY, 0);
            // In groups the content shrinks behind the clamp of the same frame.
            if (grid.layoutMode != LayoutMode::Grouped) {
                EXPECT_LE(grid.scrollY, most) << step;
            }
        }
        clock.unixTime += upTo(100000);
        expectIntact();
        if (HasFailure()) FAIL() << "at step " << step;
    }
}

TEST_F(GridInvariantsTest, EveryPaneComesToRest) {
    for (int round = 0; round < 40; ++round) {
        givenPane(place(0, 900), place(0, 900));
        for (int step = 0; step < 40; ++step) {
            changeSomething();
            useHands();
        }
        release();
        hover(-100, -100);
        EXPECT_GE(settle(), 0) << round;
        EXPECT_FALSE(frame());
    }
}

}  // namespace
}  // namespace varnelo
