#include "app/roof/single_instance_win.h"

#include <gtest/gtest.h>

#include <optional>

#include "platform/handles_win.h"

namespace varnelo {
namespace {

constexpr const wchar_t* kName = L"Local\\VarneloSingleInstanceTest";

TEST(SingleInstanceTest, OnlyTheFirstIsFirstUntilItIsGone) {
    std::optional<SingleInstance> first(std::in_place, kName);
    EXPECT_TRUE(first->isFirst());
    {
        const SingleInstance second(kName);
        EXPECT_FALSE(second.isFirst());
    }
    EXPECT_FALSE(SingleInstance(kName).isFirst()) << "the end of the second takes nothing from the first";
    first.reset();
    EXPECT_TRUE(SingleInstance(kName).isFirst());
}

TEST(SingleInstanceTest, AMutexThatCannotBeMadeIsTolerated) {
    // The name stands for an object of another kind.
    const EventHandle event(CreateEventW(nullptr, FALSE, FALSE, kName));
    ASSERT_TRUE(event);
    EXPECT_TRUE(SingleInstance(kName).isFirst());
}

}  // namespace
}  // namespace varnelo
