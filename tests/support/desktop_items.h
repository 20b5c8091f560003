#pragma once

// Items of a desktop for tests and measurements, made without any file.

#include <cstdint>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "model/file_metadata.h"
#include "model/tokenizer.h"

namespace varnelo {

constexpr std::uint64_t kTicksPerSecond = 10000000;
constexpr std::uint64_t kSomeDay = 132000000000000000;  // a FILETIME in 2019

// Owns up to `capacity` items, whose addresses do not change and ascend in the order of their making.
class DesktopItems {
public:
    explicit DesktopItems(std::size_t capacity = 64) { items.reserve(capacity); }
    DesktopItems(const DesktopItems&) = delete;

    static constexpr const wchar_t* kDesktop = L"C:\\Users\\Ada\\Desktop";

    // An ordinary file in `folder`, with its words and extension read from its name.
    DesktopFileInfo& add(const std::wstring& fileName, const std::wstring& folder = kDesktop) {
        if (items.size() == items.capacity()) throw std::length_error("DesktopItems is full");
        DesktopFileInfo& info = items.emplace_back();
        info.fileName = fileName;
        info.parentFolder = folder;
        info.fullPath = folder + L"\\" + fileName;
        for (const wchar_t unit : textBehindLastDot(fileName))
            info.extension += unit >= L'A' && unit <= L'Z' ? static_cast<wchar_t>(unit + 32) : unit;
        info.tokens = tokenizeName(fileName, CamelCase::Split, LetterCase::Lower);
        info.lastWriteTime = kSomeDay;
        list.push_back(&info);
        return info;
    }

    std::vector<DesktopFileInfo*> list;  // in the order of the desktop

private:
    std::vector<DesktopFileInfo> items;
};

// What a full desktop looks like: reports in versions, photos of trips, invoices, downloads, shortcuts, and a
// third that belongs to nothing.
inline void fillLikeADesktop(DesktopItems& desktop, int count, unsigned seed) {
    static const wchar_t* const topics[] = {
        L"Invoice",  L"Report",  L"Budget",   L"Holiday",  L"Meeting", L"Contract", L"Thesis",
        L"Garden",   L"Kitchen", L"Travel",   L"Budapest", L"Lisbon",  L"Wedding",  L"Insurance",
        L"Tax",      L"Letter",  L"Proposal", L"Roadmap",  L"Sprint",  L"Recipe",   L"Concert",
        L"Passport", L"Poster",  L"Logo",     L"Survey",   L"Lecture", L"Homework", L"Interview",
        L"Workshop", L"Minutes", L"Agenda",   L"Protocol"};
    static const wchar_t* const beginnings[] = {L"Car",   L"House",  L"Book", L"Music", L"Garden", L"Photo",
                                                L"Train", L"School", L"Film", L"Sport", L"Money",  L"Work"};
    static const wchar_t* const endings[] = {L"list", L"plan",  L"sheet", L"notes", L"ticket", L"photos",
                                             L"log",  L"ideas", L"offer", L"guide", L"map",    L"story"};
    static const wchar_t* const details[] = {L"Acme",   L"Q1",     L"Q2",    L"Summary", L"Draft",  L"Notes",
                                             L"Berlin", L"Munich", L"Anna",  L"Peter",   L"Team",   L"Client",
                                             L"Signed", L"Scan",   L"Print", L"Large",   L"Review", L"Final"};
    static const wchar_t* const marks[] = {L"",       L"_v1",   L"_v2",   L" (2)",
                                           L"_final", L"-2021", L" copy", L"_003"};
    static const wchar_t* const extensions[] = {L".docx", L".pdf", L".jpg", L".png",
                                                L".xlsx", L".zip", L".lnk", L".exe"};
    std::mt19937 random(seed);
    const auto pick = [&random](const auto& table) {
        return std::wstring(table[random() % std::size(table)]);
    };
    for (int i = 0; i < count; ++i) {
        // One draw a statement, so that every compiler draws in the same order.
        std::wstring name;
        switch (random() % 6) {
            case 0:
                name = L"IMG_" + std::to_wstring(1000 + random() % 9000);
                break;
            case 1:
                name = pick(topics);
                name += pick(details);
                name += L"_" + pick(details);
                break;
            case 2:
                name = pick(topics);
                name += L" " + pick(details);
                break;
            case 3:
                name = pick(beginnings);
                name += pick(endings);
                break;
            default:
                name = L"item" + std::to_wstring(random() % 100000);
                name += L"x " + pick(details);
                break;
        }
        name += pick(marks);
        name += pick(extensions);
        DesktopFileInfo& info = desktop.add(name);
        info.lastWriteTime += (random() % (400 * 86400ull)) * kTicksPerSecond;
    }
}

}  // namespace varnelo
