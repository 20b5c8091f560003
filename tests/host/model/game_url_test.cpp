#include "model/game_url.h"

#include <gtest/gtest.h>

namespace varnelo {
namespace {

TEST(GameUrl, IsTheAddressOfALauncher) {
    EXPECT_TRUE(isGameUrl(L"steam://rungameid/440"));
    EXPECT_TRUE(isGameUrl(L"uplay://launch/635/0"));
}

TEST(GameUrl, MayHaveNothingBehindIt) {
    EXPECT_TRUE(isGameUrl(L"steam://rungameid/"));
    EXPECT_TRUE(isGameUrl(L"uplay://launch/"));
}

TEST(GameUrl, IsFoundAtAnyPlaceAndInAnyCase) {
    EXPECT_TRUE(isGameUrl(L"\"C:\\Steam\\steam.exe\" STEAM://RunGameId/440"));
    EXPECT_TRUE(isGameUrl(L"URL=Uplay://Launch/1"));
}

TEST(GameUrl, IsNoOtherAddress) {
    for (const wchar_t* text : {L"", L"steam://rungameid", L"uplay://launch", L"steam://run/440",
                                L"steam:/rungameid/440", L"https://example.com/", L"C:\\Games\\game.exe"}) {
        EXPECT_FALSE(isGameUrl(text)) << text;
    }
}

}  // namespace
}  // namespace varnelo
