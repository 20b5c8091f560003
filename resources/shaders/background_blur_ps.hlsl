// A tinted Kawase tap: the mean of four diagonal samples around the pixel's own place on the screen. The linear
// filter widens each tap into a small box, which is what makes four of them look soft.

Texture2D sceneTex : register(t0);
SamplerState samp : register(s0);

cbuffer BlurCB : register(b0)
{
    float2 screenSize;
    float offset;
    float padding;
    float4 tintColor;
};

float4 main(float4 pos : SV_POSITION, float2 uv : TEXCOORD) : SV_TARGET
{
    float2 texelSize = 1 / screenSize;
    float2 screenUV = pos.xy / screenSize;
    float2 o = offset * texelSize;
    float4 sum = sceneTex.Sample(samp, screenUV + float2(-o.x, -o.y));
    sum += sceneTex.Sample(samp, screenUV + float2(o.x, -o.y));
    sum += sceneTex.Sample(samp, screenUV + float2(-o.x, o.y));
    sum += sceneTex.Sample(samp, screenUV + float2(o.x, o.y));
    return lerp(sum * 0.25, tintColor, tintColor.a);
}
