#version 150
uniform vec4 vFontColor;
out vec4 v4Result;

void main() {
    v4Result = vFontColor;
}
