#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "index/ntfs_index.h"
#include "platform/text.h"

// The rules of the search as plain loops over all records, without any list.
namespace varnelo::plain {

inline bool matches(const std::wstring& pattern, const std::wstring& name, std::size_t p = 0,
                    std::size_t n = 0) {
    if (p == pattern.size()) return n == name.size();
    if (pattern[p] == L'*')
        return matches(pattern, name, p + 1, n) || (n < name.size() && matches(pattern, name, p, n + 1));
    return n < name.size() && (pattern[p] == L'?' || pattern[p] == name[n]) &&
           matches(pattern, name, p + 1, n + 1);
}

inline std::vector<std::wstring> patternsOf(const std::wstring& query) {
    std::vector<std::wstring> patterns;
    std::wstring current;
    for (const wchar_t unit : query + L",") {
        if (unit != L';' && unit != L'|' && unit != L',') {
            current += unit;
            continue;
        }
        while (!current.empty() && current.back() == L' ') current.pop_back();
        while (!current.empty() && current.front() == L' ') current.erase(0, 1);
        if (!current.empty()) patterns.push_back(lowered(current));
        current.clear();
    }
    return patterns;
}

inline bool isExtensionPattern(const std::wstring& pattern) {
    return pattern.size() > 2 && pattern.substr(0, 2) == L"*." &&
           pattern.substr(2).find_first_of(L"*?") == std::wstring::npos;
}

// How often a text of the query's first units, three at most, begins in the name.
inline int beginnings(const std::wstring& query, const std::wstring& name) {
    int count = 0;
    const std::wstring gram = query.substr(0, 3);
    for (std::size_t i = 0; i < name.size(); ++i) count += name.compare(i, gram.size(), gram) == 0 ? 1 : 0;
    return count;
}

// How often one record stands in the result.
inline int hits(const std::wstring& query, const std::vector<std::wstring>& patterns,
                const std::wstring& lowerName) {
    if (query.empty()) return 1;
    if (query.find_first_of(L"*?;|,") == std::wstring::npos) {
        const std::wstring text = lowered(query);
        return lowerName.find(text) == std::wstring::npos ? 0 : beginnings(text, lowerName);
    }
    const bool extensionsOnly = std::all_of(patterns.begin(), patterns.end(), isExtensionPattern);
    const std::size_t dot = lowerName.rfind(L'.');
    for (const std::wstring& pattern : patterns) {
        if (!extensionsOnly) {
            if (matches(pattern, lowerName)) return 1;
        } else if (dot != std::wstring::npos && dot != 0 &&
                   lowerName.compare(dot, std::wstring::npos, pattern, 1, std::wstring::npos) == 0) {
            return 1;
        }
    }
    return 0;
}

// In the order of the indices, which is that of a search while no place was used twice and no name changed.
inline std::vector<std::uint32_t> search(const NTFSIndex& index, const std::wstring& query) {
    std::vector<std::uint32_t> result;
    const std::vector<std::wstring> patterns = patternsOf(query);
    for (std::uint32_t i = 0; i < index.records().size(); ++i) {
        if (index.records()[i].deleted()) continue;
        result.insert(result.end(), static_cast<std::size_t>(hits(query, patterns, lowered(index.nameOf(i)))),
                      i);
    }
    return result;
}

}  // namespace varnelo::plain
