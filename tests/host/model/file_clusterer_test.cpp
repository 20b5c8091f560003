#include "model/file_clusterer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <initializer_list>

#include "support/desktop_items.h"

namespace varnelo {
namespace {

constexpr const wchar_t* kTrip = L"D:\\Trip";

class FileClustererTest : public testing::Test {
protected:
    DesktopFileInfo& file(const std::wstring& name, const std::wstring& folder = DesktopItems::kDesktop) {
        return desktop.add(name, folder);
    }
    DesktopFileInfo& special(const std::wstring& name) {
        DesktopFileInfo& info = desktop.add(name, L"");
        info.isSpecial = true;
        info.tokens.clear();
        info.lastWriteTime = 0;
        return info;
    }
    void build(const std::wstring& rootFolder = DesktopItems::kDesktop) {
        clusterer.build(clusters, desktop.list, rootFolder);
    }
    // The name that files of these names get, the first being the first member.
    std::wstring nameOf(std::initializer_list<const wchar_t*> fileNames) {
        DesktopItems items;
        for (const wchar_t* name : fileNames) items.add(name);
        return clusterer.clusterName(items.list);
    }
    static std::vector<DesktopFileInfo*> byAddress(std::vector<DesktopFileInfo*> infos) {
        std::sort(infos.begin(), infos.end(), std::less<>());
        return infos;
    }
    // Far away in time and place from everything else.
    static void isolate(DesktopFileInfo& info, int number) {
        info.lastWriteTime += static_cast<std::uint64_t>(number) * 3600 * 24 * 365 * kTicksPerSecond;
        info.parentFolder = L"E:\\" + std::to_wstring(number);
    }

    FileClusterer clusterer;
    DesktopItems desktop{5000};
    std::vector<FileCluster> clusters;
};

TEST_F(FileClustererTest, ItsTablesAreTheOnesTheOrganisersAsk) {
    EXPECT_EQ(clusterer.stopWords.size(), 82u);
    EXPECT_EQ(clusterer.archiveExtensions, (WordSet{L"zip", L"rar", L"7z", L"tar", L"gz"}));
    EXPECT_EQ(clusterer.timeWindowSeconds, 604800u);
}

TEST_F(FileClustererTest, TokensAndStemAreThoseOfTheTokenizer) {
    EXPECT_EQ(clusterer.tokenize(L"MyPlan_v2.txt", CamelCase::Split, LetterCase::Lower),
              (std::vector<std::wstring>{L"my", L"plan"}));
    EXPECT_EQ(clusterer.stem(L"MyPlan_v2.txt"), L"my plan");
}

// --- similarity

TEST_F(FileClustererTest, SimilarityIsTheSumOfItsFourTerms) {
    const DesktopFileInfo& plan = file(L"Lisbon Plan.txt");
    DesktopFileInfo& other = file(L"Lisbon Hotel Bill.txt");
    // One word of four, the first one, the same time, the same folder.
    EXPECT_DOUBLE_EQ(clusterer.similarity(plan, other), 0.55 * 0.25 + 0.25 + 0.1 + 0.2);
    other.parentFolder = kTrip;
    EXPECT_DOUBLE_EQ(clusterer.similarity(plan, other), 0.55 * 0.25 + 0.25 + 0.1);
    other.lastWriteTime = 0;
    EXPECT_DOUBLE_EQ(clusterer.similarity(plan, other), 0.55 * 0.25 + 0.25);
    other.tokens = {L"hotel", L"lisbon", L"bill"};
    EXPECT_DOUBLE_EQ(clusterer.similarity(plan, other), 0.55 * 0.25);
}

TEST_F(FileClustererTest, FolderAndTimeAloneMakeThreeTenths) {
    EXPECT_DOUBLE_EQ(clusterer.similarity(file(L"Apple.txt"), file(L"Pear.txt")), 0.3);
    build();
    EXPECT_TRUE(clusters.empty());
}

TEST_F(FileClustererTest, ARepeatedTokenCountsEachTimeSoTheDirectionsDiffer) {
    DesktopFileInfo& once = file(L"go.txt");
    DesktopFileInfo& twice = file(L"go go.txt", kTrip);
    twice.lastWriteTime = 0;
    EXPECT_DOUBLE_EQ(clusterer.similarity(once, twice), 0.55 * (1.0 / 2.0) + 0.25);
    EXPECT_DOUBLE_EQ(clusterer.similarity(twice, once), 0.55 * (2.0 / 1.0) + 0.25);
}

TEST_F(FileClustererTest, ItemsWithoutTokensShareNone) {
    const DesktopFileInfo& recycleBin = special(L"Recycle Bin");
    const DesktopFileInfo& network = special(L"Network");
    EXPECT_DOUBLE_EQ(clusterer.similarity(recycleBin, network), 0.1 + 0.2) << "no folder equals no folder";
    EXPECT_DOUBLE_EQ(clusterer.similarity(recycleBin, file(L"Recycle Bin.txt")), 0.0);
}

TEST_F(FileClustererTest, TheTimeWindowCountsWholeSecondsAndIncludesItsEnd) {
    DesktopFileInfo& early = file(L"Apple.txt", kTrip);
    DesktopFileInfo& late = file(L"Pear.txt");
    late.lastWriteTime = early.lastWriteTime + 604800 * kTicksPerSecond + kTicksPerSecond - 1;
    EXPECT_DOUBLE_EQ(clusterer.similarity(early, late), 0.1);
    EXPECT_DOUBLE_EQ(clusterer.similarity(late, early), 0.1);
    late.lastWriteTime += 1;
    EXPECT_DOUBLE_EQ(clusterer.similarity(early, late), 0.0);
    early.lastWriteTime = ~std::uint64_t{0};
    late.lastWriteTime = 0;
    EXPECT_DOUBLE_EQ(clusterer.similarity(early, late), 0.0);
}

TEST_F(FileClustererTest, FoldersAreComparedIgnoringTheCaseOfAsciiLetters) {
    DesktopFileInfo& one = file(L"Apple.txt", L"C:\\\u00DCbung");
    DesktopFileInfo& other = file(L"Pear.txt", L"c:\\\u00DCBUNG");
    other.lastWriteTime = 0;
    EXPECT_DOUBLE_EQ(clusterer.similarity(one, other), 0.2);
    other.parentFolder = L"c:\\\u00FCbung";
    EXPECT_DOUBLE_EQ(clusterer.similarity(one, other), 0.0);
}

// --- programs

TEST_F(FileClustererTest, ProgramsAndWhatStartsThemSeedNoCluster) {
    DesktopFileInfo& info = file(L"thing.txt");
    const auto excluded = [&](const wchar_t* extension, const wchar_t* target) {
        info.extension = extension;
        info.targetPath = target;
        return clusterer.isExcluded(info);
    };
    EXPECT_TRUE(excluded(L"exe", L""));
    EXPECT_TRUE(excluded(L"EXE", L""));
    EXPECT_TRUE(excluded(L"lnk", L"C:\\Tools\\tool.exe"));
    EXPECT_TRUE(excluded(L"lnk", L"C:\\Tools\\tool.ExE"));
    EXPECT_TRUE(excluded(L"url", L"steam://rungameid/440"));
    EXPECT_TRUE(excluded(L"url", L"Steam://RunGameID/440"));
    EXPECT_TRUE(excluded(L"url", L"x uplay://launch/635/0"));
    EXPECT_FALSE(excluded(L"", L""));
    EXPECT_FALSE(excluded(L"txt", L""));
    EXPECT_FALSE(excluded(L"lnk", L"C:\\Tools\\exe"));
    EXPECT_FALSE(excluded(L"lnk", L"C:\\Tools\\tool.exe.txt"));
    EXPECT_FALSE(excluded(L"url", L"https://example.com/steam"));
    EXPECT_FALSE(excluded(L"url", L"steam://store/440"));
}

TEST_F(FileClustererTest, SoftwareIsAProgramALauncherAddressOrAShortcutToNowhere) {
    DesktopFileInfo& info = file(L"thing.txt");
    const auto software = [&](const wchar_t* fileName, const wchar_t* extension, const wchar_t* target) {
        info.fileName = fileName;
        info.extension = extension;
        info.targetPath = target;
        return clusterer.isSoftware(info);
    };
    EXPECT_TRUE(software(L"a.exe", L"exe", L""));
    EXPECT_TRUE(software(L"a.lnk", L"exe", L"C:\\a.exe"));
    EXPECT_TRUE(software(L"a.lnk", L"lnk", L"C:\\a.EXE"));
    EXPECT_TRUE(software(L"a.url", L"url", L"steam://rungameid/440"));
    EXPECT_TRUE(software(L"a.url", L"url", L"uplay://launch/1"));
    EXPECT_TRUE(software(L"a.LNK", L"lnk", L"")) << "a shortcut without a stored target";
    EXPECT_TRUE(software(L"a.lnk", L"", L""));
    EXPECT_FALSE(software(L"a.lnk", L"lnk", L"C:\\folder"));
    EXPECT_FALSE(software(L"a.url", L"url", L"https://example.com/"));
    EXPECT_FALSE(software(L"a.url", L"url", L"Steam://RunGameID/440")) << "launchers write it in lower case";
    EXPECT_FALSE(software(L"a.lnk", L"lnk", L"steam://rungameid/440")) << "only an Internet shortcut";
    EXPECT_FALSE(software(L"a.EXE", L"EXE", L"")) << "extensions are stored in lower case";
    EXPECT_FALSE(software(L"a.txt", L"txt", L""));
    EXPECT_FALSE(software(L"lnk", L"", L""));
}

// --- names

TEST_F(FileClustererTest, ANamelessFamilyIsCalledCluster) {
    EXPECT_EQ(clusterer.clusterName({}), L"cluster");
}

TEST_F(FileClustererTest, AWordNeedsSixTenthsOfTheMembersRoundedUp) {
    EXPECT_EQ(nameOf({L"Trip Rome.jpg", L"Trip Oslo.jpg", L"Bern.jpg"}), L"Trip");
    EXPECT_EQ(nameOf({L"Trip a.jpg", L"Trip b.jpg", L"Trip c.jpg", L"Zoo d.jpg", L"Zoo e.jpg"}), L"Trip");
    EXPECT_EQ(nameOf({L"Trip Rome.jpg", L"Rome Trip.jpg"}), L"Trip Rome") << "in the first member's order";
    EXPECT_EQ(nameOf({L"Trip Rome.jpg"}), L"Trip Rome");
}

TEST_F(FileClustererTest, WithoutASharedWordTheMostFrequentOneNamesTheFamily) {
    EXPECT_EQ(nameOf({L"Pear.txt", L"Apple.txt"}), L"Apple") << "the first in order among equals";
    EXPECT_EQ(nameOf({L"Bern.jpg", L"Zoo a.jpg", L"Zoo b.jpg", L"c.jpg"}), L"Zoo");
    EXPECT_EQ(nameOf({L"2021.jpg", L"Zoo a.jpg", L"Zoo b.jpg"}), L"Zoo")
        << "chosen, but not of the first member";
}

TEST_F(FileClustererTest, WithoutAnyWordTheNameIsEmpty) { EXPECT_EQ(nameOf({L"1.txt", L"2.txt"}), L""); }

TEST_F(FileClustererTest, InnerCapitalsWinThenALeadingCapitalThenTheFirstSpelling) {
    EXPECT_EQ(nameOf({L"html a.txt", L"Html b.txt", L"HTML c.txt"}), L"HTML");
    EXPECT_EQ(nameOf({L"iPhone a.txt", L"Iphone b.txt"}), L"iPhone");
    EXPECT_EQ(nameOf({L"html a.txt", L"Html b.txt"}), L"Html");
    EXPECT_EQ(nameOf({L"html a.txt", L"html b.txt"}), L"html");
    EXPECT_EQ(nameOf({L"ABc x.txt", L"AbC y.txt"}), L"ABc") << "the first of equal rank by code units";
    EXPECT_EQ(nameOf({L"\u00DCbung a.txt", L"\u00DCbung b.txt"}), L"\u00DCbung")
        << "no capital of the C locale";
}

TEST_F(FileClustererTest, AMemberCountsOnceForAWordAndOnlyWithItsFirstSpelling) {
    EXPECT_EQ(nameOf({L"go Go GO x.txt", L"y.txt", L"z.txt"}), L"go") << "one of three members";
}

TEST_F(FileClustererTest, CapitalisedStopWordsCanNameAFamily) {
    EXPECT_EQ(nameOf({L"Final Report 1.txt", L"Final Report 2.txt"}), L"Final Report");
    EXPECT_EQ(nameOf({L"final Report 1.txt", L"Final Report 2.txt"}), L"Report");
}

TEST_F(FileClustererTest, CamelCaseIsLeftWholeInNames) {
    EXPECT_EQ(nameOf({L"HolidayPlan a.txt", L"HolidayPlan b.txt"}), L"HolidayPlan");
}

TEST_F(FileClustererTest, AWordThatTheFirstMemberRepeatsIsRepeatedInTheName) {
    EXPECT_EQ(nameOf({L"Go Go 1.txt", L"go go 2.txt"}), L"Go Go");
}

// The extension is cut twice, so what stands between the last two dots never reaches the name.
TEST_F(FileClustererTest, WhatStandsBetweenTheLastTwoDotsNamesNoFamily) {
    EXPECT_EQ(nameOf({L"Plan.Lisbon.txt", L"Plan.Lisbon.pdf"}), L"Plan");
    EXPECT_EQ(nameOf({L"A.B.Lisbon.txt", L"A.B.Lisbon.pdf"}), L"A B");
}

// --- families

TEST_F(FileClustererTest, TwoNumberedPhotosAreAFamilyNamedAfterTheirWord) {
    file(L"IMG_0001.jpg");
    file(L"IMG_0002.jpg");
    build();
    ASSERT_EQ(clusters.size(), 1u);
    EXPECT_EQ(clusters[0].name, L"IMG");
    EXPECT_EQ(clusters[0].members, byAddress(desktop.list));
    for (const DesktopFileInfo* info : desktop.list) {
        EXPECT_TRUE(info->grouped);
        EXPECT_EQ(info->group, (GroupKey{GroupCategory::Files, std::wstring(L"IMG")}));
    }
}

TEST_F(FileClustererTest, NoEntriesGiveNoClustersAndOldOnesGo) {
    clusters.push_back({L"old", {}});
    build();
    EXPECT_TRUE(clusters.empty());
}

TEST_F(FileClustererTest, FamiliesOfEqualStemsComeInTheOrderOfTheirStems) {
    for (const wchar_t* name : {L"Zoo 1.txt", L"Ant 1.txt", L"Zoo 2.txt", L"Ant 2.txt"}) file(name);
    build();
    ASSERT_EQ(clusters.size(), 2u);
    EXPECT_EQ(clusters[0].name, L"Ant");
    EXPECT_EQ(clusters[1].name, L"Zoo");
}

TEST_F(FileClustererTest, NamesWithoutWordsShareOneFamilyWhoseNameMayBeEmpty) {
    file(L"2020.txt");
    file(L"final.doc");
    build();
    ASSERT_EQ(clusters.size(), 1u);
    EXPECT_EQ(clusters[0].name, L"");
    EXPECT_EQ(groupKeyName(*desktop.list[0]->group), L"Files-");
}

TEST_F(FileClustererTest, ProgramsOfOneNameAreNoFamily) {
    file(L"Editor 1.exe");
    file(L"Editor 2.exe");
    build();
    EXPECT_TRUE(clusters.empty());
    EXPECT_FALSE(desktop.list[0]->grouped);
    EXPECT_EQ(desktop.list[0]->group, std::nullopt);
}

TEST_F(FileClustererTest, AProgramMayJoinAFamilyThatItsNameBelongsTo) {
    file(L"Lisbon Plan 1.txt");
    file(L"Lisbon Plan 2.txt");
    const DesktopFileInfo& program = file(L"Lisbon Plan.exe");
    build();
    ASSERT_EQ(clusters.size(), 1u);
    EXPECT_EQ(clusters[0].members.size(), 3u);
    EXPECT_TRUE(program.grouped);
}

TEST_F(FileClustererTest, SpecialItemsSeedNoFamilyByTheirNames) {
    special(L"Folder 1");
    special(L"Folder 2");
    build();
    EXPECT_TRUE(clusters.empty());
}

TEST_F(FileClustererTest, TheUsersProfileFolderIsSpecialAndStillPairsByItsWords) {
    DesktopFileInfo& profile = file(L"Ada Lovelace");
    profile.isSpecial = true;
    file(L"Ada Lovelace notes.txt");
    build();
    ASSERT_EQ(clusters.size(), 1u);
    EXPECT_EQ(clusters[0].members.size(), 2u);
}

TEST_F(FileClustererTest, AFamilyOnTheWayJoinsTwoIntoTheEarlierOne) {
    // The stems make Ant, then Bee. The last item is like both: 2 words of 3, the first one, time and folder.
    for (const wchar_t* name : {L"Bee Hive 1.txt", L"Bee Hive 2.txt", L"Ant Hill 1.txt", L"Ant Hill 2.txt",
                                L"Crab 1.txt", L"Crab 2.txt"})
        file(name);
    DesktopFileInfo& both = file(L"Both.txt");
    both.tokens = {L"bee", L"hive", L"ant", L"hill"};
    ASSERT_GE(clusterer.similarity(*desktop.list[2], both), 0.5);
    build();
    ASSERT_EQ(clusters.size(), 2u);
    EXPECT_EQ(clusters[0].members.size(), 5u);
    EXPECT_EQ(clusters[1].name, L"Crab");
}

TEST_F(FileClustererTest, AStragglerJoinsAtAnAverageOfFourTenths) {
    file(L"Mango Kiwi 1.txt");
    file(L"Mango Kiwi 2.txt");
    const DesktopFileInfo& near = file(L"Kiwi Lime Plum.txt");          // 0.4375 each: no pair, but attached
    const DesktopFileInfo& far = file(L"Pear Mango Fig Date Nut.txt");  // 0.3917 each, lower with the above
    build();
    ASSERT_EQ(clusters.size(), 1u);
    EXPECT_TRUE(near.grouped);
    EXPECT_FALSE(far.grouped);
}

TEST_F(FileClustererTest, ExactlyHalfIsEnoughForAPair) {
    file(L"Lime a b c d f.txt");
    DesktopFileInfo& other = file(L"Lime g h i j k.txt");
    other.lastWriteTime = 0;
    ASSERT_EQ(clusterer.similarity(*desktop.list[0], other), 0.5);
    build();
    EXPECT_EQ(clusters.size(), 1u);
}

TEST_F(FileClustererTest, AnAverageOfExactlyFourTenthsIsEnoughToJoin) {
    file(L"Lime a b c d f g 1.txt");
    file(L"Lime a b c d f g 2.txt");
    const DesktopFileInfo& other = file(L"x y z i Lime g.txt");
    ASSERT_EQ(clusterer.similarity(other, *desktop.list[0]), 0.4);
    build();
    EXPECT_TRUE(other.grouped);
}

TEST_F(FileClustererTest, AStragglerGoesToTheFirstOfEquallyNearFamilies) {
    file(L"Zoo Lime 1.txt");
    file(L"Zoo Lime 2.txt");
    file(L"Ant Lime 1.txt").lastWriteTime = 0;
    file(L"Ant Lime 2.txt").lastWriteTime = 0;
    for (DesktopFileInfo* info : desktop.list) info->tokens = {info->tokens[0], L"w" + info->tokens[0]};
    DesktopFileInfo& middle = file(L"Plum.txt");
    middle.tokens = {L"plum", L"want", L"wzoo"};
    for (DesktopFileInfo* info : desktop.list) info->lastWriteTime = kSomeDay;
    build();
    ASSERT_EQ(clusters.size(), 2u);
    ASSERT_EQ(clusters[0].name, L"Ant Lime");
    EXPECT_EQ(clusters[0].members.size(), 3u);
    EXPECT_EQ(clusters[1].members.size(), 2u);
}

TEST_F(FileClustererTest, ItemsOfAFoldersFamilyFollowItUnlessTheFolderIsTheRoot) {
    file(L"Lisbon 1.jpg", kTrip);
    file(L"Lisbon 2.jpg", kTrip);
    DesktopFileInfo& ticket = file(L"Ticket.pdf", L"d:\\TRIP");
    file(L"Porto 1.jpg");
    file(L"Porto 2.jpg");
    const DesktopFileInfo& letter = file(L"Letter.doc");
    build();
    ASSERT_EQ(clusters.size(), 2u);
    EXPECT_TRUE(ticket.grouped);
    EXPECT_FALSE(letter.grouped);

    build(L"c:\\users\\ADA\\desktop");
    EXPECT_FALSE(letter.grouped) << "the root is compared ignoring case";
}

TEST_F(FileClustererTest, WithoutARootTheDesktopIsAFolderLikeAnyOther) {
    file(L"Porto 1.jpg");
    file(L"Porto 2.jpg");
    const DesktopFileInfo& letter = file(L"Letter.doc");
    const DesktopFileInfo& program = file(L"Tool.exe");
    const DesktopFileInfo& bin = special(L"Recycle Bin");
    build(L"");
    EXPECT_TRUE(letter.grouped);
    EXPECT_FALSE(program.grouped);
    EXPECT_FALSE(bin.grouped);
    build();
    EXPECT_FALSE(letter.grouped);
}

TEST_F(FileClustererTest, AnItemThatLeavesItsFamilyLosesTheMarkAndKeepsTheGroup) {
    file(L"IMG_1.jpg");
    file(L"IMG_2.jpg");
    build();
    desktop.list[1]->fileName = L"Letter.doc";
    desktop.list[1]->tokens = {L"letter"};
    build();
    EXPECT_TRUE(clusters.empty());
    EXPECT_FALSE(desktop.list[1]->grouped);
    EXPECT_TRUE(desktop.list[1]->group.has_value()) << "the organiser gives it a fixed group next";
}

TEST_F(FileClustererTest, MembersStandInTheOrderOfTheirAddresses) {
    for (int i = 0; i < 20; ++i) file(L"IMG_" + std::to_wstring(i) + L".jpg");
    std::reverse(desktop.list.begin(), desktop.list.end());
    build();
    ASSERT_EQ(clusters.size(), 1u);
    EXPECT_EQ(clusters[0].members, byAddress(desktop.list));
}

TEST_F(FileClustererTest, NamesInOtherScriptsFormFamiliesToo) {
    file(L"\u5199\u771F_1.jpg");
    file(L"\u5199\u771F_2.jpg");
    file(L"\u00DCbung 1.doc", kTrip);
    file(L"\u00DCBUNG 2.doc", kTrip);
    isolate(file(L"\xD83D\xDE00 a.gif"), 1);
    isolate(file(L"\xD83D\xDE00 b.gif"), 1);
    isolate(file(L"\xD83D.txt"), 2);
    isolate(file(L"\xD83D 2.txt"), 3);
    build();
    ASSERT_EQ(clusters.size(), 4u);
    // In code units: U+00DC, U+5199, then the lone surrogate; the pair was found by its words, after the
    // stems.
    EXPECT_EQ(clusters[0].name, L"\u00DCBUNG");
    EXPECT_EQ(clusters[1].name, L"\u5199\u771F");
    EXPECT_EQ(clusters[2].name, L"\xD83D");
    EXPECT_EQ(clusters[3].name, L"\xD83D\xDE00");
}

// --- great inputs

TEST_F(FileClustererTest, FiveThousandEqualNamesAreOneFamily) {
    for (int i = 0; i < 5000; ++i) file(L"IMG_0001.jpg");
    build();
    ASSERT_EQ(clusters.size(), 1u);
    EXPECT_EQ(clusters[0].members.size(), 5000u);
}

TEST_F(FileClustererTest, FiveThousandEqualProgramsAreNone) {
    for (int i = 0; i < 5000; ++i) file(L"Editor.exe");
    build();
    EXPECT_TRUE(clusters.empty());
}

TEST_F(FileClustererTest, NamesOfTheGreatestLengthAreCompared) {
    std::wstring words;
    for (int i = 0; words.size() < 32740; ++i) words += L"w" + std::to_wstring(i) + L"q ";
    for (int i = 0; i < 3; ++i) {
        file(words + std::to_wstring(i));
        file(std::wstring(32767, static_cast<wchar_t>(L'a' + i)));
        file(std::wstring(32767, L'.'));
        std::wstring repeated = L"x" + std::to_wstring(i) + L"x";
        while (repeated.size() < 32760) repeated += L" ab";
        file(repeated);
    }
    build();
    ASSERT_EQ(clusters.size(), 3u);
    EXPECT_EQ(clusters[0].name, L"") << "nothing but dots";
    EXPECT_EQ(clusters[0].members.size(), 3u);
    EXPECT_EQ(clusters[1].members.size(), 3u);
    EXPECT_EQ(clusters[2].members.size(), 3u);
}

}  // namespace
}  // namespace varnelo
