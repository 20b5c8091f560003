#include "views/text_ink_win.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "views/quad_geometry_win.h"
#include "views/render_surface_win.h"
#include "views/shader_text_win.h"
#include "views/texture_shape_win.h"

namespace varnelo {

namespace {

// Empty pixels around the ink of a band: no tap reaches farther.
constexpr int kMargin = 4;
constexpr UINT kFirstWidth = 512;
constexpr UINT kFirstHeight = 256;

constexpr float kRestingHalo = 0.45F;
constexpr float kDraggedHalo = 0.6F;
constexpr float kHeaderGlow = 0.35F;

struct Tap {
    int dx, dy;
    float weight;
};

std::vector<Tap> labelTaps() {
    return {{-2, 0, 1}, {2, 0, 1}, {0, -2, 1}, {0, 2, 1}, {-1, -1, 1}, {1, -1, 1}, {-1, 1, 1}, {1, 1, 1}};
}

// A disc of radius 3 that fades outward; at the radius itself nothing is left.
std::vector<Tap> headerTaps() {
    constexpr int kRadius = 3;
    std::vector<Tap> taps;
    for (int dx = -kRadius; dx <= kRadius; ++dx) {
        for (int dy = -kRadius; dy <= kRadius; ++dy) {
            const float weight = 1 - std::sqrt(static_cast<float>(dx * dx + dy * dy)) / kRadius;
            if (weight > 0) taps.push_back({dx, dy, weight});
        }
    }
    return taps;
}

// A triangle strip over the whole viewport.
constexpr char kVertexText[] =
    "float4 main(uint id : SV_VertexID) : SV_POSITION"
    "{ return float4(float(id & 1) * 2 - 1, 1 - float(id >> 1) * 2, 0, 1); }";

// In millionths, so that the user's decimal point stays out of the text.
std::string number(float value) { return std::to_string(std::lround(value * 1000000)) + " / 1000000.0"; }

// The taps stand in the text as numbers: shader compilers in use know neither loops over an array of
// constants nor dynamic indexes into it.
std::string composeText(const std::vector<Tap>& taps) {
    std::string text =
        "Texture2D ink : register(t0);"
        "cbuffer ComposeCB : register(b0) { int2 shift; int stride; float opacity; };"
        "float4 main(float4 pos : SV_POSITION) : SV_TARGET {"
        "int2 p = int2(pos.xy) + shift;"
        "int2 h = p + int2(0, stride);"
        "float clear = 1;";
    for (const Tap& tap : taps) {
        text += "clear *= 1 - ink.Load(int3(h - int2(" + std::to_string(tap.dx) + ", " +
                std::to_string(tap.dy) + "), 0)).a * opacity * " + number(tap.weight) + ";";
    }
    return text +
           "float4 c = ink.Load(int3(p + int2(0, 2 * stride), 0)) * clear + float4(0, 0, 0, 1 - clear);"
           "float t = ink.Load(int3(p, 0)).a;"
           "return c * (1 - t) + float4(t, t, t, t); }";
}

// Puts the bound target, viewports and rasterizer state back.
class TargetKeeper {
public:
    explicit TargetKeeper(ID3D11DeviceContext* deviceContext) : context(deviceContext) {
        context->OMGetRenderTargets(1, target.put(), nullptr);
        context->RSGetViewports(&viewportCount, viewports);
        context->RSGetState(rasterizer.put());
    }
    TargetKeeper(const TargetKeeper&) = delete;
    TargetKeeper& operator=(const TargetKeeper&) = delete;
    ~TargetKeeper() {
        context->OMSetRenderTargets(1, target.address(), nullptr);
        context->RSSetViewports(viewportCount, viewports);
        context->RSSetState(rasterizer.get());
    }

private:
    ID3D11DeviceContext* context;
    ComRef<ID3D11RenderTargetView> target;
    UINT viewportCount = D3D11_VIEWPORT_AND_SCISSORRECT_OBJECT_COUNT_PER_PIPELINE;
    D3D11_VIEWPORT viewports[D3D11_VIEWPORT_AND_SCISSORRECT_OBJECT_COUNT_PER_PIPELINE] = {};
    ComRef<ID3D11RasterizerState> rasterizer;
};

}  // namespace

void TextInk::init() {
    release();
    if (!render.device) return;
    vertexShader = createVertexShader(render.device, {kVertexText, "ComposeVS.hlsl"}).shader;
    labelShader = createPixelShader(render.device, {composeText(labelTaps()), "LabelPS.hlsl"});
    headerShader = createPixelShader(render.device, {composeText(headerTaps()), "HeaderPS.hlsl"});
    constants = createConstantBuffer(render.device, sizeof(ComposeCB));
}

void TextInk::release() {
    underlineBrush.reset();
    selectionBrush.reset();
    shadowBrush.reset();
    textBrush.reset();
    inkTarget.reset();
    inkView.reset();
    inkWidth = inkHeight = 0;
    constants.reset();
    headerShader.reset();
    labelShader.reset();
    vertexShader.reset();
}

bool TextInk::ready() const {
    return render.context && render.d2dFactory && vertexShader && labelShader && headerShader && constants;
}

bool TextInk::reserve(const Bands& bands) {
    const UINT width = static_cast<UINT>(bands.width + 2 * kMargin);
    const UINT height = static_cast<UINT>(3 * bands.stride + kMargin);
    if (inkTarget && width <= inkWidth && height <= inkHeight) return true;
    return createTexture(std::max({width, inkWidth, kFirstWidth}),
                         std::max({height, inkHeight, kFirstHeight})) &&
           createBrushes();
}

bool TextInk::createTexture(UINT width, UINT height) {
    inkTarget.reset();
    inkView.reset();
    inkWidth = inkHeight = 0;

    const D3D11_TEXTURE2D_DESC description = bgraTexture(width, height, kTargetAndSource);
    ComRef<ID3D11Texture2D> texture;
    ComRef<IDXGISurface> surface;
    if (FAILED(render.device->CreateTexture2D(&description, nullptr, texture.put())) ||
        FAILED(render.device->CreateShaderResourceView(texture.get(), nullptr, inkView.put())) ||
        FAILED(texture->QueryInterface(__uuidof(IDXGISurface), surface.putVoid()))) {
        return false;
    }
    inkTarget = render.makeTarget(surface.get(), DXGI_FORMAT_B8G8R8A8_UNORM);
    if (!inkTarget) return false;
    inkTarget->SetTextAntialiasMode(D2D1_TEXT_ANTIALIAS_MODE_GRAYSCALE);
    ++made.textures;
    inkWidth = width;
    inkHeight = height;
    return true;
}

bool TextInk::createBrushes() {
    inkTarget->CreateSolidColorBrush(D2D1_COLOR_F{1, 1, 1, 1}, textBrush.put());
    inkTarget->CreateSolidColorBrush(D2D1_COLOR_F{0, 0, 0, 1}, shadowBrush.put());
    inkTarget->CreateSolidColorBrush(D2D1_COLOR_F{0.2F, 0.45F, 0.9F, 0.5F}, selectionBrush.put());

    const D2D1_GRADIENT_STOP stops[] = {{0, {1, 1, 1, 0.4F}}, {1, {1, 1, 1, 0}}};
    ComRef<ID2D1GradientStopCollection> collection;
    inkTarget->CreateGradientStopCollection(stops, 2, D2D1_GAMMA_2_2, D2D1_EXTEND_MODE_CLAMP,
                                            collection.put());
    if (collection) {
        const D2D1_LINEAR_GRADIENT_BRUSH_PROPERTIES line{{0, 0}, {kUnderlineLength, 0}};
        const D2D1_BRUSH_PROPERTIES plain{1, {1, 0, 0, 1, 0, 0}};
        inkTarget->CreateLinearGradientBrush(&line, &plain, collection.get(), underlineBrush.put());
    }
    made.brushes += 4;
    return textBrush && shadowBrush && selectionBrush && underlineBrush;
}

// Three empty bands.
void TextInk::beginInk(const Bands& bands) {
    inkTarget->BeginDraw();
    const D2D1_RECT_F area{0, 0, static_cast<float>(bands.width + 2 * kMargin),
                           static_cast<float>(3 * bands.stride + kMargin)};
    inkTarget->PushAxisAlignedClip(&area, D2D1_ANTIALIAS_MODE_ALIASED);
    inkTarget->Clear(nullptr);
    inkTarget->PopAxisAlignedClip();
}

bool TextInk::drawText(const PictureLook& look, const PicturePlace& place, IDWriteTextLayout* layout,
                       const D2D1_RECT_F& plate, ID3D11RenderTargetView* target) {
    const Bands bands{place.extent.width, place.extent.height, place.extent.height + kMargin};
    if (!ready() || !layout || !target || !reserve(bands)) return false;
    const float x = static_cast<float>(kMargin - place.extent.left);
    const float y = static_cast<float>(kMargin - place.extent.top);
    const float stride = static_cast<float>(bands.stride);
    beginInk(bands);
    inkTarget->DrawTextLayout({x, y}, layout, textBrush.get(), D2D1_DRAW_TEXT_OPTIONS_NONE);
    inkTarget->DrawTextLayout({x, y + stride}, layout, shadowBrush.get(), D2D1_DRAW_TEXT_OPTIONS_NONE);
    if (plate.right > plate.left) {
        const float top = y + 2 * stride;
        const D2D1_RECT_F shifted{plate.left + x, plate.top + top, plate.right + x, plate.bottom + top};
        inkTarget->FillRectangle(&shifted, selectionBrush.get());
    }
    if (FAILED(inkTarget->EndDraw())) return false;
    if (look.kind == PictureKind::Header)
        return compose(place, bands, headerShader.get(), kHeaderGlow, target);
    return compose(place, bands, labelShader.get(), look.dragged ? kDraggedHalo : kRestingHalo, target);
}

bool TextInk::drawUnderline(const PicturePlace& place, ID3D11RenderTargetView* target) {
    const Bands bands{place.extent.width, place.extent.height, place.extent.height + kMargin};
    if (!ready() || !target || !reserve(bands)) return false;
    const float x = static_cast<float>(kMargin - place.extent.left);
    // The middle of a row, so that the line fills that row alone. It is white like the text and takes its
    // band, of which only the alpha counts: not every Direct2D premultiplies a gradient.
    const float y = static_cast<float>(kMargin - place.extent.top) + 0.5F;
    beginInk(bands);
    underlineBrush->SetStartPoint({x, 0});
    underlineBrush->SetEndPoint({x + kUnderlineLength, 0});
    inkTarget->DrawLine({x, y}, {x + kUnderlineLength, y}, underlineBrush.get(), 1, nullptr);
    if (FAILED(inkTarget->EndDraw())) return false;
    return compose(place, bands, labelShader.get(), 0, target);
}

bool TextInk::compose(const PicturePlace& place, const Bands& bands, ID3D11PixelShader* shader, float opacity,
                      ID3D11RenderTargetView* target) {
    ID3D11DeviceContext* const context = render.context;
    const TargetKeeper keeper(context);
    const ComposeCB values{kMargin - place.x, kMargin - place.y, bands.stride, opacity};
    context->UpdateSubresource(constants.get(), 0, nullptr, &values, 0, 0);

    const D3D11_VIEWPORT viewport{static_cast<float>(place.x),
                                  static_cast<float>(place.y),
                                  static_cast<float>(bands.width),
                                  static_cast<float>(bands.height),
                                  0,
                                  1};
    context->OMSetRenderTargets(1, &target, nullptr);
    context->RSSetViewports(1, &viewport);
    context->RSSetState(render.rsDefault);
    context->OMSetBlendState(nullptr, nullptr, 0xFFFFFFFF);
    context->OMSetDepthStencilState(nullptr, 0);
    context->IASetInputLayout(nullptr);
    context->IASetPrimitiveTopology(D3D11_PRIMITIVE_TOPOLOGY_TRIANGLESTRIP);
    context->VSSetShader(vertexShader.get(), nullptr, 0);
    context->PSSetShader(shader, nullptr, 0);
    context->PSSetConstantBuffers(0, 1, constants.address());
    context->PSSetShaderResources(0, 1, inkView.address());
    context->Draw(4, 0);
    ID3D11ShaderResourceView* const none = nullptr;
    context->PSSetShaderResources(0, 1, &none);
    ++made.pictures;
    return true;
}

}  // namespace varnelo
