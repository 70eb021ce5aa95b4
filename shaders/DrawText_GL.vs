#version 150
// Text: canvas units to clip space, top of the canvas at the top of the window. Row 0 of an atlas is its top.
uniform mat4 mProj;
uniform mat4 mView;
uniform mat4 mWorld;

in vec2 v2Pos;
in vec2 v2Tex0;
in vec4 v4Color0;

out vec2 texCoord;
out vec4 textColour;
// Place inside the quad: 0 at its left and top, 1 at its right and bottom. Quads are four vertices each, in the
// order top left, top right, bottom right, bottom left.
out vec2 place;

// So that no clipping distance that the program has switched on cuts anything off.
out float gl_ClipDistance[8];

void main() {
    texCoord = v2Tex0;
    textColour = v4Color0;
    int corner = gl_VertexID & 3;
    place = vec2(corner == 1 || corner == 2 ? 1.0 : 0.0, corner >= 2 ? 1.0 : 0.0);
    vec4 position = mProj * (mView * (mWorld * vec4(v2Pos, 0.0, 1.0)));
    position.y = -position.y;
    gl_Position = position;
    for (int i = 0; i < 8; ++i) gl_ClipDistance[i] = 1.0;
}
