#pragma once
// What the state guard saved of the program's GL state for the time of one frame.
#include "platform/types.h"

/// Vertex attributes 0 and 1.
struct stSavedAttrib {
    u32 AttribEnabled, AttribBufferBinding, AttribSize, AttribStride, AttribType, AttribNormalized,
        AttribDivisor;
    void* AttribPointer;
};

/// Overwritten on every frame.
struct stGLSavedState {
    i32 Viewport[4];
    i32 ScissorBox[4];
    u32 TextureBinding2D;
    i32 TextureMinFilter, TextureMagFilter;
    f32 CurrentColor[4];
    u8 CullFace, DepthTest, ScissorTest, AlphaTest, StencilTest, Lighting, Blend;
    u32 CurrentProgram, ElementArrayBufferBinding;
    i32 BlendSrcRGB, BlendDstRGB, BlendSrcAlpha, BlendDstAlpha;
    f32 BlendColor[4];
    i32 UnpackSwapBytes, UnpackLsbFirst, UnpackRowLength, UnpackSkipPixels, UnpackSkipRows;
    i32 UnpackAlignment;
    stSavedAttrib Attrib[2];
    u32 VertexArrayBinding;   ///< the application's
    u32 TemporaryVertexArray; ///< ours, valid only between setup and restore
    i32 ColorWriteMask[4];
    u32 SamplerBinding0;
};
extern stGLSavedState GLSavedState;
