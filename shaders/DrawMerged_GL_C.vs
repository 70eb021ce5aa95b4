#version 150
#extension GL_ARB_explicit_attrib_location : enable
// Flat shapes of one draw: place on the canvas and colour come with the vertices. Top of the canvas at the top of
// the window.
uniform mat4 mProj;
uniform mat4 mView;

layout(location = 0) in vec4 v4Place;
layout(location = 1) in vec4 v4Tint;

flat out vec4 tint;

// So that no clipping distance that the program has switched on cuts anything off.
out float gl_ClipDistance[8];

void main() {
    tint = v4Tint;
    vec4 position = mProj * (mView * v4Place);
    position.y = -position.y;
    gl_Position = position;
    for (int i = 0; i < 8; ++i) gl_ClipDistance[i] = 1.0;
}
