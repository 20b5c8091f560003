#pragma once

// Cuts file names into the words that say what a file is about: without its extension, numbers, version
// marks and month names. All character classes are those of the C locale, so only ASCII letters, digits
// and blanks count as such; every other UTF-16 unit, lone surrogates included, is an ordinary character.

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace varnelo {

using WordSet = std::set<std::wstring, std::less<>>;

enum class CamelCase { Keep, Split };   // Split: MyFileName -> My File Name, HTMLFile -> HTML File
enum class LetterCase { Keep, Lower };  // of the tokens returned

// The 82 words, all lower case, that say nothing about a file. Shared and immutable.
const WordSet& stopWords();

// The name without its last '.' and what stands behind it; the whole name when it has no dot.
std::wstring_view withoutExtension(std::wstring_view name);

// What stands behind the last '.'; empty when there is no dot.
std::wstring_view textBehindLastDot(std::wstring_view name);

// The tokens of `name` in their order, repeated ones kept. Pieces of digits only and stop words are dropped.
// With LetterCase::Keep a stop word is recognised only where the name already spells it in lower case.
std::vector<std::wstring> tokenizeName(std::wstring_view name, CamelCase camelCase, LetterCase letterCase);

// The order-free key of a name: its lower-case tokens, camel case split, sorted and joined by one blank. A
// name of nothing but stop words and digits has the empty key.
std::wstring stemName(std::wstring_view name);

}  // namespace varnelo
