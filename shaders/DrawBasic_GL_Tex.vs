#version 150
in vec2 v2Pos;
in vec2 v2Tex0;
out vec2 v2TexCoord;
uniform mat4 mProj;
uniform mat4 mView;
uniform mat4 mWorld;

// The canvas grows downward, the picture upward: y is mirrored here and nowhere else.
void main() {
    v2TexCoord = v2Tex0;
    gl_Position = mProj * mView * mWorld * vec4(v2Pos, 0.0, 1.0);
    gl_Position.y = -gl_Position.y;
}
