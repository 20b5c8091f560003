#include "model/game_url.h"

#include "platform/text.h"

namespace varnelo {

bool isGameUrl(std::wstring_view text) {
    const std::wstring lower = lowered(text);
    return lower.find(L"steam://rungameid/") != std::wstring::npos ||
           lower.find(L"uplay://launch/") != std::wstring::npos;
}

}  // namespace varnelo
