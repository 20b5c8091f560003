// Any string of UTF-16 units as a file name: what the words and the stem promise must hold for all of them.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "model/tokenizer.h"

namespace varnelo {
namespace {

void require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "broken: %s\n", what);
    std::abort();
}

bool isDigit(wchar_t unit) { return unit >= L'0' && unit <= L'9'; }
bool isCapital(wchar_t unit) { return unit >= L'A' && unit <= L'Z'; }
bool isSeparator(wchar_t unit) {
    return unit == L' ' || (unit >= L'\t' && unit <= L'\r') || unit == L'_' || unit == L'-' || unit == L'.';
}

std::wstring nameFrom(const std::uint8_t* data, std::size_t size) {
    std::wstring name;
    for (std::size_t i = 0; i + 1 < size; i += 2) name += static_cast<wchar_t>(data[i] | data[i + 1] << 8);
    return name;
}

std::wstring joined(const std::vector<std::wstring>& words) {
    std::wstring text;
    for (const std::wstring& word : words) text.append(text.empty() ? L"" : L" ").append(word);
    return text;
}

void checkWord(const std::wstring& word, LetterCase letterCase) {
    require(!word.empty(), "no word is empty");
    require(!std::all_of(word.begin(), word.end(), isDigit), "no word is digits alone");
    require(!stopWords().contains(word), "no word is a stop word as it stands");
    require(std::none_of(word.begin(), word.end(), isSeparator), "no word holds a separator");
    if (letterCase == LetterCase::Lower)
        require(std::none_of(word.begin(), word.end(), isCapital), "no lowered word holds a capital");
}

// The words occur in the name, which has lost its extension, one behind the other and as it spells them.
void checkOrder(std::wstring_view name, const std::vector<std::wstring>& words) {
    std::size_t from = 0;
    for (const std::wstring& word : words) {
        const std::size_t at = name.find(word, from);
        require(at != std::wstring_view::npos, "every word comes from the name, in order");
        from = at + word.size();
    }
}

void checkStem(const std::wstring& name) {
    const std::wstring stem = stemName(name);
    require(stemName(stem) == stem, "the stem of a stem is itself");
    require(stemName(name.substr(0, name.rfind(L'.')) + L".txt") == stem, "the extension plays no part");

    std::vector<std::wstring> words = tokenizeName(name, CamelCase::Split, LetterCase::Lower);
    std::reverse(words.begin(), words.end());
    require(stemName(joined(words)) == stem, "the order of the words plays no part");
    require(stemName(joined(words) + L" 2021 final") == stem, "versions play no part");
    std::sort(words.begin(), words.end());
    require(joined(words) == stem, "the stem is the sorted words");
}

void check(const std::wstring& name) {
    for (const CamelCase camelCase : {CamelCase::Keep, CamelCase::Split}) {
        const auto spelled = tokenizeName(name, camelCase, LetterCase::Keep);
        const auto lowered = tokenizeName(name, camelCase, LetterCase::Lower);
        for (const std::wstring& word : spelled) checkWord(word, LetterCase::Keep);
        for (const std::wstring& word : lowered) checkWord(word, LetterCase::Lower);
        require(lowered.size() <= spelled.size(), "lowering finds more stop words, never fewer");
        checkOrder(withoutExtension(name), spelled);
    }
    checkStem(name);
}

}  // namespace
}  // namespace varnelo

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    varnelo::check(varnelo::nameFrom(data, size));
    return 0;
}
