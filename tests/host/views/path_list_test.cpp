#include "views/path_list.h"

#include <gtest/gtest.h>

namespace varnelo {
namespace {

// All of the list, its two zeros included, as far as the shell reads it.
std::wstring listOf(std::initializer_list<std::wstring_view> paths) {
    PathList list;
    for (const std::wstring_view path : paths) list.add(path);
    const wchar_t* end = list.text();
    while (*end != L'\0') end += std::wstring_view(end).size() + 1;
    return std::wstring(list.text(), end + 1);
}

TEST(PathList, IsEmptyAtFirst) {
    EXPECT_TRUE(PathList().empty());
    EXPECT_EQ(PathList().text()[0], L'\0');
}

TEST(PathList, EndsEachPathAndTheList) {
    using namespace std::literals;
    EXPECT_EQ(listOf({L"C:\\a b.txt"}), L"C:\\a b.txt\0\0"sv);
    EXPECT_EQ(listOf({L"C:\\a", L"\\\\server\\share\\\u65E5\u672C"}),
              L"C:\\a\0\\\\server\\share\\\u65E5\u672C\0\0"sv);
}

TEST(PathList, LeavesOutWhatIsNoWholePath) {
    for (const wchar_t* path : {L"", L"a.txt", L"C:", L"C:a.txt", L"\\a.txt", L"\\\\", L"..\\a"}) {
        PathList list;
        list.add(path);
        EXPECT_TRUE(list.empty()) << path;
    }
}

TEST(PathList, LeavesOutWhatMeansMoreThanOneFile) {
    using namespace std::literals;
    for (const std::wstring_view path : {L"C:\\*"sv, L"C:\\a?.txt"sv, L"C:\\*.*"sv, L"C:\\a\0C:\\b"sv}) {
        PathList list;
        list.add(path);
        EXPECT_TRUE(list.empty()) << path.size();
    }
}

}  // namespace
}  // namespace varnelo
