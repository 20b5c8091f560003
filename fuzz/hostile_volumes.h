#pragma once

// A machine whose one volume answers with whatever bytes a fuzzer makes up, a piece of them each time.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "index/ntfs_index.h"
#include "index/volume_source.h"

namespace varnelo::fuzz {

inline void require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "broken: %s\n", what);
    std::abort();
}

// The bytes as a row of answers: a u16 tells how long one is, 0xFFFF that the call fails. What is left over
// answers the last call; behind the end every call fails.
class AnswerBytes {
public:
    AnswerBytes(const std::uint8_t* data, std::size_t size) : rest(data, size) {}

    Volume::Answer answer(std::span<std::uint8_t> room) {
        if (rest.size() < 2) return std::nullopt;
        const std::size_t length = rest[0] | rest[1] << 8;
        rest = rest.subspan(2);
        if (length == 0xFFFF) return std::nullopt;
        const std::size_t given = std::min({length, rest.size(), room.size()});
        std::copy_n(rest.data(), given, room.begin());
        rest = rest.subspan(given);
        // A call may also claim more than it had room for.
        return length == 0xFFFE ? room.size() + 1 : given;
    }

private:
    std::span<const std::uint8_t> rest;
};

class HostileVolume final : public Volume {
public:
    explicit HostileVolume(AnswerBytes& source) : bytes(source) {}
    Answer volumeData(std::span<std::uint8_t> answer) override { return bytes.answer(answer); }
    Answer journalData(std::span<std::uint8_t> answer) override { return bytes.answer(answer); }
    Answer enumerate(std::span<const std::uint8_t>, std::span<std::uint8_t> answer) override {
        return bytes.answer(answer);
    }
    Answer fileRecord(std::uint64_t, std::span<std::uint8_t> answer) override { return bytes.answer(answer); }
    Answer readJournal(std::span<const std::uint8_t>, std::span<std::uint8_t> answer) override {
        return bytes.answer(answer);
    }

private:
    AnswerBytes& bytes;
};

class HostileVolumes final : public VolumeSource {
public:
    HostileVolumes(const std::uint8_t* data, std::size_t size) : bytes(data, size) {}
    std::uint32_t drives() override { return 4; }
    bool fixedDrive(wchar_t) override { return true; }
    std::unique_ptr<Volume> open(const std::wstring&) override {
        return std::make_unique<HostileVolume>(bytes);
    }
    std::optional<std::uint64_t> fileSize(const std::wstring&) override { return 1; }

private:
    AnswerBytes bytes;
};

// What the index holds can be asked for, and every file is found by the name that it has.
inline void use(NTFSIndex& index) {
    for (const wchar_t* query : {L"a", L"ab", L"abc", L"*.c", L"*"}) {
        for (const std::uint32_t hit : index.searchNames(query)) {
            require(hit < index.records().size(), "a hit is a record");
            require(!index.records()[hit].deleted(), "a hit is no tombstone");
        }
    }
    for (std::uint32_t i = 0; i < index.records().size() && i < 20; ++i) {
        const std::wstring name = index.nameOf(i).substr(0, 3);
        index.fullPath(index.records()[i]);
        if (name.empty() || index.records()[i].deleted()) continue;
        if (name.find_first_of(L"*?;|,") != name.npos || name.front() <= L' ' || name.back() <= L' ')
            continue;
        const auto hits = index.searchNames(name);
        require(std::count(hits.begin(), hits.end(), i) > 0, "a file is found by its name");
    }
}

}  // namespace varnelo::fuzz
