// Any bytes as an ntfs.cache: the loader neither crashes nor hangs, and what it leaves can be searched
// and changed. The same bytes are shown where they lie.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "index/ntfs_index.h"

namespace varnelo {
namespace {

void require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "broken: %s\n", what);
    std::abort();
}

bool load(NTFSIndex& index, const std::uint8_t* data, std::size_t size) {
    std::size_t at = 0;
    return index.readCache(static_cast<std::int64_t>(size), [&](std::uint8_t* to, std::size_t count) {
        const std::size_t got = std::min(count, size - at);
        std::copy_n(data + at, got, to);
        at += got;
        return got;
    });
}

constexpr const wchar_t* kQueries[] = {L"",    L"a",  L"ab",   L"abc", L"abcd", L"aaaa",
                                       L"*.c", L"a*", L"*b*c", L"??",  L"x;*"};

void prepare(NTFSIndex& index) {
    std::vector<std::vector<std::uint32_t>> before;
    for (const wchar_t* query : kQueries) before.push_back(index.searchNames(query));
    index.prepareSearches();
    for (std::size_t i = 0; i < before.size(); ++i) {
        require(index.searchNames(kQueries[i]) == before[i], "a preparation changes no answer");
    }
}

void use(NTFSIndex& index) {
    for (const wchar_t* query : kQueries) {
        std::vector<std::uint32_t> found = index.searchNames(query);
        for (const std::uint32_t id : found) {
            require(id < index.records().size(), "a hit is a record");
            require(!index.records()[id].deleted(), "a hit is no tombstone");
        }
        found.resize(std::min<std::size_t>(found.size(), 100));
        for (std::uint32_t column = 0; column < 4; ++column)
            index.sortResults(found, column, column % 2 == 0);
        index.entriesForRange(found, 0, 10);
    }
}

void change(NTFSIndex& index) {
    const auto records = static_cast<std::uint32_t>(index.records().size());
    for (std::uint32_t i = 0; i < std::min(records, 8u); ++i) {
        switch (i % 4) {
            case 0:
                index.removeRecord(i);
                break;
            case 1:
                index.renameRecord(i, {1, 2, 0, 3, 4, 5}, L"abcd.c");
                break;
            case 2:
                index.pruneRecord(i);
                break;
            default:
                index.updateRecord(i, 1, 2, 3, 4);
        }
    }
    const std::uint32_t added = index.createRecord({77, 5, 0, 0, 0, 0}, L"zz new");
    const std::vector<std::uint32_t> found = index.searchNames(L"zz n");
    require(std::count(found.begin(), found.end(), added) == 1, "what was added is found");
}

}  // namespace
}  // namespace varnelo

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    varnelo::NTFSIndex index;
    const bool loads = varnelo::load(index, data, size);
    varnelo::use(index);
    varnelo::prepare(index);
    varnelo::change(index);
    varnelo::use(index);
    varnelo::prepare(index);

    std::vector<std::uint8_t> bytes(data, data + size);
    varnelo::NTFSIndex shown;
    varnelo::require(!shown.showCache(bytes) || loads, "what is shown can be loaded");
    varnelo::use(shown);
    varnelo::change(shown);
    varnelo::use(shown);
    return 0;
}
