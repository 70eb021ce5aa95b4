#version 150
// Flat shapes: one colour, straight alpha.
uniform vec4 vFontColor;

out vec4 colour;

void main() {
    colour = vFontColor;
}
