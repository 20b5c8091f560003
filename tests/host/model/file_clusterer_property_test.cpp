// Random lists of names, clustered by the real pass and by the plain loop over all pairs.

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>

#include "model/file_clusterer.h"
#include "support/desktop_items.h"
#include "support/plain_clusterer.h"

namespace varnelo {
namespace {

// What a build leaves behind.
struct Outcome {
    std::vector<FileCluster> clusters;
    std::vector<bool> grouped;
    std::vector<std::optional<GroupKey>> groups;
};

bool same(const Outcome& a, const Outcome& b) {
    const auto equal = [](const FileCluster& one, const FileCluster& other) {
        return one.name == other.name && one.members == other.members;
    };
    return std::equal(a.clusters.begin(), a.clusters.end(), b.clusters.begin(), b.clusters.end(), equal) &&
           a.grouped == b.grouped && a.groups == b.groups;
}

void reset(const std::vector<DesktopFileInfo*>& list) {
    for (std::size_t i = 0; i < list.size(); ++i) {
        list[i]->grouped = i % 2 == 0;
        list[i]->group.reset();
    }
}

Outcome read(std::vector<FileCluster> clusters, const std::vector<DesktopFileInfo*>& list) {
    Outcome outcome{std::move(clusters), {}, {}};
    for (const DesktopFileInfo* info : list) {
        outcome.grouped.push_back(info->grouped);
        outcome.groups.push_back(info->group);
    }
    return outcome;
}

// A list in words, for the message of a failure.
std::string described(const std::vector<DesktopFileInfo*>& list, const std::wstring& root) {
    std::wstring text = L"root '" + root + L"'";
    for (const DesktopFileInfo* info : list) {
        text += L"\n" + info->fileName + L" | " + info->parentFolder + L" | " + info->targetPath + L" | " +
                std::to_wstring(info->lastWriteTime / kTicksPerSecond) +
                (info->isSpecial ? L" special:" : L":");
        for (const std::wstring& token : info->tokens) text += L" " + token;
    }
    std::string ascii;
    for (const wchar_t unit : text) ascii += unit < 128 ? static_cast<char>(unit) : '?';
    return ascii;
}

class RandomLists {
public:
    explicit RandomLists(unsigned seed) : random(seed) {}

    // Few words, folders and times, so that all rules and ties come into play.
    void fill(DesktopItems& desktop, int count) {
        for (int i = 0; i < count; ++i) addOne(desktop);
        std::shuffle(desktop.list.begin(), desktop.list.end(), random);
        if (below(8) == 0 && !desktop.list.empty())
            desktop.list.push_back(desktop.list[below(desktop.list.size())]);
    }

    std::wstring root() { return pick(kFolders); }
    std::size_t below(std::size_t limit) { return random() % limit; }

private:
    static constexpr const wchar_t* kFolders[] = {L"",      L"C:\\Desk", L"c:\\DESK", L"D:\\a",
                                                  L"D:\\A", L"D:\\b",    L"D:\\c"};
    static constexpr const wchar_t* kWords[] = {L"lime", L"Lime",    L"LIME",   L"kiwi",  L"Kiwi", L"plum",
                                                L"fig",  L"Nut",     L"final",  L"Final", L"v2",   L"7",
                                                L"2021", L"\u00DCb", L"\x5199", L"date",  L"pear"};
    static constexpr const wchar_t* kBetween[] = {L" ", L"_", L"-", L".", L"", L"  "};
    static constexpr const wchar_t* kExtensions[] = {L".txt", L".jpg", L".txt", L".jpg",
                                                     L"",     L".exe", L".lnk", L".url"};
    static constexpr const wchar_t* kTargets[] = {L"C:\\x\\tool.EXE", L"Steam://rungameid/1",
                                                  L"https://lime/", L"D:\\a"};

    template <class Table>
    std::wstring pick(const Table& table) {
        return table[below(std::size(table))];
    }

    void addOne(DesktopItems& desktop) {
        std::wstring name;
        // One draw a statement, so that every compiler draws in the same order.
        for (std::size_t words = below(5); words > 0; --words) {
            name += pick(kWords);
            name += pick(kBetween);
        }
        name += pick(kExtensions);
        DesktopFileInfo& info = desktop.add(name, pick(kFolders));
        info.lastWriteTime += below(4) * 604800 * kTicksPerSecond;
        info.lastWriteTime += below(3) * (kTicksPerSecond / 2);
        if (below(6) == 0) info.targetPath = pick(kTargets);
        if (below(8) == 0) {
            info.isSpecial = true;
            if (below(2) == 0) info.tokens.clear();
        }
        // The words are what the entry says they are, which need not be those of its name.
        if (below(10) == 0) std::shuffle(info.tokens.begin(), info.tokens.end(), random);
        if (below(20) == 0 && !info.tokens.empty()) info.tokens.push_back(info.tokens[0]);
    }

    std::mt19937 random;
};

void expectAgreement(int lists, std::size_t sizeLimit, unsigned seed, plain::Effects& total) {
    const FileClusterer clusterer;
    RandomLists random(seed);
    for (int i = 0; i < lists; ++i) {
        DesktopItems desktop(sizeLimit);
        random.fill(desktop, static_cast<int>(random.below(sizeLimit)));
        const std::wstring root = random.root();

        reset(desktop.list);
        plain::Build reference;
        std::vector<FileCluster> clusters = reference.run(desktop.list, root);
        const Outcome expected = read(std::move(clusters), desktop.list);

        reset(desktop.list);
        clusters = {{L"left over", {}}};
        clusterer.build(clusters, desktop.list, root);
        ASSERT_TRUE(same(read(std::move(clusters), desktop.list), expected)) << described(desktop.list, root);

        total.stemFamilies += reference.effects.stemFamilies;
        total.pairsFounded += reference.effects.pairsFounded;
        total.joinedByPair += reference.effects.joinedByPair;
        total.merged += reference.effects.merged;
        total.attached += reference.effects.attached;
        total.joinedByFolder += reference.effects.joinedByFolder;
    }
}

TEST(FileClustererPropertyTest, ThePassFindsWhatAPlainLoopOverAllPairsFinds) {
    plain::Effects total;
    expectAgreement(3000, 9, 1, total);
    expectAgreement(400, 30, 2, total);
    expectAgreement(3, 200, 3, total);
    // Otherwise the lists would have left a rule out.
    EXPECT_GT(total.stemFamilies, 100);
    EXPECT_GT(total.pairsFounded, 100);
    EXPECT_GT(total.joinedByPair, 100);
    EXPECT_GT(total.merged, 50);
    EXPECT_GT(total.attached, 100);
    EXPECT_GT(total.joinedByFolder, 100);
}

TEST(FileClustererPropertyTest, ThePassAgreesOnNamesAsPeopleGiveThem) {
    const FileClusterer clusterer;
    DesktopItems desktop(300);
    fillLikeADesktop(desktop, 300, 7);
    plain::Build reference;
    std::vector<FileCluster> clusters = reference.run(desktop.list, DesktopItems::kDesktop);
    const Outcome expected = read(std::move(clusters), desktop.list);
    EXPECT_GT(expected.clusters.size(), 5u);

    reset(desktop.list);
    clusterer.build(clusters, desktop.list, DesktopItems::kDesktop);
    EXPECT_TRUE(same(read(std::move(clusters), desktop.list), expected));
}

TEST(FileClustererPropertyTest, SimilarityWordsAndExclusionAgreeForEveryPair) {
    const FileClusterer clusterer;
    RandomLists random(4);
    DesktopItems desktop(300);
    random.fill(desktop, 300);
    for (const DesktopFileInfo* a : desktop.list) {
        EXPECT_EQ(clusterer.isExcluded(*a), plain::isExcluded(*a));
        EXPECT_EQ(clusterer.stem(a->fileName), plain::stem(a->fileName));
        EXPECT_EQ(tokenizeName(a->fileName, CamelCase::Keep, LetterCase::Keep),
                  plain::tokenize(a->fileName, false, false));
        EXPECT_EQ(tokenizeName(a->fileName, CamelCase::Split, LetterCase::Keep),
                  plain::tokenize(a->fileName, true, false));
        for (const DesktopFileInfo* b : desktop.list)
            EXPECT_EQ(clusterer.similarity(*a, *b), plain::similarity(*a, *b)) << "to the last bit";
    }
}

}  // namespace
}  // namespace varnelo
