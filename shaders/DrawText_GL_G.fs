#version 150
// Text with a halo: as DrawText_GL.fs, with coverage also from the ink around.
// Both fragment files name the same uniforms in the same order: the batcher asks one program for the locations of both.
uniform vec4 vFontColor;
uniform sampler2D tex;

in vec2 texCoord;
in vec4 textColour;
in vec2 place;

out vec4 colour;

// A quad is its glyph and a quarter of the glyph on every side, so a quarter of the glyph is a sixth of the quad.
const float reach = 1.0 / 6.0;
const float limit = 0.5;
const float gain = 1.6;

// Eight directions; the odd ones are the diagonals.
const vec2 around[8] = vec2[8](vec2(1.0, 0.0), vec2(0.7071, 0.7071), vec2(0.0, 1.0), vec2(-0.7071, 0.7071),
                               vec2(-1.0, 0.0), vec2(-0.7071, -0.7071), vec2(0.0, -1.0), vec2(0.7071, -0.7071));

void main() {
    vec4 tinted = min(textColour, vFontColor);
    vec2 dx = dFdx(texCoord);
    vec2 dy = dFdy(texCoord);
    // What the quad covers of the atlas; its sides are parallel to those of the window.
    vec2 span = (abs(dx) + abs(dy)) / max(abs(dFdx(place)) + abs(dFdy(place)), vec2(1.0e-9));
    float halo = 0.0;
    float weights = 0.0;
    for (int ring = 1; ring <= 3; ++ring) {
        float weight = 4.0 - float(ring);
        for (int i = 0; i < 8; ++i) {
            // Held inside the quad: what lies beyond belongs to other glyphs.
            vec2 there = clamp(place + around[i] * (reach * float(ring) / 3.0), 0.0, 1.0);
            halo += weight * textureGrad(tex, texCoord + (there - place) * span, dx, dy).r;
            weights += weight;
        }
    }
    halo = min(limit, gain * halo / weights);
    colour = vec4(tinted.rgb, tinted.a * max(texture(tex, texCoord).r, halo));
}
