#include "views/label_fit.h"

#include <algorithm>

namespace varnelo {

namespace {

// Walks the clusters line by line. A place is the index of a cluster.
class LineBreaker {
public:
    LineBreaker(std::wstring_view wholeText, std::span<const TextCluster> allClusters, float lineWidth)
        : text(wholeText), clusters(allClusters), maxWidth(lineWidth) {}

    // One past the last cluster of the line that starts at `first`.
    std::size_t lineEnd(std::size_t first) const {
        float width = 0;
        std::size_t lastBreak = first;
        for (std::size_t i = first; i < clusters.size(); ++i) {
            const TextCluster& cluster = clusters[i];
            if (cluster.newline) return i + 1;
            width += cluster.width;
            // Spaces may hang over the edge.
            if (width > maxWidth && !cluster.space) {
                if (lastBreak > first) return lastBreak;
                return std::max(i, first + 1);
            }
            if (cluster.breakAfter) lastBreak = i + 1;
        }
        return clusters.size();
    }

    // One past the last cluster that leaves room for `reserved`.
    std::size_t cutEnd(std::size_t first, float reserved) const {
        float width = reserved;
        std::size_t i = first;
        while (i < clusters.size() && !clusters[i].newline && width + clusters[i].width <= maxWidth) {
            width += clusters[i++].width;
        }
        return i;
    }

    std::wstring_view textOf(std::size_t first, std::size_t end) const {
        while (end > first && (clusters[end - 1].space || clusters[end - 1].newline)) --end;
        const std::size_t start = unitsBefore(first);
        return start < text.size() ? text.substr(start, unitsBefore(end) - start) : std::wstring_view();
    }

private:
    std::size_t unitsBefore(std::size_t place) const {
        std::size_t units = 0;
        for (std::size_t i = 0; i < place; ++i) units += clusters[i].length;
        return units;
    }

    std::wstring_view text;
    std::span<const TextCluster> clusters;
    float maxWidth;
};

}  // namespace

std::wstring fitToLines(std::wstring_view text, std::span<const TextCluster> clusters, float maxWidth,
                        std::size_t maxLines, float ellipsisWidth) {
    const LineBreaker breaker(text, clusters, maxWidth);
    std::wstring fitted;
    std::size_t first = 0;
    for (std::size_t line = 1; first < clusters.size() && line <= maxLines; ++line) {
        if (line > 1) fitted += L'\n';
        const std::size_t end = breaker.lineEnd(first);
        if (line == maxLines && end < clusters.size()) {
            fitted += breaker.textOf(first, breaker.cutEnd(first, ellipsisWidth));
            fitted += kEllipsis;
            return fitted;
        }
        fitted += breaker.textOf(first, end);
        first = end;
    }
    return fitted;
}

}  // namespace varnelo
