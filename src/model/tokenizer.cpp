#include "model/tokenizer.h"

#include <algorithm>
#include <cstddef>

#include "platform/text.h"

namespace varnelo {
namespace {

bool isLower(wchar_t c) { return c >= L'a' && c <= L'z'; }
bool isUpper(wchar_t c) { return c >= L'A' && c <= L'Z'; }
bool isDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }
bool isBlank(wchar_t c) { return c == L' ' || (c >= L'\t' && c <= L'\r'); }
bool separatesWords(wchar_t c) { return c == L'_' || c == L'-' || c == L'.' || isBlank(c); }

// Whether camel case starts a word at `index`: an upper-case letter behind a lower-case one, or the last
// capital of a run (the F of HTMLFile). A capital that ends the name belongs to the run before it.
bool camelCaseStartsWord(std::wstring_view name, std::size_t index) {
    if (index == 0 || !isUpper(name[index])) return false;
    return isLower(name[index - 1]) || (index + 1 < name.size() && isLower(name[index + 1]));
}

// Calls `take` with each non-empty piece of `name`, which has lost its extension already, in order.
template <class Take>
void forEachPiece(std::wstring_view name, CamelCase camelCase, Take take) {
    std::size_t start = 0;
    const auto endAt = [&](std::size_t end) {
        if (end > start) take(name.substr(start, end - start));
    };
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (separatesWords(name[i])) {
            endAt(i);
            start = i + 1;
        } else if (camelCase == CamelCase::Split && camelCaseStartsWord(name, i)) {
            endAt(i);
            start = i;
        }
    }
    endAt(name.size());
}

}  // namespace

const WordSet& stopWords() {
    static const WordSet words = {
        L"copy",    L"copyof",   L"duplicate", L"dup",      L"backup",   L"bak",      L"v",      L"ver",
        L"version", L"rev",      L"revision",  L"v1",       L"v2",       L"v3",       L"v4",     L"v5",
        L"v6",      L"v7",       L"v8",        L"v9",       L"v10",      L"final",    L"finale", L"release",
        L"stable",  L"official", L"new",       L"old",      L"temp",     L"tmp",      L"draft",  L"work",
        L"working", L"edit",     L"edited",    L"update",   L"updated",  L"todo",     L"fix",    L"fixed",
        L"bugfix",  L"alpha",    L"beta",      L"rc",       L"snapshot", L"nightly",  L"setup",  L"installer",
        L"install", L"portable", L"archive",   L"archived", L"file",     L"document", L"doc",    L"data",
        L"part",    L"vol",      L"volume",    L"en",       L"eng",      L"english",  L"de",     L"ger",
        L"german",  L"x86",      L"x64",       L"win",      L"win32",    L"win64",    L"jan",    L"feb",
        L"mar",     L"apr",      L"may",       L"jun",      L"jul",      L"aug",      L"sep",    L"oct",
        L"nov",     L"dec",
    };
    return words;
}

std::wstring_view withoutExtension(std::wstring_view name) { return name.substr(0, name.rfind(L'.')); }

std::wstring_view textBehindLastDot(std::wstring_view name) {
    const std::size_t dot = name.rfind(L'.');
    return dot == std::wstring_view::npos ? std::wstring_view() : name.substr(dot + 1);
}

std::vector<std::wstring> tokenizeName(std::wstring_view name, CamelCase camelCase, LetterCase letterCase) {
    std::vector<std::wstring> tokens;
    forEachPiece(withoutExtension(name), camelCase, [&](std::wstring_view piece) {
        if (std::all_of(piece.begin(), piece.end(), isDigit)) return;
        std::wstring token(piece);
        if (letterCase == LetterCase::Lower)
            for (wchar_t& unit : token) unit = lowerUnit(unit);
        if (!stopWords().contains(token)) tokens.push_back(std::move(token));
    });
    return tokens;
}

std::wstring stemName(std::wstring_view name) {
    std::vector<std::wstring> tokens = tokenizeName(name, CamelCase::Split, LetterCase::Lower);
    std::sort(tokens.begin(), tokens.end());
    std::wstring stem;
    for (const std::wstring& token : tokens) {
        if (!stem.empty()) stem += L' ';
        stem += token;
    }
    return stem;
}

}  // namespace varnelo
