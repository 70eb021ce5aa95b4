#version 150
#extension GL_ARB_explicit_attrib_location : enable
// Text: place on the canvas and the control's tint come with the vertices. Top of the canvas at the top of the
// window. Row 0 of an atlas is its top.
uniform mat4 mProj;
uniform mat4 mView;

layout(location = 0) in vec4 v4Place;
layout(location = 1) in vec4 v4Tint;
layout(location = 2) in vec2 v2Tex0;
layout(location = 3) in vec4 v4Color0;

out vec2 texCoord;
out vec4 textColour;
flat out vec4 tint;
// Place inside the quad: 0 at its left and top, 1 at its right and bottom. Quads are four vertices each, in the
// order top left, top right, bottom right, bottom left.
out vec2 place;

// So that no clipping distance that the program has switched on cuts anything off.
out float gl_ClipDistance[8];

void main() {
    texCoord = v2Tex0;
    textColour = v4Color0;
    tint = v4Tint;
    int corner = gl_VertexID & 3;
    place = vec2(corner == 1 || corner == 2 ? 1.0 : 0.0, corner >= 2 ? 1.0 : 0.0);
    vec4 position = mProj * (mView * v4Place);
    position.y = -position.y;
    gl_Position = position;
    for (int i = 0; i < 8; ++i) gl_ClipDistance[i] = 1.0;
}
