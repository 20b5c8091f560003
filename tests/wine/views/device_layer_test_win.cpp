#include "views/device_layer_win.h"

#include <gtest/gtest.h>

#include "support/surface_window_win.h"

namespace varnelo {
namespace {

// Whether all that was asked of the device before the query's end is done.
bool done(DeviceLayer& layer, ID3D11Query* query) {
    return layer.context->GetData(query, nullptr, 0, D3D11_ASYNC_GETDATA_DONOTFLUSH) == S_OK;
}

TEST(DeviceLayerWinTest, TheLastFrameIsDrawnWhenTheWaitEnds) {
    SurfaceWindow window(800, 600);
    ASSERT_TRUE(window.ready);
    const D3D11_QUERY_DESC event{D3D11_QUERY_EVENT, 0};
    ComRef<ID3D11Query> query;
    ASSERT_EQ(window.layer.device->CreateQuery(&event, query.put()), S_OK);
    int drawnLater = 0;
    int drawnWhenTheWaitEnds = 0;
    for (int frame = 0; frame < 30; ++frame) {
        window.layer.clear();
        for (int i = 0; i < 5; ++i) {
            window.base.drawBlurRect({0, 0, 800, 600}, window.surface.backgroundSRV.get(),
                                     scrollBarTrackTint(1));
        }
        window.layer.context->End(query.get());
        window.layer.present();
        if (done(window.layer, query.get())) continue;
        ++drawnLater;
        window.layer.awaitPresented();
        drawnWhenTheWaitEnds += done(window.layer, query.get()) ? 1 : 0;
    }
    ASSERT_GT(drawnLater, 0) << "the frames are too light to tell";
    // A busy machine may draw a frame for longer than the wait's limit.
    EXPECT_GT(2 * drawnWhenTheWaitEnds, drawnLater) << "of " << drawnLater;
}

}  // namespace
}  // namespace varnelo
