#version 150
// Text: coverage from the atlas, colour from the vertices, straight alpha.
uniform sampler2D tex;

in vec2 texCoord;
in vec4 textColour;
flat in vec4 tint;

out vec4 colour;

void main() {
    // KEEP: the control's tint filters its shadow too. It lets through no more than itself, so white changes nothing.
    vec4 tinted = min(textColour, tint);
    colour = vec4(tinted.rgb, tinted.a * texture(tex, texCoord).r);
}
