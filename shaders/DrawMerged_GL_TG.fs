#version 150
// Text with a halo: as DrawMerged_GL_T.fs, with coverage also from the ink around. The halo is that of
// DrawText_GL_G.fs to the letter, since a shader file can take in no other; change both.
uniform sampler2D tex;

in vec2 texCoord;
in vec4 textColour;
flat in vec4 tint;
in vec2 place;

out vec4 colour;

// A quad is its glyph and a quarter of the glyph on every side, so a quarter of the glyph is a sixth of the quad.
const float reach = 1.0 / 6.0;
const float limit = 0.5;
const float gain = 1.6;
const int taps = 32;
// By the golden angle, so that the taps fill the disc evenly.
const mat2 turn = mat2(-0.7373688, 0.6754903, -0.6754903, -0.7373688);

void main() {
    vec4 tinted = min(textColour, tint);
    vec2 texels = abs(dFdx(texCoord)) + abs(dFdy(texCoord));
    // What the quad covers of the atlas; its sides are parallel to those of the window.
    vec2 span = texels / max(abs(dFdx(place)) + abs(dFdy(place)), vec2(1.0e-9));
    // Large glyphs are read from a coarser level, half as fine as the taps lie apart.
    vec2 size = max(texels, vec2(min(span.x, span.y) * reach * 0.1));
    float halo = 0.0;
    float weights = 0.0;
    vec2 direction = vec2(1.0, 0.0);
    for (int i = 0; i < taps; ++i) {
        float part = (float(i) + 0.5) / float(taps);
        // Held inside the quad: what lies beyond belongs to other glyphs.
        vec2 there = clamp(place + direction * (reach * sqrt(part)), 0.0, 1.0);
        vec2 at = texCoord + (there - place) * span;
        halo += (1.0 - part) * textureGrad(tex, at, vec2(size.x, 0.0), vec2(0.0, size.y)).r;
        weights += 1.0 - part;
        direction = turn * direction;
    }
    halo = min(limit, gain * halo / weights);
    colour = vec4(tinted.rgb, tinted.a * max(texture(tex, texCoord).r, halo));
}
