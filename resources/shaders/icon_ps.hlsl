// One icon as a pane of frosted glass: where the icon is transparent, the scene behind it shows through,
// pushed outward as by a lens, and blurred.

Texture2D iconTex : register(t0);
Texture2D sceneTex : register(t1);
SamplerState samp : register(s0);

cbuffer GlassCB : register(b1)
{
    float2 iconCenterUV;
    float2 iconSizeUV;
    float maxBlur;
    float refraction;
    float2 screenSize;
    float cornerRadius;  // this, cubeDepth and ior: for a rounded, deep glass; read by nothing yet
    float cubeDepth;
    float ior;
    float highlight;
    float alpha;
    float3 padding;
};

// Signed distance from p to a box of half size b with corners of radius r.
float sdRoundedBox(float3 p, float3 b, float r)
{
    float3 q = abs(p) - b;
    return length(max(q, 0)) + min(max(q.x, max(q.y, q.z)), 0) - r;
}

float4 main(float4 pos : SV_POSITION, float2 uv : TEXCOORD) : SV_TARGET
{
    float4 iconColor = iconTex.Sample(samp, uv);

    float2 screenUV = iconCenterUV + (uv - 0.5) * iconSizeUV;
    float2 refractedUV = screenUV + (uv - 0.5) * refraction;
    float2 o = maxBlur / screenSize;
    float4 sum = sceneTex.Sample(samp, refractedUV + float2(-o.x, -o.y));
    sum += sceneTex.Sample(samp, refractedUV + float2(o.x, -o.y));
    sum += sceneTex.Sample(samp, refractedUV + float2(-o.x, o.y));
    sum += sceneTex.Sample(samp, refractedUV + float2(o.x, o.y));
    float4 blurred = sum * 0.25;

    float glassMask = 1 - iconColor.a;
    if (highlight > 0.5)
    {
        float3 blueTint = float3(0, 0.5, 1);
        iconColor.rgb = lerp(iconColor.rgb, blueTint, 0.5);
        blurred.rgb = lerp(blurred.rgb, blueTint, glassMask * 0.5);
    }

    float4 finalColor = lerp(iconColor, blurred, glassMask);
    finalColor.a *= alpha;
    return finalColor;
}
