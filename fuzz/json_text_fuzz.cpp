// Any bytes as a text to write into JSON, and any UTF-16 units as a reply to read a member from. The reader
// is compared with a plain one that walks unit by unit.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "model/json_text.h"
#include "platform/utf.h"

namespace varnelo {
namespace {

void require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "broken: %s\n", what);
    std::abort();
}

int digitOf(char digit) {
    if (digit >= '0' && digit <= '9') return digit - '0';
    return digit >= 'a' && digit <= 'f' ? digit - 'a' + 10 : -1;
}

// What a JSON reader makes of the escapes; stops at anything that may not stand inside a JSON string.
std::string unescaped(const std::string& text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        require(static_cast<unsigned char>(text[i]) >= 0x20 && text[i] != '"', "nothing ends the string");
        if (text[i] != '\\') {
            out += text[i];
            continue;
        }
        require(++i < text.size(), "no backslash stands at the end");
        static const std::string kShort = "tnr\"\\";
        if (const std::size_t known = kShort.find(text[i]); known != std::string::npos) {
            out += "\t\n\r\"\\"[known];
            continue;
        }
        require(text[i] == 'u' && i + 4 < text.size(), "other escapes are \\u with four digits");
        int value = 0;
        for (int digit = 0; digit < 4; ++digit) {
            const int part = digitOf(text[++i]);
            require(part >= 0, "the digits are hexadecimal, in lower case");
            value = value * 16 + part;
        }
        require(value < 0x20, "only control bytes are written by number");
        out += static_cast<char>(value);
    }
    return out;
}

bool isWhite(wchar_t unit) { return unit == L' ' || unit == L'\t' || unit == L'\r' || unit == L'\n'; }

bool standsAt(const std::wstring& text, std::size_t at, const std::wstring& part) {
    if (at + part.size() > text.size()) return false;
    for (std::size_t i = 0; i < part.size(); ++i)
        if (text[at + i] != part[i]) return false;
    return true;
}

std::wstring plainValue(const std::wstring& json, const std::wstring& key) {
    const std::wstring quoted = L"\"" + key + L"\"";
    std::size_t at = 0;
    while (at < json.size() && !standsAt(json, at, quoted)) ++at;
    if (at >= json.size()) return {};
    at += quoted.size();
    while (at < json.size() && json[at] != L':') ++at;
    if (at == json.size()) return {};
    std::wstring value;
    for (++at; at < json.size() && json[at] != L',' && json[at] != L'}'; ++at) value += json[at];
    while (!value.empty() && isWhite(value.back())) value.pop_back();
    while (!value.empty() && isWhite(value.front())) value.erase(0, 1);
    const bool inQuotes = value.size() > 1 && value.front() == L'"' && value.back() == L'"';
    return inQuotes ? std::wstring(value.begin() + 1, value.end() - 1) : value;
}

void checkValue(const std::wstring& json, const std::wstring& key) {
    // Memory of exactly the text's size, so that the sanitizer sees a step past its end.
    const std::unique_ptr<wchar_t[]> exact(new wchar_t[json.size()]);
    std::copy(json.begin(), json.end(), exact.get());
    const std::wstring value = jsonValue({exact.get(), json.size()}, key);
    require(value == plainValue(json, key), "the value is what a plain reader finds");
    require(json.find(value) != std::wstring::npos, "the value stands in the text");
    require(value.find_first_of(L",}") == std::wstring::npos, "a comma or a brace ends the value");
}

// A string without what ends a value too early comes back, in its escaped form, through a whole object.
void checkRound(const std::string& text) {
    std::string plain = text;
    std::erase_if(plain, [](char byte) { return byte == ',' || byte == '}'; });
    const std::string object = "{\"id\": \"1\", \"text\" : \"" + jsonEscape(plain) + "\" }";
    require(jsonValue(wideFromUtf8(object), L"text") == wideFromUtf8(jsonEscape(plain)),
            "what was written is read back");
}

void check(const std::string& bytes) {
    require(unescaped(jsonEscape(bytes)) == bytes, "the escapes stand for what was written");
    checkRound(bytes);

    std::wstring units;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
        units += static_cast<wchar_t>(static_cast<unsigned char>(bytes[i]) |
                                      static_cast<unsigned char>(bytes[i + 1]) << 8);
    const std::wstring text = wideFromUtf8(bytes);
    for (const std::wstring& key : {std::wstring(L"group"), std::wstring(L"a:b"), std::wstring()}) {
        checkValue(text, key);
        checkValue(units, key);
        checkValue(L"\"" + key + L"\"" + units, key);
    }
}

}  // namespace
}  // namespace varnelo

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    varnelo::check(std::string(reinterpret_cast<const char*>(data), size));
    return 0;
}
