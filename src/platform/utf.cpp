#include "platform/utf.h"

#include <cstdint>

namespace varnelo {

namespace {

constexpr std::uint32_t kReplacement = 0xFFFD;

bool isHighSurrogate(std::uint32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool isLowSurrogate(std::uint32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

void appendUtf8(std::string& out, std::uint32_t code) {
    const auto put = [&out](std::uint32_t byte) { out.push_back(static_cast<char>(byte)); };
    if (code < 0x80) {
        put(code);
    } else if (code < 0x800) {
        put(0xC0 | code >> 6);
        put(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        put(0xE0 | code >> 12);
        put(0x80 | (code >> 6 & 0x3F));
        put(0x80 | (code & 0x3F));
    } else {
        put(0xF0 | code >> 18);
        put(0x80 | (code >> 12 & 0x3F));
        put(0x80 | (code >> 6 & 0x3F));
        put(0x80 | (code & 0x3F));
    }
}

void appendWide(std::wstring& out, std::uint32_t code) {
    if (code < 0x10000) {
        out.push_back(static_cast<wchar_t>(code));
    } else {
        out.push_back(static_cast<wchar_t>(0xD800 + ((code - 0x10000) >> 10)));
        out.push_back(static_cast<wchar_t>(0xDC00 + ((code - 0x10000) & 0x3FF)));
    }
}

// What a lead byte promises (Unicode Standard, table 3-7): how many bytes follow, and the range of the first
// of them, which keeps out overlong forms, surrogates and values above U+10FFFF.
struct Lead {
    int following;
    std::uint8_t low;
    std::uint8_t high;
};

Lead leadOf(std::uint8_t byte) {
    if (byte >= 0xC2 && byte <= 0xDF) return {1, 0x80, 0xBF};
    if (byte == 0xE0) return {2, 0xA0, 0xBF};
    if (byte == 0xED) return {2, 0x80, 0x9F};
    if (byte >= 0xE1 && byte <= 0xEF) return {2, 0x80, 0xBF};
    if (byte == 0xF0) return {3, 0x90, 0xBF};
    if (byte >= 0xF1 && byte <= 0xF3) return {3, 0x80, 0xBF};
    if (byte == 0xF4) return {3, 0x80, 0x8F};
    return {0, 1, 0};
}

}  // namespace

std::string utf8FromWide(std::wstring_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::uint32_t unit = static_cast<std::uint32_t>(text[i]) & 0xFFFF;
        const std::uint32_t next = i + 1 < text.size() ? static_cast<std::uint32_t>(text[i + 1]) & 0xFFFF : 0;
        if (isHighSurrogate(unit) && isLowSurrogate(next)) {
            appendUtf8(out, 0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00));
            ++i;
        } else if (isHighSurrogate(unit) || isLowSurrogate(unit)) {
            appendUtf8(out, kReplacement);
        } else {
            appendUtf8(out, unit);
        }
    }
    return out;
}

std::wstring wideFromUtf8(std::string_view text) {
    std::wstring out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        const auto first = static_cast<std::uint8_t>(text[i++]);
        if (first < 0x80) {
            out.push_back(static_cast<wchar_t>(first));
            continue;
        }
        const Lead lead = leadOf(first);
        std::uint32_t code = first & (0x3F >> lead.following);
        std::uint8_t low = lead.low;
        std::uint8_t high = lead.high;
        int missing = lead.following;
        while (missing > 0 && i < text.size()) {
            const auto byte = static_cast<std::uint8_t>(text[i]);
            if (byte < low || byte > high) break;
            code = code << 6 | (byte & 0x3F);
            low = 0x80;
            high = 0xBF;
            --missing;
            ++i;
        }
        appendWide(out, lead.following == 0 || missing > 0 ? kReplacement : code);
    }
    return out;
}

}  // namespace varnelo
