#include "index/search_query.h"

#include <algorithm>

#include "platform/text.h"

namespace varnelo {

bool hasPatterns(std::wstring_view query) { return query.find_first_of(L"*?;|,") != std::wstring_view::npos; }

std::vector<std::wstring> splitPatterns(std::wstring_view query) {
    std::vector<std::wstring> patterns;
    while (!query.empty()) {
        const std::size_t end = std::min(query.find_first_of(L";|,"), query.size());
        std::wstring_view pattern = query.substr(0, end);
        query.remove_prefix(std::min(end + 1, query.size()));
        pattern.remove_prefix(std::min(pattern.find_first_not_of(L' '), pattern.size()));
        pattern = pattern.substr(0, pattern.find_last_not_of(L' ') + 1);
        if (!pattern.empty()) patterns.push_back(lowered(pattern));
    }
    return patterns;
}

std::optional<std::vector<std::wstring>> extensionsOf(const std::vector<std::wstring>& patterns) {
    std::vector<std::wstring> extensions;
    for (const std::wstring& pattern : patterns) {
        if (pattern.size() < 3 || !pattern.starts_with(L"*.")) return std::nullopt;
        if (pattern.find_first_of(L"*?", 2) != std::wstring::npos) return std::nullopt;
        extensions.push_back(pattern.substr(1));
    }
    return extensions;
}

}  // namespace varnelo
