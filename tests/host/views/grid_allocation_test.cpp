#include "host/views/grid_test.h"
#include "support/allocation_counter.h"

namespace varnelo {
namespace {

class GridAllocationTest : public GridTest {
protected:
    std::uint64_t allocationsOf(const std::function<void()>& work) {
        const std::uint64_t before = allocationsOfThisThread();
        work();
        return allocationsOfThisThread() - before;
    }
    void givenDesktop() {
        givenPane(1200, 900);
        std::vector<std::pair<std::wstring, int>> groups;
        for (int i = 0; i < 20; ++i) groups.emplace_back(L"Group" + std::to_wstring(i), 25);
        givenGroups(groups);
        settle();
    }
};

TEST_F(GridAllocationTest, TheCounterCounts) {
    static void* volatile seen = nullptr;  // or the pair could be left out
    EXPECT_EQ(allocationsOf([] {
                  seen = ::operator new(8);
                  ::operator delete(seen);
              }),
              1u);
}

TEST_F(GridAllocationTest, AFrameAtRestAsksForNoMemory) {
    givenDesktop();
    EXPECT_EQ(allocationsOf([this] { frames(10); }), 0u);
}

TEST_F(GridAllocationTest, AFrameInMotionAsksForNoMemory) {
    givenDesktop();
    clickHeader(L"Group3");
    grid.onMouseWheel(-360);
    EXPECT_EQ(allocationsOf([this] { frames(10); }), 0u);
    EXPECT_GT(grid.scrollY, 0);
}

TEST_F(GridAllocationTest, AFrameOfAFlatPaneAsksForNoMemory) {
    givenPane(1200, 900);
    givenItems(Words(500, L"x"));
    settle();
    EXPECT_EQ(allocationsOf([this] { frames(10); }), 0u);
}

TEST_F(GridAllocationTest, AFrameOfAVirtualPaneAtRestAsksForNoMemory) {
    givenPane(1200, 900);
    givenSource(100000);
    settle();
    EXPECT_EQ(allocationsOf([this] { frames(10); }), 0u);
}

}  // namespace
}  // namespace varnelo
