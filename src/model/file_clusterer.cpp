#include "model/file_clusterer.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <map>
#include <set>

#include "model/cluster_score.h"
#include "model/file_metadata.h"
#include "platform/clock.h"
#include "platform/text.h"

namespace varnelo {
namespace {

bool holdsLauncherAddress(std::wstring_view target) {
    return target.find(L"steam://rungameid/") != std::wstring_view::npos ||
           target.find(L"uplay://launch/") != std::wstring_view::npos;
}

bool isUpper(wchar_t c) { return c >= L'A' && c <= L'Z'; }

// How the members of a cluster spell one word, and how many of them have it.
struct Word {
    std::size_t members = 0;
    std::set<std::wstring> spellings;
};

// Keyed by the lower-case form.
using WordTable = std::map<std::wstring, Word>;

// The words of a member as it spells them. The name loses its extension here and then a second one in the
// tokeniser, so Report.final.docx and Report.draft.docx are both named by Report alone.
std::vector<std::wstring> spelledWords(const DesktopFileInfo& info) {
    return tokenizeName(withoutExtension(info.fileName), CamelCase::Keep, LetterCase::Keep);
}

WordTable countWords(const std::vector<DesktopFileInfo*>& members) {
    WordTable words;
    for (const DesktopFileInfo* member : members) {
        std::set<std::wstring> seen;
        for (std::wstring& spelling : spelledWords(*member)) {
            std::wstring word = lowered(spelling);
            if (!seen.insert(word).second) continue;
            Word& entry = words[std::move(word)];
            ++entry.members;
            entry.spellings.insert(std::move(spelling));
        }
    }
    return words;
}

// HTML or iPhone rather than Html, Html rather than html; the lowest of equals by code units.
const std::wstring& chosenSpelling(const Word& word) {
    for (const std::wstring& spelling : word.spellings)
        if (std::any_of(spelling.begin() + 1, spelling.end(), isUpper)) return spelling;
    for (const std::wstring& spelling : word.spellings)
        if (isUpper(spelling.front())) return spelling;
    return *word.spellings.begin();
}

}  // namespace

FileClusterer::FileClusterer()
    : stopWords(varnelo::stopWords()), archiveExtensions{L"zip", L"rar", L"7z", L"tar", L"gz"} {}

std::vector<std::wstring> FileClusterer::tokenize(std::wstring_view name, CamelCase camelCase,
                                                  LetterCase letterCase) const {
    return tokenizeName(name, camelCase, letterCase);
}

std::wstring FileClusterer::stem(std::wstring_view name) const { return stemName(name); }

double FileClusterer::similarity(const DesktopFileInfo& a, const DesktopFileInfo& b) const {
    const std::set<std::wstring_view> tokensOfB(b.tokens.begin(), b.tokens.end());
    ClusterScore score;
    score.sharedTokens = static_cast<std::size_t>(std::count_if(
        a.tokens.begin(), a.tokens.end(), [&](const std::wstring& t) { return tokensOfB.contains(t); }));
    score.tokensOfA = a.tokens.size();
    score.tokensOfB = b.tokens.size();
    score.sameFirstToken = !a.tokens.empty() && !b.tokens.empty() && a.tokens.front() == b.tokens.front();
    score.closeInTime =
        withinSeconds(fileTimeSeconds(a.lastWriteTime), fileTimeSeconds(b.lastWriteTime), timeWindowSeconds);
    score.sameFolder = equalIgnoringCase(a.parentFolder, b.parentFolder);
    return score.value();
}

bool FileClusterer::isExcluded(const DesktopFileInfo& info) const {
    if (equalIgnoringCase(info.extension, L"exe")) return true;
    if (info.targetPath.empty()) return false;
    return equalIgnoringCase(textBehindLastDot(info.targetPath), L"exe") ||
           holdsLauncherAddress(lowered(info.targetPath));
}

bool FileClusterer::isSoftware(const DesktopFileInfo& info) const {
    if (info.extension == L"exe") return true;
    // Launchers write their addresses in lower case; another spelling is an ordinary address here.
    if (info.extension == L"url" && holdsLauncherAddress(info.targetPath)) return true;
    if (!info.targetPath.empty()) return equalIgnoringCase(textBehindLastDot(info.targetPath), L"exe");
    // A shortcut without a stored target points at something the shell alone knows: a program, mostly.
    return equalIgnoringCase(textBehindLastDot(info.fileName), L"lnk");
}

std::wstring FileClusterer::clusterName(const std::vector<DesktopFileInfo*>& members) const {
    if (members.empty()) return L"cluster";
    const WordTable words = countWords(members);
    if (words.empty()) return {};
    const auto needed = std::max<std::size_t>(
        1, static_cast<std::size_t>(std::ceil(0.6 * static_cast<double>(members.size()))));

    std::wstring name;
    for (const std::wstring& spelling : spelledWords(*members.front())) {
        const Word& word = words.find(lowered(spelling))->second;
        if (word.members < needed) continue;
        if (!name.empty()) name += L' ';
        name += chosenSpelling(word);
    }
    if (!name.empty()) return name;
    const auto mostFrequent = std::max_element(words.begin(), words.end(), [](const auto& a, const auto& b) {
        return a.second.members < b.second.members;
    });
    return chosenSpelling(mostFrequent->second);
}

}  // namespace varnelo
