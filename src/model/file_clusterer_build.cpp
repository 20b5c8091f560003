// The pass over all entries. What it finds is what a plain loop over all pairs finds, in the same order; the
// words, folders and times are compared as numbers, and only pairs that can reach a threshold are looked at:
// without a word in common two items reach 0.3, and neither threshold lies that low.

#include <algorithm>
#include <cstddef>
#include <functional>
#include <map>
#include <numeric>
#include <unordered_map>

#include "model/cluster_families.h"
#include "model/cluster_score.h"
#include "model/file_clusterer.h"
#include "model/file_metadata.h"
#include "platform/clock.h"
#include "platform/text.h"

namespace varnelo {
namespace {

constexpr double kPairThreshold = 0.5;
constexpr double kAttachThreshold = 0.4;

using Number = ClusterFamilies::Number;
constexpr Number kNone = ClusterFamilies::kNone;

// Numbers for texts, counted from 0 in the order of their first use. The texts must outlive it.
class TextNumbers {
public:
    Number of(std::wstring_view text) {
        return numbers.try_emplace(text, static_cast<Number>(numbers.size())).first->second;
    }
    Number find(std::wstring_view text) const {
        const auto found = numbers.find(text);
        return found == numbers.end() ? kNone : found->second;
    }
    std::size_t count() const { return numbers.size(); }

private:
    std::unordered_map<std::wstring_view, Number> numbers;
};

// A word of an item and how often the item's name repeats it.
struct WordUse {
    Number word;
    Number times;
};

struct Item {
    Number identity = 0;  // place of the first entry that is the same object
    Number folder = 0;
    Number firstWord = kNone;
    Number tokenCount = 0;
    std::uint64_t seconds = 0;
    bool excluded = false;
    std::size_t usesBegin = 0;  // into `uses`
    std::size_t usesEnd = 0;
};

class ClusterPass {
public:
    ClusterPass(const FileClusterer& rules, const std::vector<DesktopFileInfo*>& givenEntries)
        : clusterer(rules), entries(givenEntries), families(givenEntries.size()) {
        readItems();
        listPlacesOfWords();
        shared.assign(entries.size(), 0);
    }

    void groupEqualStems();
    void groupSimilarPairs();
    void attachStragglers();
    void attachByFolder(std::wstring_view rootFolder);
    void emit(std::vector<FileCluster>& clusters);

private:
    void readItems();
    void listPlacesOfWords();
    void compareWithLater(Number place);
    void keepPlacesInFamilies();
    void attachStraggler(Number place);
    double score(const Item& a, const Item& b, Number sharedTokens) const;
    bool inFamily(const Item& item) { return families.familyOf(item.identity) != kNone; }

    const FileClusterer& clusterer;
    const std::vector<DesktopFileInfo*>& entries;  // the place of an item is its index here
    std::vector<Item> items;
    std::vector<WordUse> uses;
    std::vector<std::wstring> folderTexts;  // lower case
    TextNumbers folders;
    std::size_t wordCount = 0;

    // The places of the items that use word w: placesOfWord[wordBegin[w]] up to wordEnd[w]. While the pairs
    // are compared these are all behind the item being compared, ascending; afterwards those in families.
    std::vector<std::size_t> wordBegin;
    std::vector<std::size_t> wordEnd;
    std::vector<Number> placesOfWord;

    ClusterFamilies families;
    std::vector<std::vector<Number>> members;  // of each family, once the pairs are done

    // By place, for the item being compared: how many of its tokens occur there. All zero between two items.
    std::vector<Number> shared;
    std::vector<Number> touched;
};

void ClusterPass::readItems() {
    std::unordered_map<const DesktopFileInfo*, Number> identities;
    TextNumbers words;
    std::vector<Number> own;
    items.resize(entries.size());
    folderTexts.reserve(entries.size());  // `folders` keeps views of its texts
    for (Number place = 0; place < items.size(); ++place) {
        const DesktopFileInfo& info = *entries[place];
        Item& item = items[place];
        item.identity = identities.try_emplace(&info, place).first->second;
        folderTexts.push_back(lowered(info.parentFolder));
        item.folder = folders.of(folderTexts.back());
        item.seconds = fileTimeSeconds(info.lastWriteTime);
        item.excluded = clusterer.isExcluded(info);
        item.tokenCount = static_cast<Number>(info.tokens.size());

        own.clear();
        for (const std::wstring& token : info.tokens) own.push_back(words.of(token));
        if (!own.empty()) item.firstWord = own.front();
        std::sort(own.begin(), own.end());
        item.usesBegin = uses.size();
        for (const Number word : own) {
            if (uses.size() > item.usesBegin && uses.back().word == word)
                ++uses.back().times;
            else
                uses.push_back({word, 1});
        }
        item.usesEnd = uses.size();
    }
    wordCount = words.count();
}

void ClusterPass::listPlacesOfWords() {
    wordBegin.assign(wordCount, 0);
    for (const WordUse& use : uses) ++wordBegin[use.word];
    std::exclusive_scan(wordBegin.begin(), wordBegin.end(), wordBegin.begin(), std::size_t{0});
    wordEnd = wordBegin;
    placesOfWord.resize(uses.size());
    for (Number place = 0; place < items.size(); ++place)
        for (std::size_t use = items[place].usesBegin; use < items[place].usesEnd; ++use)
            placesOfWord[wordEnd[uses[use].word]++] = place;
}

double ClusterPass::score(const Item& a, const Item& b, Number sharedTokens) const {
    ClusterScore result;
    result.sharedTokens = sharedTokens;
    result.tokensOfA = a.tokenCount;
    result.tokensOfB = b.tokenCount;
    result.sameFirstToken = a.firstWord == b.firstWord && a.firstWord != kNone;
    result.closeInTime = withinSeconds(a.seconds, b.seconds, clusterer.timeWindowSeconds);
    result.sameFolder = a.folder == b.folder;
    return result.value();
}

// Names made of the same words. Those of stop words and digits alone share the empty stem, and are one
// family.
void ClusterPass::groupEqualStems() {
    std::map<std::wstring, std::vector<Number>> placesOfStem;
    for (Number place = 0; place < items.size(); ++place)
        if (!items[place].excluded && !entries[place]->isSpecial)
            placesOfStem[clusterer.stem(entries[place]->fileName)].push_back(place);
    for (const auto& [stem, places] : placesOfStem) {
        if (places.size() < 2) continue;
        const Number family = families.create();
        for (const Number place : places) {
            entries[place]->grouped = true;
            families.add(family, place, items[place].identity);
        }
    }
}

void ClusterPass::groupSimilarPairs() {
    for (Number place = 0; place < items.size(); ++place)
        if (!items[place].excluded) compareWithLater(place);
    members = families.members();
}

// The pairs of one item with all behind it, in their order.
void ClusterPass::compareWithLater(Number place) {
    const Item& item = items[place];
    Number family = families.familyOf(item.identity);
    touched.clear();
    for (std::size_t use = item.usesBegin; use < item.usesEnd; ++use) {
        const auto [word, times] = uses[use];
        std::size_t& begin = wordBegin[word];
        while (begin < wordEnd[word] && placesOfWord[begin] <= place) ++begin;
        for (std::size_t i = begin; i < wordEnd[word]; ++i) {
            const Number other = placesOfWord[i];
            if (shared[other] == 0) {
                if (items[other].excluded) continue;
                // Two in one family stay there, whatever their score.
                if (family != kNone && families.familyOf(items[other].identity) == family) continue;
                touched.push_back(other);
            }
            shared[other] += times;
        }
    }
    // One word lists its places in order already.
    if (!std::is_sorted(touched.begin(), touched.end())) std::sort(touched.begin(), touched.end());
    for (const Number other : touched) {
        const double similarity = score(item, items[other], shared[other]);
        shared[other] = 0;
        if (similarity < kPairThreshold) continue;
        family = families.familyOf(item.identity);
        const Number otherFamily = families.familyOf(items[other].identity);
        if (family == kNone && otherFamily == kNone) {
            family = families.create();
            families.add(family, place, item.identity);
            families.add(family, other, items[other].identity);
        } else if (family == kNone) {
            families.add(otherFamily, place, item.identity);
        } else if (otherFamily == kNone) {
            families.add(family, other, items[other].identity);
        } else if (family != otherFamily) {
            families.merge(family, otherFamily);
        }
    }
}

// The pairs have moved wordBegin to the end; counting the uses again finds the room of each word, which also
// has place for those that join later.
void ClusterPass::keepPlacesInFamilies() {
    listPlacesOfWords();
    for (std::size_t word = 0; word < wordCount; ++word) {
        const auto begin = placesOfWord.begin() + static_cast<std::ptrdiff_t>(wordBegin[word]);
        const auto end = placesOfWord.begin() + static_cast<std::ptrdiff_t>(wordEnd[word]);
        const auto kept = std::remove_if(begin, end, [&](Number place) { return !inFamily(items[place]); });
        wordEnd[word] -= static_cast<std::size_t>(end - kept);
    }
}

// Excluded items too: a program may join the family that its name belongs to.
void ClusterPass::attachStragglers() {
    keepPlacesInFamilies();
    for (Number place = 0; place < items.size(); ++place)
        if (!inFamily(items[place])) attachStraggler(place);
}

void ClusterPass::attachStraggler(Number place) {
    const Item& item = items[place];
    std::vector<Number> candidates;
    touched.clear();
    for (std::size_t use = item.usesBegin; use < item.usesEnd; ++use) {
        const auto [word, times] = uses[use];
        for (std::size_t i = wordBegin[word]; i < wordEnd[word]; ++i) {
            const Number other = placesOfWord[i];
            if (shared[other] == 0) {
                touched.push_back(other);
                candidates.push_back(families.familyOf(items[other].identity));
            }
            shared[other] += times;
        }
    }
    std::sort(candidates.begin(), candidates.end());
    candidates.erase(std::unique(candidates.begin(), candidates.end()), candidates.end());

    // A family without a word in common averages 0.3 at most and could not be joined, so that it is not
    // among the candidates changes nothing. The first of equal families wins.
    double best = 0;
    Number bestFamily = kNone;
    for (const Number family : candidates) {
        double sum = 0;
        for (const Number member : members[family]) sum += score(item, items[member], shared[member]);
        const double average = sum / static_cast<double>(members[family].size());
        if (average > best) {
            best = average;
            bestFamily = family;
        }
    }
    for (const Number other : touched) shared[other] = 0;
    if (best < kAttachThreshold) return;
    families.add(bestFamily, place, item.identity);
    members[bestFamily].push_back(place);
    for (std::size_t use = item.usesBegin; use < item.usesEnd; ++use)
        placesOfWord[wordEnd[uses[use].word]++] = place;
}

// A folder goes with the first family that has a member in it. Who joins brings no new folder along, so one
// round reaches all that repeated rounds would.
void ClusterPass::attachByFolder(std::wstring_view rootFolder) {
    std::vector<Number> familyOfFolder(folders.count(), kNone);
    for (Number family = 0; family < members.size(); ++family)
        for (const Number place : members[family])
            if (Number& first = familyOfFolder[items[place].folder]; first == kNone) first = family;

    const Number root = folders.find(lowered(rootFolder));
    for (Number place = 0; place < items.size(); ++place) {
        const Item& item = items[place];
        if (item.excluded || entries[place]->isSpecial || inFamily(item)) continue;
        if (entries[place]->parentFolder.empty() || item.folder == root) continue;
        const Number family = familyOfFolder[item.folder];
        if (family == kNone) continue;
        families.add(family, place, item.identity);
        members[family].push_back(place);
    }
}

void ClusterPass::emit(std::vector<FileCluster>& clusters) {
    for (const std::vector<Number>& places : members) {
        std::vector<DesktopFileInfo*> infos;
        infos.reserve(places.size());
        for (const Number place : places) infos.push_back(entries[place]);
        // By address, which also decides whose words come first in the name.
        std::sort(infos.begin(), infos.end(), std::less<>());
        infos.erase(std::unique(infos.begin(), infos.end()), infos.end());
        if (infos.size() < 2) continue;
        const std::wstring name = clusterer.clusterName(infos);
        for (DesktopFileInfo* info : infos) {
            info->grouped = true;
            info->group = GroupKey{GroupCategory::Files, name};
        }
        clusters.push_back({name, std::move(infos)});
    }
    for (Number place = 0; place < items.size(); ++place)
        if (!inFamily(items[place])) entries[place]->grouped = false;
}

}  // namespace

void FileClusterer::build(std::vector<FileCluster>& clusters, const std::vector<DesktopFileInfo*>& entries,
                          std::wstring_view rootFolder) const {
    clusters.clear();
    for (DesktopFileInfo* info : entries) info->grouped = false;
    ClusterPass pass(*this, entries);
    pass.groupEqualStems();
    pass.groupSimilarPairs();
    pass.attachStragglers();
    pass.attachByFolder(rootFolder);
    pass.emit(clusters);
}

}  // namespace varnelo
