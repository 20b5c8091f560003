#include "views/icon_load_queue.h"

#include <atomic>
#include <thread>
#include <utility>

#include "host/views/grid_test.h"

namespace varnelo {
namespace {

using Delivery = IconLoadQueue::Delivery;

class IconLoadTest : public ::testing::Test {
protected:
    IconLoadQueue queue;
    std::vector<IconCell> cells{5};
};

TEST_F(IconLoadTest, ATextureReachesItsCellAndResetsItsScale) {
    const auto load = queue.begin(2);
    const auto texture = someTexture();
    cells[2].scale = 1.2f;
    queue.finish(load, texture);
    EXPECT_EQ(cells[2].texture, nullptr);  // not before it is delivered
    EXPECT_EQ(queue.deliver(cells), Delivery::Settled);
    EXPECT_EQ(cells[2].texture, texture);
    EXPECT_EQ(cells[2].scale, 1);
}

TEST_F(IconLoadTest, ALoadWithoutAPictureLeavesTheCellAsItIs) {
    const auto texture = someTexture();
    cells[2].texture = texture;
    cells[2].scale = 1.1f;
    queue.finish(queue.begin(2), nullptr);
    queue.deliver(cells);
    EXPECT_EQ(cells[2].texture, texture);
    EXPECT_EQ(cells[2].scale, 1.1f);
}

TEST_F(IconLoadTest, AnIndexThatIsGoneDropsTheTexture) {
    const auto texture = someTexture();
    queue.finish(queue.begin(4), texture);
    queue.finish(queue.begin(-1), texture);
    cells.resize(3);
    queue.deliver(cells);
    EXPECT_EQ(texture.use_count(), 1);
}

TEST_F(IconLoadTest, WhatWasBegunBeforeTheDeviceWentIsDropped) {
    const auto early = queue.begin(1);
    const auto finished = queue.begin(2);
    const auto texture = someTexture();
    queue.finish(finished, texture);
    queue.dropOpenLoads();
    const auto late = queue.begin(3);
    const auto other = someTexture();
    queue.finish(late, other);
    queue.deliver(cells);
    queue.finish(early, texture);
    queue.deliver(cells);
    EXPECT_EQ(texture.use_count(), 1);
    EXPECT_EQ(cells[3].texture, other);
}

TEST_F(IconLoadTest, TheOldTextureIsReleased) {
    const auto old = someTexture();
    cells[0].texture = old;
    queue.finish(queue.begin(0), someTexture());
    queue.deliver(cells);
    EXPECT_EQ(old.use_count(), 1);
}

TEST_F(IconLoadTest, AResultOlderThanAShiftLandsOnTheCellThatTookTheIndexAndSaysSo) {
    const auto load = queue.begin(1);
    cells.erase(cells.begin());
    queue.cellsShifted();
    const auto texture = someTexture();
    queue.finish(load, texture);
    EXPECT_EQ(queue.deliver(cells), Delivery::Misplaced);
    EXPECT_EQ(cells[1].texture, texture);
    EXPECT_EQ(queue.deliver(cells), Delivery::Settled);  // told once
}

TEST_F(IconLoadTest, MisplacedIconsAreToldWhenTheLastOpenLoadHasComeIn) {
    const auto first = queue.begin(0);
    const auto second = queue.begin(1);
    queue.cellsShifted();
    queue.finish(first, someTexture());
    EXPECT_EQ(queue.deliver(cells), Delivery::Settled);
    queue.finish(second, nullptr);
    EXPECT_EQ(queue.deliver(cells), Delivery::Misplaced);
}

TEST_F(IconLoadTest, AMisplacedIconIsToldWhateverComesInBesideIt) {
    const auto old = queue.begin(0);
    queue.cellsShifted();
    const auto current = queue.begin(1);
    queue.finish(old, someTexture());
    queue.finish(current, someTexture());
    EXPECT_EQ(queue.deliver(cells), Delivery::Misplaced);
}

class GridIconTest : public GridTest {
protected:
    void finishAll(const std::vector<IconLoadQueue::Load>& loads,
                   const std::vector<std::shared_ptr<IconTexture>>& textures) {
        for (std::size_t i = 0; i < loads.size(); ++i) grid.finishIconLoad(loads[i], textures[i]);
    }
};

TEST_F(GridIconTest, ACellRemovedWhileItsLoadRunsLeavesEveryIconToBeAskedForAgain) {
    givenItems({L"a", L"b", L"c"});
    std::vector<IconLoadQueue::Load> loads;
    std::vector<std::shared_ptr<IconTexture>> textures;
    for (int i = 0; i < 3; ++i) {
        loads.push_back(grid.beginIconLoad(i));
        textures.push_back(someTexture());
    }
    grid.removeEntry(cell(L"a").entry);
    grid.asked.clear();
    finishAll(loads, textures);
    frame();
    EXPECT_EQ(cell(L"b").texture, textures[0]);  // the one that took the index
    EXPECT_EQ(textures[2].use_count(), 1);       // out of range
    EXPECT_EQ(grid.asked, (std::vector<int>{0, 1}));
}

TEST_F(GridIconTest, AListReplacedWhileALoadRunsIsAskedForItsIconsAgain) {
    givenItems({L"a"});
    const auto load = grid.beginIconLoad(0);
    givenItems({L"b"});
    grid.asked.clear();
    grid.finishIconLoad(load, someTexture());
    frame();
    EXPECT_EQ(grid.asked, (std::vector<int>{0}));
}

TEST_F(GridIconTest, RowsSortedWhileALoadRunsLeaveEveryIconToBeAskedForAgain) {
    givenPane(544, 400);
    givenItems({L"b", L"a"});
    grid.layoutMode = LayoutMode::List;
    settle();
    const auto load = grid.beginIconLoad(0);
    click(50, 5);  // the header of the name column
    ASSERT_EQ(cellNames(), (Words{L"a", L"b"}));
    grid.asked.clear();
    grid.finishIconLoad(load, someTexture());
    frame();
    EXPECT_EQ(grid.asked, (std::vector<int>{0, 1}));
}

TEST_F(GridIconTest, AWindowMovedWhileALoadRunsIsAskedForItsIconsAgain) {
    givenPane(4 * kCellWidth + 30, 250);
    givenSource(1000);
    const auto load = grid.beginIconLoad(0);
    grid.scrollY = 5000;
    frame();
    grid.asked.clear();
    grid.finishIconLoad(load, someTexture());
    frame();
    EXPECT_EQ(grid.asked.size(), grid.cells.size());
}

TEST_F(GridIconTest, IconsThatComeInTimeAreNotAskedForAgain) {
    givenItems({L"a", L"b"});
    grid.asked.clear();
    finishAll({grid.beginIconLoad(0), grid.beginIconLoad(1)}, {someTexture(), someTexture()});
    grid.addEntry(item(L"c"));  // shifts nobody
    grid.asked.clear();
    frame();
    EXPECT_NE(cell(L"b").texture, nullptr);
    EXPECT_TRUE(grid.asked.empty());
}

TEST_F(GridIconTest, EveryRowOfAWindowIsAskedForItsIconOnce) {
    class BeginningGrid final : public IconGridManager {
    public:
        using IconGridManager::IconGridManager;
        std::vector<IconLoadQueue::Load> begun;
        void loadIcon(int index) override { begun.push_back(beginIconLoad(index)); }
        bool forwardShellMenu() override { return false; }
        std::size_t finishAll() {
            for (const IconLoadQueue::Load& load : begun) finishIconLoad(load, someTexture());
            return std::exchange(begun, {}).size();
        }
    };
    BeginningGrid pane({input, clock, shell, settings, language, nullptr}, TabKind::Desktop);
    ViewRect rect{0, 0, 4 * kCellWidth + 30, 250};
    pane.setViewRect(rect, false, 0);
    pane.setVirtualSource(1000,
                          [this](std::uint64_t first, std::uint64_t count) { return rows(first, count); });
    pane.update();  // the window stays while the icons load
    EXPECT_EQ(pane.finishAll(), pane.cells.size());
    pane.update();
    EXPECT_EQ(pane.finishAll(), 0u);
    pane.scrollY = 5000;
    pane.update();
    EXPECT_EQ(pane.finishAll(), pane.cells.size());
    pane.update();
    EXPECT_EQ(pane.finishAll(), 0u);
}

TEST_F(GridIconTest, AllCellsHaveTheirOwnIconAtLastHoweverTheListChanges) {
    givenPane(600, 400);
    // The texture of an item, for ever.
    std::map<std::wstring, std::shared_ptr<IconTexture>> icons;
    std::vector<std::pair<IconLoadQueue::Load, std::shared_ptr<IconTexture>>> running;
    std::uint32_t seed = 5;
    const auto next = [&seed](std::size_t below) { return (seed = seed * 1664525u + 1013904223u) % below; };
    const auto startAsked = [&] {
        for (const int index : grid.asked) {
            if (static_cast<std::size_t>(index) >= grid.cells.size()) continue;
            auto& icon = icons[nameOf(grid.cells[static_cast<std::size_t>(index)].entry.pidl)];
            if (!icon) icon = someTexture();
            running.emplace_back(grid.beginIconLoad(index), icon);
        }
        grid.asked.clear();
    };
    const auto finishOne = [&] {
        const auto i = static_cast<std::ptrdiff_t>(next(running.size()));
        grid.finishIconLoad(running[static_cast<std::size_t>(i)].first,
                            running[static_cast<std::size_t>(i)].second);
        running.erase(running.begin() + i);
    };
    for (int step = 0; step < 500; ++step) {
        if (next(3) == 0) grid.addEntry(item(L"n" + std::to_wstring(step)));
        startAsked();
        if (next(4) == 0 && !grid.cells.empty()) grid.removeEntry(grid.cells[next(grid.cells.size())].entry);
        if (!running.empty()) finishOne();
        frame();
        startAsked();
    }
    for (int i = 0; i < 10000 && !running.empty(); ++i) {
        finishOne();
        frame();
        startAsked();
    }
    for (const IconCell& c : grid.cells) EXPECT_EQ(c.texture, icons[nameOf(c.entry.pidl)]);
}

// What the sanitizers watch: seven workers finish loads while the list changes and frames are drawn.
TEST_F(GridIconTest, WorkersAndFramesDoNotMeet) {
    class LoadingGrid final : public IconGridManager {
    public:
        using IconGridManager::IconGridManager;
        ~LoadingGrid() override { stopIconWorker(); }
        std::atomic<int> finished{0};
        void loadIcon(int index) override {
            iconWorker.enqueue(L"", [this, load = beginIconLoad(index)] {
                finishIconLoad(load, someTexture());
                ++finished;
            });
        }
        bool forwardShellMenu() override { return false; }
    };
    LoadingGrid busy({input, clock, shell, settings, language, nullptr}, TabKind::Desktop);
    ViewRect rect{0, 0, 600, 400};
    busy.setViewRect(rect, false, 0);
    input.deltaTime = kFrame;
    for (int round = 0; round < 20; ++round) {
        EntryList list;
        for (int i = 0; i < 60; ++i) list.entries.push_back(item(std::to_wstring(i), cluster(L"G"), i));
        busy.setEntries(std::move(list), TabKind::Desktop);
        for (int i = 0; i < 20; ++i) {
            busy.update();
            busy.removeEntry(busy.cells.back().entry);
            busy.addEntry(item(L"x" + std::to_wstring(round * 100 + i), cluster(L"H"), i));
        }
    }
    busy.stopIconWorker();
    busy.update();
    for (const IconCell& c : busy.cells) EXPECT_NE(c.texture, nullptr);
    EXPECT_GE(busy.finished, 20 * 60);
}

}  // namespace
}  // namespace varnelo
