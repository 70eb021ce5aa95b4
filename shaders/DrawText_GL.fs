#version 150
// Text: coverage from the atlas, colour from the vertices, straight alpha.
// Both fragment files name the same uniforms in the same order: the batcher asks one program for the locations of both.
uniform vec4 vFontColor;
uniform sampler2D tex;

in vec2 texCoord;
in vec4 textColour;

out vec4 colour;

void main() {
    // KEEP: the control's tint filters its shadow too. It lets through no more than itself, so white changes nothing.
    vec4 tinted = min(textColour, vFontColor);
    colour = vec4(tinted.rgb, tinted.a * texture(tex, texCoord).r);
}
