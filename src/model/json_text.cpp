#include "model/json_text.h"

#include "platform/text.h"

namespace varnelo {
namespace {

void appendControl(std::string& out, unsigned char byte) {
    constexpr char kDigits[] = "0123456789abcdef";
    out += "\\u00";
    out += kDigits[byte >> 4];
    out += kDigits[byte & 0xF];
}

}  // namespace

std::string jsonEscape(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (const char byte : text) {
        switch (byte) {
            case '\t':
                out += "\\t";
                break;
            case '\n':
                out += "\\n";
                break;
            case '\r':
                out += "\\r";
                break;
            case '"':
                out += "\\\"";
                break;
            case '\\':
                out += "\\\\";
                break;
            default:
                if (static_cast<unsigned char>(byte) < 0x20)
                    appendControl(out, static_cast<unsigned char>(byte));
                else
                    out += byte;
        }
    }
    return out;
}

std::wstring jsonValue(std::wstring_view json, std::wstring_view key) {
    const std::wstring quoted = L'"' + std::wstring(key) + L'"';
    const std::size_t found = json.find(quoted);
    if (found == json.npos) return {};
    const std::size_t colon = json.find(L':', found + quoted.size());
    if (colon == json.npos) return {};
    std::wstring_view value = json.substr(colon + 1);
    value = trimmed(value.substr(0, value.find_first_of(L",}")));
    if (value.size() >= 2 && value.front() == L'"' && value.back() == L'"')
        value = value.substr(1, value.size() - 2);
    return std::wstring(value);
}

}  // namespace varnelo
