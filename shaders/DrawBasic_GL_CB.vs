#version 150
// Frosted shapes: canvas units to clip space, top of the canvas at the top of the window.
uniform mat4 mProj;
uniform mat4 mView;
uniform mat4 mWorld;

in vec2 v2Pos;
in vec2 v2Tex0;

out vec2 texCoord;

// So that no clipping distance that the program has switched on cuts anything off.
out float gl_ClipDistance[8];

void main() {
    texCoord = v2Tex0;
    vec4 position = mProj * (mView * (mWorld * vec4(v2Pos, 0.0, 1.0)));
    position.y = -position.y;
    gl_Position = position;
    for (int i = 0; i < 8; ++i) gl_ClipDistance[i] = 1.0;
}
