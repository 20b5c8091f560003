#include "model/url_file.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>

#include "platform/utf.h"

namespace varnelo {
namespace {

// Calls `take` with each line until it answers true.
template <class Char, class Take>
void eachLine(std::basic_string_view<Char> text, Take take) {
    while (!text.empty()) {
        const auto end = text.find(Char('\n'));
        auto line = text.substr(0, end);
        if (!line.empty() && line.back() == Char('\r')) line.remove_suffix(1);
        if (take(line) || end == text.npos) return;
        text.remove_prefix(end + 1);
    }
}

std::wstring wideFromUnknown(std::string_view bytes) {
    std::wstring wide = wideFromUtf8(bytes);
    if (utf8FromWide(wide) == bytes) return wide;
    wide.clear();
    for (const char byte : bytes) wide += static_cast<wchar_t>(static_cast<unsigned char>(byte));
    return wide;
}

std::wstring wideFromUtf16(std::span<const std::uint8_t> bytes, bool bigEndian) {
    std::wstring wide;
    wide.reserve(bytes.size() / 2);
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const unsigned low = bytes[bigEndian ? i + 1 : i];
        const unsigned high = bytes[bigEndian ? i : i + 1];
        wide += static_cast<wchar_t>(high << 8 | low);
    }
    return wide;
}

std::optional<std::wstring> targetInUtf16(const std::wstring& text) {
    std::optional<std::wstring> target;
    eachLine(std::wstring_view(text), [&target](std::wstring_view line) {
        if (line.starts_with(L"URL=")) target = line.substr(4);
        return target.has_value();
    });
    return target;
}

}  // namespace

std::optional<std::wstring> urlFileTarget(std::span<const std::uint8_t> content) {
    const auto startsWith = [&content](std::initializer_list<std::uint8_t> mark) {
        return content.size() >= mark.size() && std::equal(mark.begin(), mark.end(), content.begin());
    };
    if (startsWith({0xFF, 0xFE})) return targetInUtf16(wideFromUtf16(content.subspan(2), false));
    if (startsWith({0xFE, 0xFF})) return targetInUtf16(wideFromUtf16(content.subspan(2), true));
    if (startsWith({0xEF, 0xBB, 0xBF})) content = content.subspan(3);

    std::optional<std::wstring> target;
    const std::string_view text(reinterpret_cast<const char*>(content.data()), content.size());
    eachLine(text, [&target](std::string_view line) {
        if (line.starts_with("URL=")) target = wideFromUnknown(line.substr(4));
        return target.has_value();
    });
    return target;
}

}  // namespace varnelo
