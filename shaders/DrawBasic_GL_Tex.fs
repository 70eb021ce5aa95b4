#version 150
in vec2 v2TexCoord;
uniform vec4 vPanelColor;
uniform sampler2D tex;
out vec4 v4Result;

void main() {
    v4Result = texture(tex, v2TexCoord) * vPanelColor;
}
