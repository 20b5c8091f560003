#pragma once

// Finds families among the entries of an organiser (the report in several versions, the photos of one trip,
// the parts of a download) and names each from the words that its members share. It looks at names, parent
// folders and times only; no file is opened.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "model/tokenizer.h"

namespace varnelo {

struct DesktopFileInfo;

// A named family. The members belong to the organiser and stand in the order of their addresses, each once.
struct FileCluster {
    std::wstring name;
    std::vector<DesktopFileInfo*> members;
};

// Keeps nothing between calls and changes only what it is given, so one object may serve several threads
// as long as each works on entries of its own.
class FileClusterer {
public:
    FileClusterer();

    const WordSet& stopWords;
    const WordSet archiveExtensions;  // for the organisers; clustering itself does not ask
    const std::uint64_t timeWindowSeconds = 604800;

    std::vector<std::wstring> tokenize(std::wstring_view name, CamelCase camelCase,
                                       LetterCase letterCase) const;

    std::wstring stem(std::wstring_view name) const;

    // 0 to a little above 1 in ordinary cases; repeated tokens can raise it further, and then the two
    // directions differ.
    double similarity(const DesktopFileInfo& a, const DesktopFileInfo& b) const;

    // Programs, shortcuts to programs and game launchers never seed a cluster.
    bool isExcluded(const DesktopFileInfo& info) const;

    bool isSoftware(const DesktopFileInfo& info) const;

    // Can be empty, when no member has a token; "cluster" for no members.
    std::wstring clusterName(const std::vector<DesktopFileInfo*>& members) const;

    // Replaces `clusters` by the families of `entries`, none of which may be null. Every member of a cluster
    // gets `grouped` set and its `group`; `grouped` is cleared on the others, whose `group` is left alone.
    // Items that merely lie together in `rootFolder` are no family; with an empty one every folder counts.
    // Quadratic in the entries whose names share a token.
    void build(std::vector<FileCluster>& clusters, const std::vector<DesktopFileInfo*>& entries,
               std::wstring_view rootFolder) const;
};

}  // namespace varnelo
