#version 150
// Pictures: the texel, modulated by the control's colour, straight alpha.
uniform vec4 vPanelColor;
uniform sampler2D tex;

in vec2 texCoord;

out vec4 colour;

void main() {
    colour = texture(tex, texCoord) * vPanelColor;
}
