#version 150
// Frosted glass: the mean of a disc of the picture behind, tinted. _CIRCLE_BLUR_DIAMETER_ is the disc's diameter in
// window pixels; wide discs are sampled in steps, so that the cost stays bounded.
in vec2 v2TexCoord;
uniform vec4 vPanelColor;
uniform sampler2D tex;
out vec4 v4Result;

const int iDiameter = _CIRCLE_BLUR_DIAMETER_;
const int iStep = max(1, (iDiameter + 7) / 8);
const int iReach = iDiameter / 2 / iStep;
const float fRadius = float(iDiameter) * 0.5;

void main() {
    vec2 v2Size = vec2(textureSize(tex, 0));
    vec3 v3Sum = vec3(0.0);
    float fCount = 0.0;
    for (int j = -iReach; j <= iReach; ++j) {
        for (int i = -iReach; i <= iReach; ++i) {
            vec2 v2Offset = vec2(float(i * iStep), float(j * iStep));
            if (length(v2Offset) <= fRadius) {
                // Half a texel inside the picture, so that its edge is repeated and the border never shows.
                vec2 v2Point = clamp(gl_FragCoord.xy + v2Offset, vec2(0.5), v2Size - vec2(0.5));
                v3Sum += texture(tex, v2Point / v2Size).rgb;
                fCount += 1.0;
            }
        }
    }
    // The coordinate takes part without changing anything: every attribute of the contract stays active.
    vec3 v3Blur = v3Sum / fCount + vec3(step(1.0e30, v2TexCoord.x + v2TexCoord.y));
    v4Result = vec4(mix(v3Blur, vPanelColor.rgb, vPanelColor.a), 1.0);
}
