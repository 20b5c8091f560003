#include "views/label_fit.h"

#include <gtest/gtest.h>

#include <vector>

namespace varnelo {
namespace {

// Every unit is one cluster, 10 pixels wide; a line may break after a space.
std::vector<TextCluster> clustersOf(std::wstring_view text) {
    std::vector<TextCluster> clusters;
    for (const wchar_t unit : text) {
        TextCluster cluster;
        cluster.length = 1;
        cluster.newline = unit == L'\n';
        cluster.space = unit == L' ' || cluster.newline;
        cluster.breakAfter = cluster.space;
        cluster.width = cluster.newline ? 0.0F : 10.0F;
        clusters.push_back(cluster);
    }
    return clusters;
}

std::wstring fit(std::wstring_view text, float width, std::size_t lines = 2) {
    return fitToLines(text, clustersOf(text), width, lines, 10);
}

TEST(LabelFit, ATextThatFitsStaysAsItIs) { EXPECT_EQ(fit(L"notes", 50), L"notes"); }

TEST(LabelFit, ALineBreaksAtASpaceWhichGoesAway) { EXPECT_EQ(fit(L"my long notes", 80), L"my long\nnotes"); }

TEST(LabelFit, AWordThatDoesNotFitMovesToTheNextLineWhole) {
    EXPECT_EQ(fit(L"my notes", 50), L"my\nnotes");
    EXPECT_EQ(fit(L"a b notes", 50), L"a b\nnotes");
}

TEST(LabelFit, ASpaceMayHangOverTheEdge) { EXPECT_EQ(fit(L"abcde fghij", 50), L"abcde\nfghij"); }

TEST(LabelFit, AWordWiderThanALineIsBrokenInside) { EXPECT_EQ(fit(L"abcdefgh", 50), L"abcde\nfgh"); }

TEST(LabelFit, AnOverlongTextEndsInDotsOnItsLastLine) {
    EXPECT_EQ(fit(std::wstring(200, L'x'), 50), L"xxxxx\nxxxx\u2026");
}

TEST(LabelFit, TheLastLineIsCutBetweenCharactersNotWords) {
    EXPECT_EQ(fit(L"abcde fg hijklm", 50), L"abcde\nfg h\u2026");
}

TEST(LabelFit, ACutLeavesNoSpaceBeforeTheDots) {
    EXPECT_EQ(fit(L"abcde fgh ijklm", 50), L"abcde\nfgh\u2026");
}

TEST(LabelFit, ATextThatFillsTheLastLineHasNoDots) { EXPECT_EQ(fit(L"abcde fghij", 50), L"abcde\nfghij"); }

TEST(LabelFit, ANewlineInTheNameBreaksTheLine) { EXPECT_EQ(fit(L"a\nb", 50), L"a\nb"); }

TEST(LabelFit, AnEmptyLineStaysEmpty) {
    EXPECT_EQ(fit(L"a\n\nb", 50, 3), L"a\n\nb");
    EXPECT_EQ(fit(L"\nab", 50), L"\nab");
}

TEST(LabelFit, TheThirdLineOfANameWithNewlinesBecomesDots) { EXPECT_EQ(fit(L"a\nb\nc", 50), L"a\nb\u2026"); }

TEST(LabelFit, AClusterIsNeverDivided) {
    const std::wstring text = L"ab\xD83D\xDE00\xD83D\xDE00";
    const std::vector<TextCluster> clusters{{1, 10}, {1, 10}, {2, 20}, {2, 20}};
    EXPECT_EQ(fitToLines(text, clusters, 30, 1, 10), L"ab\u2026");
    EXPECT_EQ(fitToLines(text, clusters, 40, 2, 10), L"ab\xD83D\xDE00\n\xD83D\xDE00");
}

TEST(LabelFit, ALineTooNarrowForOneClusterStillMovesOn) {
    EXPECT_EQ(fit(L"abc", 5), L"a\n\u2026");
    EXPECT_EQ(fit(L"ab", 5), L"a\nb");
}

TEST(LabelFit, AnEmptyTextGivesNothing) { EXPECT_EQ(fit(L"", 50), L""); }

TEST(LabelFit, ClustersThatReachBeyondTheTextDoNotOverrun) {
    const std::vector<TextCluster> clusters{{3, 10}, {3, 10}, {3, 10}};
    EXPECT_EQ(fitToLines(L"abcd", clusters, 10, 3, 10), L"abc\nd\n");
}

}  // namespace
}  // namespace varnelo
