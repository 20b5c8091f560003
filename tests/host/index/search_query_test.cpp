#include "index/search_query.h"

#include <gtest/gtest.h>

namespace varnelo {
namespace {

using Texts = std::vector<std::wstring>;

TEST(SearchQuery, FiveUnitsMakeItPatterns) {
    for (const wchar_t* query : {L"*", L"a?", L"a;b", L"a|b", L"a,b"}) EXPECT_TRUE(hasPatterns(query));
    for (const wchar_t* query : {L"", L"a b", L"a.b", L"a:b", L"[a]"}) EXPECT_FALSE(hasPatterns(query));
}

TEST(SearchQuery, PatternsStandBetweenSeparators) {
    EXPECT_EQ(splitPatterns(L"a;b|c,d"), (Texts{L"a", L"b", L"c", L"d"}));
    EXPECT_EQ(splitPatterns(L"only*"), Texts{L"only*"});
    EXPECT_EQ(splitPatterns(L"  A b  ; *.TXT"), (Texts{L"a b", L"*.txt"}));
    EXPECT_EQ(splitPatterns(L";;a;; ;"), Texts{L"a"});
    EXPECT_EQ(splitPatterns(L" , ,  "), Texts{});
    EXPECT_EQ(splitPatterns(L"\u00C4*"), Texts{L"\u00C4*"});
}

TEST(SearchQuery, AnExtensionPatternIsAStarADotAndNoMoreWildcards) {
    EXPECT_EQ(extensionsOf({L"*.txt"}), Texts{L".txt"});
    EXPECT_EQ(extensionsOf({L"*.c", L"*.tar.gz"}), (Texts{L".c", L".tar.gz"}));
    for (const wchar_t* other : {L"*.", L"*.t?t", L"*.t*", L"*.*", L"a*.txt", L".txt", L"*txt", L"**.txt"}) {
        EXPECT_EQ(extensionsOf({L"*.txt", other}), std::nullopt);
    }
}

}  // namespace
}  // namespace varnelo
