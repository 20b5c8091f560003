#include <gtest/gtest.h>

#include "host/index/index_world.h"

namespace varnelo {
namespace {

using Ids = std::vector<std::uint32_t>;

class SwapContentTest : public ::testing::Test, protected IndexWorld {};

TEST_F(SwapContentTest, WhetherListsCanBeReliedUponGoesWithThem) {
    file(L"xabcd");
    // The file is no longer in the lists of all its threes, so that of the first one counts.
    index.removePostings(0, L"bcd");
    ASSERT_EQ(index.searchNames(L"abcd"), Ids{0});

    NTFSIndex other;
    other.addRecord({30, kRootFrn, 0, 0, 0, 0}, L"of the other");
    index.swapContent(other);
    EXPECT_EQ(other.searchNames(L"abcd"), Ids{0});
    EXPECT_EQ(index.searchNames(L"other"), Ids{0});
    index.swapContent(other);
    EXPECT_EQ(index.searchNames(L"abcd"), Ids{0});
    EXPECT_EQ(other.searchNames(L"other"), Ids{0});
}

}  // namespace
}  // namespace varnelo
