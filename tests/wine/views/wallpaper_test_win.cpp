#include "views/wallpaper_win.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/log_capture.h"
#include "support/surface_fixture_win.h"

namespace varnelo {
namespace {

using reference::Picture;
using Lines = std::vector<std::wstring>;

constexpr int kWidth = 96;
constexpr int kHeight = 64;

using WallpaperTest = SurfaceFixture;

TEST_F(WallpaperTest, TheWallpaperIsStretchedToTheSurface) {
    const WallpaperSetting setting(file(L"both.bmp", bitmap(red(), green())));
    SurfaceWindow window(kWidth, kHeight);
    const Picture picture = frameOf(window);
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x) {
            if (x > kWidth / 2 - 3 && x < kWidth / 2 + 3) continue;
            ASSERT_EQ(picture.at(x, y).r, x < kWidth / 2 ? 1 : 0) << x << ", " << y;
            ASSERT_EQ(picture.at(x, y).g, x < kWidth / 2 ? 0 : 1) << x << ", " << y;
        }
}

TEST_F(WallpaperTest, AnEmptyWallpaperPathLeavesTheBackgroundBlack) {
    const WallpaperSetting setting(L"");
    const LogCapture log;
    SurfaceWindow window(kWidth, kHeight);
    EXPECT_TRUE(contains(log.lines(), L"loadTexture: CreateDecoderFromFilename FAILED hr=0x"));
    EXPECT_TRUE(contains(log.lines(), L"[INFO]   loadTextureFromFile: FAILED, backgroundSRV="));
    EXPECT_FALSE(window.surface.backgroundSRV);
    const Picture picture = frameOf(window);
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x)
            ASSERT_EQ(picture.at(x, y).r + picture.at(x, y).g + picture.at(x, y).b, 0) << x << ", " << y;
}

TEST_F(WallpaperTest, AChangedWallpaperIsSeenAfterFiveSecondsOfFrameTime) {
    const std::wstring first = file(L"first.bmp", bitmap(red(), red()));
    const std::wstring second = file(L"second.bmp", bitmap(blue(), blue()));
    const WallpaperSetting setting(first);
    SurfaceWindow window(kWidth, kHeight);
    WallpaperSetting::set(second);
    for (int frame = 0; frame < 49; ++frame) window.surface.update(0.1F);
    EXPECT_EQ(frameOf(window).at(10, 10).r, 1);

    const LogCapture log;
    for (int frame = 0; frame < 2; ++frame) window.surface.update(0.1F);
    EXPECT_EQ(frameOf(window).at(10, 10).r, 0);
    EXPECT_EQ(frameOf(window).at(10, 10).b, 1);
    EXPECT_EQ(window.surface.wallpaperPath, second);
    expectLines(log.lines(), {
                                 L"[INFO] Wallpaper changed detected \u2013 reloading texture",
                                 L"[INFO]   Old: " + first,
                                 L"[INFO]   New: " + second,
                                 L"[INFO] loadTexture: original 40x4, target 96x64",
                                 L"[INFO] loadTexture: CreateSRV hr=0x00000000, backgroundSRV=",
                                 L"[INFO]   Wallpaper reload: OK, backgroundSRV=",
                             });
}

TEST_F(WallpaperTest, AnUnchangedWallpaperIsNotReadAgain) {
    SurfaceWindow window(kWidth, kHeight);
    const LogCapture log;
    for (int frame = 0; frame < 120; ++frame) window.surface.update(0.1F);
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(WallpaperTest, AFailedReloadLeavesNoWallpaperUntilThePathChangesAgain) {
    const std::wstring good = file(L"good.bmp", bitmap(green(), green()));
    const std::wstring bad = file(L"bad.bmp", "this is no picture");
    const WallpaperSetting setting(good);
    SurfaceWindow window(kWidth, kHeight);
    WallpaperSetting::set(bad);
    const LogCapture log;
    window.surface.update(5);
    EXPECT_FALSE(window.surface.backgroundSRV);
    EXPECT_TRUE(contains(log.lines(), L"[INFO]   Wallpaper reload: FAILED, backgroundSRV="));
    const std::size_t lines = log.lines().size();
    window.surface.update(5);
    EXPECT_EQ(log.lines().size(), lines);
    WallpaperSetting::set(good);
    window.surface.update(5);
    EXPECT_EQ(frameOf(window).at(10, 10).g, 1);
}

TEST_F(WallpaperTest, EachFailingStepOfALoadHasItsLine) {
    SurfaceWindow window(kWidth, kHeight);
    const std::wstring good = file(L"good.bmp", bitmap(green(), green()));
    struct Case {
        std::wstring path;
        UINT width, height;
        const wchar_t* line;
    };
    const std::string gifWithoutPicture("GIF89a\x01\x00\x01\x00\x00\x00\x00;", 14);
    const Case cases[] = {
        {L"", 8, 8, L"[ERROR] loadTexture: CreateDecoderFromFilename FAILED hr=0x"},
        {folder + L"absent.png", 8, 8,
         L"[ERROR] loadTexture: CreateDecoderFromFilename FAILED hr=0x80070002 file="},
        {file(L"text.png", "no picture at all"), 8, 8,
         L"[ERROR] loadTexture: CreateDecoderFromFilename FAILED hr=0x88982F50 file="},
        {file(L"none.gif", gifWithoutPicture), 8, 8, L"[ERROR] loadTexture: GetFrame failed"},
        {good, 0, 8, L"[ERROR] loadTexture: scaler Initialize failed"},
        {good, 70000, 70000, L"[ERROR] loadTexture: CopyPixels failed"},
        {good, 20000, 1, L"[ERROR] loadTexture: CreateTexture2D failed"},
    };
    for (const Case& each : cases) {
        const LogCapture log;
        ComRef<ID3D11ShaderResourceView> view;
        EXPECT_FALSE(loadTexture(window.layer.device.get(), each.path, each.width, each.height, view));
        EXPECT_FALSE(view);
        const Lines lines = log.lines();
        ASSERT_FALSE(lines.empty());
        EXPECT_EQ(lines.back().substr(0, std::wstring(each.line).size()), each.line);
        EXPECT_EQ(lines.size(), contains(lines, L"original") ? 2U : 1U);
    }
}

TEST_F(WallpaperTest, ACutOffPictureNeverCrashes) {
    SurfaceWindow window(kWidth, kHeight);
    const std::string whole = bitmap(red(), green());
    for (std::size_t length = 0; length < whole.size(); length += 13) {
        ComRef<ID3D11ShaderResourceView> view;
        const bool loaded =
            loadTexture(window.layer.device.get(), file(L"cut.bmp", whole.substr(0, length)), 8, 8, view);
        EXPECT_EQ(loaded, static_cast<bool>(view));
    }
}

}  // namespace
}  // namespace varnelo
