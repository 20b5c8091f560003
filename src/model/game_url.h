#pragma once

#include <string_view>

namespace varnelo {

// Whether the text holds, in any case and at any place, the address by which a game launcher starts a game.
bool isGameUrl(std::wstring_view text);

}  // namespace varnelo
