#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace varnelo {

// What a text engine cannot divide: one character with its marks, or a ligature.
struct TextCluster {
    std::size_t length = 0;  // UTF-16 units
    float width = 0;         // pixels
    bool breakAfter = false;
    bool newline = false;
    bool space = false;
};

inline constexpr wchar_t kEllipsis = L'\u2026';

// Breaks `text` into at most `maxLines` lines of `maxWidth`: where a break is allowed, inside a word that is
// wider than a line otherwise. A text that needs more lines ends in the ellipsis, cut between any two
// clusters. The lines are joined by '\n', without the spaces around a break. `clusters` cover `text` from its
// start.
std::wstring fitToLines(std::wstring_view text, std::span<const TextCluster> clusters, float maxWidth,
                        std::size_t maxLines, float ellipsisWidth);

}  // namespace varnelo
