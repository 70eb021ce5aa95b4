#version 150
// Flat shapes of one draw: one colour a shape, straight alpha.
flat in vec4 tint;

out vec4 colour;

void main() {
    colour = tint;
}
