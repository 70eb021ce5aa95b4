#include "draw/matrix.h"

#include <algorithm>

void g_fnMakeIdentity(f32* pMatrix) noexcept {
    std::fill_n(pMatrix, 16, 0.0f);
    for (u32 i = 0; i < 16; i += 5) pMatrix[i] = 1.0f;
}

void g_fnMakeOrtho(f32* pMatrix, f32 fLeft, f32 fRight, f32 fBottom, f32 fTop, f32 p, f32 q) noexcept {
    std::fill_n(pMatrix, 16, 0.0f);
    pMatrix[0] = 2.0f / (fRight - fLeft);
    pMatrix[5] = 2.0f / (fTop - fBottom);
    pMatrix[10] = 2.0f / (p - q);
    pMatrix[12] = -1.0f;
    pMatrix[13] = -1.0f;
    pMatrix[14] = (p + q) / (p - q);
    pMatrix[15] = 1.0f;
}
