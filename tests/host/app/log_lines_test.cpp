#include "app/log_lines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <thread>

namespace varnelo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(LogLinesTest, KeepsLinesInOrder) {
    LogLines lines;
    EXPECT_EQ(lines.first(), nullptr);
    lines.append(L"one");
    const LogLines::Node* last = lines.append(L"two");
    EXPECT_THAT(lines.copy(), ElementsAre(L"one", L"two"));
    EXPECT_EQ(LogLines::after(lines.first()), last);
    EXPECT_EQ(LogLines::after(last), nullptr);
}

TEST(LogLinesTest, ForgetsThemAndBeginsAnew) {
    LogLines lines;
    lines.append(L"one");
    lines.clear();
    EXPECT_THAT(lines.copy(), IsEmpty());
    lines.append(L"two");
    EXPECT_THAT(lines.copy(), ElementsAre(L"two"));
}

TEST(LogLinesTest, TakesABorrowedLineAmongItsOwn) {
    LogLines::Node borrowed;
    borrowed.text = L"borrowed";
    LogLines lines;
    lines.append(L"one");
    lines.appendBorrowed(borrowed);
    lines.append(L"two");
    EXPECT_THAT(lines.copy(), ElementsAre(L"one", L"borrowed", L"two"));
}

TEST(LogLinesTest, LosesNothingWhenThreadsAppendAtOnceAndOneReads) {
    constexpr int kThreads = 4;
    constexpr int kLines = 2000;
    LogLines lines;
    std::vector<std::thread> writers;
    for (int writer = 0; writer < kThreads; ++writer) {
        writers.emplace_back([&lines, writer] {
            for (int i = 0; i < kLines; ++i) {
                lines.append(std::to_wstring(writer) + L" " + std::to_wstring(i));
            }
        });
    }
    for (int i = 0; i < 20; ++i) {
        for (const auto& line : lines.copy()) ASSERT_NE(line.find(L' '), std::wstring::npos);
    }
    for (auto& writer : writers) writer.join();

    const auto all = lines.copy();
    EXPECT_EQ(all.size(), static_cast<std::size_t>(kThreads * kLines));
    std::map<std::wstring, int> next;
    for (const auto& line : all) {
        const auto blank = line.find(L' ');
        EXPECT_EQ(line.substr(blank + 1), std::to_wstring(next[line.substr(0, blank)]++));
    }
}

}  // namespace
}  // namespace varnelo
