#version 150
// Pictures: the texel, modulated by the control's colour, straight alpha.
uniform sampler2D tex;

in vec2 texCoord;
flat in vec4 tint;

out vec4 colour;

void main() {
    colour = texture(tex, texCoord) * tint;
}
