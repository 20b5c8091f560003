// The unit quad at its place on the surface: pixels to clip space, y turned upward.

cbuffer PerObject : register(b0)
{
    float2 screenSize;
    float2 iconPos;
    float2 iconSize;
    float2 padding;
};

struct VS_IN
{
    float3 pos : POSITION;
    float2 uv : TEXCOORD;
};

struct PS_IN
{
    float4 pos : SV_POSITION;
    float2 uv : TEXCOORD;
};

PS_IN main(VS_IN input)
{
    PS_IN o;
    float2 p = input.pos.xy * iconSize + iconPos;
    o.pos = float4(p.x / screenSize.x * 2 - 1, 1 - p.y / screenSize.y * 2, 0, 1);
    o.uv = input.uv;
    return o;
}
