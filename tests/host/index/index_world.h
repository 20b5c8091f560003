#pragma once

#include <string>
#include <vector>

#include "index/ntfs_index.h"

namespace varnelo {

// An index with a few words for filling it and for asking what it holds.
struct IndexWorld {
    // Files get the numbers from 24 on, unless one is named; their folder is the root.
    std::uint32_t file(const std::wstring& name, std::uint64_t parentFrn = kRootFrn) {
        return file(nextFrn++, name, parentFrn);
    }
    std::uint32_t file(std::uint64_t frn, const std::wstring& name, std::uint64_t parentFrn = kRootFrn) {
        return index.addRecord({frn, parentFrn, 0, 0, 0, 0}, name);
    }
    void onVolume(wchar_t letter) { index.currentVolume = index.volumeIndexOf(letter).value(); }

    static std::vector<std::uint32_t> listOf(const PostingMap& map, std::uint64_t key) {
        const auto list = map.find(key);
        return list ? map.entries(*list) : std::vector<std::uint32_t>{};
    }
    std::vector<std::uint32_t> ones(wchar_t a) const { return listOf(index.unigrams(), unit(a)); }
    std::vector<std::uint32_t> twos(wchar_t a, wchar_t b) const {
        return listOf(index.bigrams(), unit(a) << 16 | unit(b));
    }
    std::vector<std::uint32_t> threes(wchar_t a, wchar_t b, wchar_t c) const {
        return listOf(index.trigrams(), unit(a) << 32 | unit(b) << 16 | unit(c));
    }
    static std::uint64_t unit(wchar_t value) { return static_cast<std::uint16_t>(value); }

    std::wstring pathOf(std::uint32_t record) { return index.fullPath(index.records()[record]); }
    const FileRecord& record(std::uint32_t i) const { return index.records()[i]; }

    NTFSIndex index;
    std::uint64_t nextFrn = 24;
};

}  // namespace varnelo
