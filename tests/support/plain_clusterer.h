#pragma once

// The clustering rules once more, as a plain loop over all pairs with the words compared as texts: slow,
// short, and sharing with the real one only the table of stop words and the scores' order of addition. What
// the real one must agree with, to the last name and position.

#include <algorithm>
#include <cmath>
#include <cwctype>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "model/file_clusterer.h"
#include "model/file_metadata.h"

namespace varnelo::plain {

using Infos = std::vector<DesktopFileInfo*>;

// How often each rule had an effect, so that a test can tell that its lists reach all of them.
struct Effects {
    int stemFamilies = 0, pairsFounded = 0, joinedByPair = 0, merged = 0, attached = 0, joinedByFolder = 0;
};

inline bool lower(wchar_t c) { return L'a' <= c && c <= L'z'; }
inline bool upper(wchar_t c) { return L'A' <= c && c <= L'Z'; }
inline bool digit(wchar_t c) { return L'0' <= c && c <= L'9'; }

inline std::wstring low(std::wstring text) {
    for (wchar_t& c : text)
        if (upper(c)) c = static_cast<wchar_t>(c - L'A' + L'a');
    return text;
}

inline std::wstring cut(const std::wstring& name) { return name.substr(0, name.rfind(L'.')); }

inline std::wstring behindDot(const std::wstring& name) {
    return name.rfind(L'.') == std::wstring::npos ? L"" : low(name.substr(name.rfind(L'.') + 1));
}

inline std::vector<std::wstring> pieces(const std::wstring& name, bool splitCamelCase) {
    const std::wstring text = cut(name);
    std::wstring spaced;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (splitCamelCase && i >= 1 && upper(text[i])) {
            const bool lowerBefore = lower(text[i - 1]);
            const bool lowerBehind = i + 1 < text.size() && lower(text[i + 1]);
            if (lowerBefore || (!lowerBefore && lowerBehind)) spaced += L' ';
        }
        spaced += text[i];
    }
    for (wchar_t& c : spaced)
        if (c == L'_' || c == L'-' || c == L'.') c = L' ';
    std::vector<std::wstring> result(1);
    for (const wchar_t c : spaced) {
        if (std::wstring(L" \t\n\v\f\r").find(c) != std::wstring::npos)
            result.emplace_back();
        else
            result.back() += c;
    }
    std::erase(result, L"");
    return result;
}

inline std::vector<std::wstring> tokenize(const std::wstring& name, bool splitCamelCase, bool lowerCase) {
    std::vector<std::wstring> tokens;
    for (std::wstring piece : pieces(name, splitCamelCase)) {
        if (lowerCase) piece = low(piece);
        if (std::all_of(piece.begin(), piece.end(), digit)) continue;
        if (stopWords().count(piece)) continue;
        tokens.push_back(piece);
    }
    return tokens;
}

inline std::wstring stem(const std::wstring& name) {
    std::vector<std::wstring> kept;
    for (const std::wstring& piece : pieces(name, true)) {
        const auto digitOrDot = [](wchar_t c) { return digit(c) || c == L'.'; };
        if (std::all_of(piece.begin(), piece.end(), digitOrDot) || stopWords().count(low(piece))) continue;
        kept.push_back(low(piece));
    }
    std::sort(kept.begin(), kept.end());
    std::wstring joined;
    for (std::size_t i = 0; i < kept.size(); ++i) joined += (i ? L" " : L"") + kept[i];
    return joined;
}

inline double similarity(const DesktopFileInfo& a, const DesktopFileInfo& b) {
    int common = 0;
    for (const std::wstring& token : a.tokens)
        common += std::find(b.tokens.begin(), b.tokens.end(), token) != b.tokens.end();
    const int divisor = static_cast<int>(a.tokens.size() + b.tokens.size()) - common;
    const double jaccard = divisor > 0 ? static_cast<double>(common) / divisor : 0;
    const double firstToken = !a.tokens.empty() && !b.tokens.empty() && a.tokens[0] == b.tokens[0] ? 0.25 : 0;
    const auto apart = static_cast<std::int64_t>(a.lastWriteTime / 10000000) -
                       static_cast<std::int64_t>(b.lastWriteTime / 10000000);
    const double timeBonus = std::abs(apart) <= 604800 ? 0.1 : 0;
    const double folderBonus = low(a.parentFolder) == low(b.parentFolder) ? 0.2 : 0;
    return ((0.55 * jaccard + firstToken) + timeBonus) + folderBonus;
}

inline bool isExcluded(const DesktopFileInfo& info) {
    if (low(info.extension) == L"exe") return true;
    if (!info.targetPath.empty() && behindDot(info.targetPath) == L"exe") return true;
    return low(info.targetPath).find(L"steam://rungameid/") != std::wstring::npos ||
           low(info.targetPath).find(L"uplay://launch/") != std::wstring::npos;
}

inline std::wstring clusterName(const Infos& members) {
    if (members.empty()) return L"cluster";
    const auto words = [](const DesktopFileInfo* info) {
        return tokenize(cut(info->fileName), false, false);
    };
    std::map<std::wstring, int> count;
    std::map<std::wstring, std::set<std::wstring>> spellings;
    for (const DesktopFileInfo* member : members) {
        std::set<std::wstring> seen;
        for (const std::wstring& word : words(member)) {
            if (!seen.insert(low(word)).second) continue;
            ++count[low(word)];
            spellings[low(word)].insert(word);
        }
    }
    std::map<std::wstring, std::wstring> spelling;
    for (const auto& [word, set] : spellings) {
        const auto hasInnerCapital = [](const std::wstring& s) {
            return std::any_of(s.begin() + 1, s.end(), upper);
        };
        auto chosen = std::find_if(set.begin(), set.end(), hasInnerCapital);
        if (chosen == set.end())
            chosen = std::find_if(set.begin(), set.end(), [](const std::wstring& s) { return upper(s[0]); });
        spelling[word] = chosen == set.end() ? *set.begin() : *chosen;
    }
    const int needed = std::max(1, static_cast<int>(std::ceil(0.6 * static_cast<int>(members.size()))));
    std::wstring name;
    for (const std::wstring& word : words(members.front()))
        if (count[low(word)] >= needed) name += (name.empty() ? L"" : L" ") + spelling[low(word)];
    if (!name.empty() || count.empty()) return name;
    auto best = count.begin();
    for (auto it = count.begin(); it != count.end(); ++it)
        if (it->second > best->second) best = it;
    return spelling[best->first];
}

class Build {
public:
    Effects effects;

    std::vector<FileCluster> run(const Infos& entries, const std::wstring& rootFolder) {
        for (DesktopFileInfo* entry : entries) entry->grouped = false;
        sameStem(entries);
        pairs(entries);
        attach(entries);
        sameFolder(entries, rootFolder);
        return finish(entries);
    }

private:
    static constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);

    std::vector<Infos> groups;
    std::map<DesktopFileInfo*, std::size_t> indexOf;

    std::size_t find(DesktopFileInfo* entry) const {
        const auto it = indexOf.find(entry);
        return it == indexOf.end() ? kNowhere : it->second;
    }
    void put(std::size_t group, DesktopFileInfo* entry) {
        groups[group].push_back(entry);
        indexOf[entry] = group;
    }

    void sameStem(const Infos& entries) {
        std::map<std::wstring, Infos> byStem;
        for (DesktopFileInfo* entry : entries)
            if (!isExcluded(*entry) && !entry->isSpecial) byStem[stem(entry->fileName)].push_back(entry);
        for (const auto& [key, list] : byStem) {
            if (list.size() < 2) continue;
            ++effects.stemFamilies;
            groups.emplace_back();
            for (DesktopFileInfo* entry : list) {
                entry->grouped = true;
                put(groups.size() - 1, entry);
            }
        }
    }

    void pairs(const Infos& entries) {
        for (std::size_t i = 0; i < entries.size(); ++i) {
            for (std::size_t j = i + 1; j < entries.size(); ++j) {
                if (isExcluded(*entries[i]) || isExcluded(*entries[j])) continue;
                if (similarity(*entries[i], *entries[j]) < 0.5) continue;
                pair(entries[i], entries[j]);
            }
        }
    }

    void pair(DesktopFileInfo* one, DesktopFileInfo* other) {
        const std::size_t a = find(one);
        const std::size_t b = find(other);
        if (a == kNowhere && b == kNowhere) {
            ++effects.pairsFounded;
            groups.emplace_back();
            put(groups.size() - 1, one);
            put(groups.size() - 1, other);
        } else if (a == kNowhere || b == kNowhere) {
            ++effects.joinedByPair;
            a == kNowhere ? put(b, one) : put(a, other);
        } else if (a != b) {
            ++effects.merged;
            const std::size_t stays = std::min(a, b);
            const std::size_t goes = std::max(a, b);
            for (DesktopFileInfo* entry : groups[goes]) put(stays, entry);
            groups.erase(groups.begin() + static_cast<std::ptrdiff_t>(goes));
            for (auto& [entry, index] : indexOf)
                if (index > goes) --index;
        }
    }

    void attach(const Infos& entries) {
        for (DesktopFileInfo* entry : entries) {
            if (find(entry) != kNowhere) continue;
            double best = 0;
            std::size_t candidate = kNowhere;
            for (std::size_t g = 0; g < groups.size(); ++g) {
                double sum = 0;
                for (const DesktopFileInfo* member : groups[g]) sum += similarity(*entry, *member);
                const double average = sum / static_cast<double>(groups[g].size());
                if (average <= best) continue;
                best = average;
                candidate = g;
            }
            if (candidate == kNowhere || best < 0.4) continue;
            ++effects.attached;
            put(candidate, entry);
        }
    }

    void sameFolder(const Infos& entries, const std::wstring& rootFolder) {
        for (bool changed = true; changed;) {
            changed = false;
            for (DesktopFileInfo* entry : entries) {
                if (isExcluded(*entry) || entry->isSpecial || find(entry) != kNowhere) continue;
                if (entry->parentFolder.empty() || low(entry->parentFolder) == low(rootFolder)) continue;
                const auto neighbour = [&](const DesktopFileInfo* member) {
                    return low(member->parentFolder) == low(entry->parentFolder);
                };
                for (std::size_t g = 0; g < groups.size(); ++g) {
                    if (std::none_of(groups[g].begin(), groups[g].end(), neighbour)) continue;
                    ++effects.joinedByFolder;
                    put(g, entry);
                    changed = true;
                    break;
                }
            }
        }
    }

    std::vector<FileCluster> finish(const Infos& entries) {
        std::vector<FileCluster> clusters;
        for (Infos& group : groups) {
            std::sort(group.begin(), group.end(), std::less<DesktopFileInfo*>());
            group.erase(std::unique(group.begin(), group.end()), group.end());
            if (group.size() < 2) continue;
            const std::wstring name = clusterName(group);
            for (DesktopFileInfo* member : group) {
                member->grouped = true;
                member->group = GroupKey{GroupCategory::Files, name};
            }
            clusters.push_back({name, group});
        }
        for (DesktopFileInfo* entry : entries)
            if (find(entry) == kNowhere) entry->grouped = false;
        return clusters;
    }
};

}  // namespace varnelo::plain
