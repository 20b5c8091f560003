#include "platform/unique_handle.h"

#include <gtest/gtest.h>

#include <vector>

namespace varnelo {
namespace {

std::vector<int> closed;

struct NumberTraits {
    using Raw = int;
    static Raw invalid() { return -1; }
    static void close(Raw number) { closed.push_back(number); }
};
using Number = UniqueHandle<NumberTraits>;

class UniqueHandleTest : public testing::Test {
protected:
    void SetUp() override { closed.clear(); }
};

TEST_F(UniqueHandleTest, ClosesItsHandleOnce) {
    {
        Number handle(7);
        EXPECT_TRUE(handle);
        EXPECT_EQ(handle.get(), 7);
        const Number moved = std::move(handle);
        EXPECT_FALSE(handle);
    }
    EXPECT_EQ(closed, std::vector<int>{7});
}

TEST_F(UniqueHandleTest, NeverClosesTheInvalidValue) {
    {
        Number handle;
        EXPECT_FALSE(handle);
        handle.reset();
    }
    EXPECT_TRUE(closed.empty());
}

TEST_F(UniqueHandleTest, PutClosesWhatIsHeldBeforeItIsFilled) {
    Number handle(1);
    int* target = handle.put();
    EXPECT_EQ(closed, std::vector<int>{1});
    *target = 2;
    EXPECT_EQ(handle.get(), 2);
}

TEST_F(UniqueHandleTest, AssignmentClosesTheOldHandle) {
    Number handle(1);
    handle = Number(2);
    EXPECT_EQ(closed, std::vector<int>{1});
    EXPECT_EQ(handle.get(), 2);
}

TEST_F(UniqueHandleTest, ReleaseLeavesTheHandleToTheCaller) {
    {
        Number handle(3);
        EXPECT_EQ(handle.release(), 3);
    }
    EXPECT_TRUE(closed.empty());
}

}  // namespace
}  // namespace varnelo
