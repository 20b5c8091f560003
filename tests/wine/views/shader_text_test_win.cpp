#include "views/shader_text_win.h"

#include <gtest/gtest.h>

#include "resource_ids.h"
#include "support/surface_window_win.h"

namespace varnelo {
namespace {

TEST(ShaderText, EveryShaderOfTheResourcesCompiles) {
    EXPECT_TRUE(compileShader(shaderResource(IDR_SHADER_BLUR_PS, "BackgroundBlurPS.hlsl"), "ps_5_0"));
    EXPECT_TRUE(compileShader(shaderResource(IDR_SHADER_ICON_PS, "IconPS.hlsl"), "ps_5_0"));
    EXPECT_TRUE(compileShader(shaderResource(IDR_SHADER_ICON_VS, "IconVS.hlsl"), "vs_5_0"));
}

TEST(ShaderText, ABadTextGivesNoCode) {
    EXPECT_FALSE(compileShader({"float4 main( : SV_TARGET { return }", "bad.hlsl"}, "ps_5_0"));
    EXPECT_FALSE(compileShader({"", "empty.hlsl"}, "ps_5_0"));
}

TEST(ShaderText, AResourceThatIsNotThereGivesNoCode) {
    EXPECT_FALSE(compileShader(shaderResource(60000, "none.hlsl"), "ps_5_0"));
}

TEST(ShaderText, AnIconWithoutItsShaderIsNotDrawnAndTheFrameGoesOn) {
    SurfaceWindow window(64, 48);
    ASSERT_TRUE(window.ready);
    const reference::Picture wallpaper = reference::busyPicture(64, 48, 3);
    window.surface.backgroundSRV = window.upload(wallpaper);
    window.layer.clear();
    window.surface.drawBackground();
    window.glass.release();
    window.glass.begin();
    window.glass.drawGlass({10, 10, 20}, window.uploadIcon(reference::busyPicture(8, 8, 4)),
                           window.surface.backgroundSRV.get(), {});
    EXPECT_EQ(greatestDifference(window.backBuffer(), wallpaper).steps, 0);
    window.base.release();
    window.base.drawBlurRect({0, 0, 20, 20}, window.surface.backgroundSRV.get(), scrollBarThumbTint(1));
    EXPECT_EQ(greatestDifference(window.backBuffer(), wallpaper).steps, 0);
}

}  // namespace
}  // namespace varnelo
