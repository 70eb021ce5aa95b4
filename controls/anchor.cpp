#include "controls/anchor.h"

#include "draw/canvas.h"

namespace {

struct stSpan {
    f32 fOffset, fSize, fParentSize;
};

f32 Middle(const stSpan& st) { return (st.fParentSize - st.fSize) * 0.5f + st.fOffset; }

/// One axis of codes 1 to 9: iPlace 0 near edge, 1 middle, 2 far edge.
f32 Inside(i32 iPlace, const stSpan& st) {
    if (iPlace == 1) return Middle(st);
    if (iPlace == 2) return st.fParentSize - st.fSize - st.fOffset;
    return st.fOffset;
}

/// One axis of codes -1 to -9.
f32 Outside(i32 iPlace, const stSpan& st) {
    if (iPlace == 1) return Middle(st);
    if (iPlace == 2) return st.fOffset + st.fParentSize;
    return 0.0f - (st.fOffset + st.fSize);
}

f32 LocalX(i32 iCode, const stSpan& st) {
    if (iCode >= 1 && iCode <= 9) return Inside((iCode - 1) % 3, st);
    if (iCode >= -9 && iCode <= -1) return Outside((-iCode - 1) % 3, st);
    return st.fOffset;
}

f32 LocalY(i32 iCode, const stSpan& st) {
    // KEEP(profiles): a positive y moves code 5 up, although it moves 4, 6 and -5 down; layouts depend on it.
    if (iCode == 5) return (st.fParentSize - st.fSize) * 0.5f - st.fOffset;
    if (iCode >= 1 && iCode <= 9) return Inside((iCode - 1) / 3, st);
    if (iCode >= -9 && iCode <= -1) return Outside((-iCode - 1) / 3, st);
    return st.fOffset;
}

void Store(f32* pOut, f32 fValue) {
    if (pOut) *pOut = fValue;
}

} // namespace

void g_fnAnchorToPosition(i32 iCode, f32 x, f32 y, f32 w, f32 h, f32 parentX, f32 parentY, f32 parentW,
                          f32 parentH, f32* pOutX, f32* pOutY) {
    Store(pOutX, parentX + LocalX(iCode, {x, w, parentW}));
    Store(pOutY, parentY + LocalY(iCode, {y, h, parentH}));
}

void g_fnAnchorToRect(i32 iCode, f32 x, f32 y, f32 w, f32 h, f32 parentX, f32 parentY, f32 parentW,
                      f32 parentH, f32* pOutLeft, f32* pOutTop, f32* pOutRight, f32* pOutBottom) {
    f32 fLeft, fTop;
    g_fnAnchorToPosition(iCode, x, y, w, h, parentX, parentY, parentW, parentH, &fLeft, &fTop);
    Store(pOutLeft, fLeft);
    Store(pOutTop, fTop);
    Store(pOutRight, fLeft + w);
    Store(pOutBottom, fTop + h);
}

void g_fnReanchor(i32 iCode, f32 x, f32 y, f32 w, f32 h, f32 parentX, f32 parentY, f32 parentW, f32 parentH,
                  i32 iNewCode, f32* pOutX, f32* pOutY) {
    if (iNewCode < 1 || iNewCode > 9) { // KEEP(profiles): no other new code is worked out
        Store(pOutX, x);
        Store(pOutY, y);
        return;
    }
    f32 fLeft, fTop, fRight, fBottom;
    g_fnAnchorToRect(iCode, x, y, w, h, parentX, parentY, parentW, parentH, &fLeft, &fTop, &fRight, &fBottom);

    const i32 iColumn = (iNewCode - 1) % 3, iRow = (iNewCode - 1) / 3;
    if (iColumn == 0) Store(pOutX, fLeft - parentX);
    if (iColumn == 1) Store(pOutX, (w * 0.5f + fLeft) - (parentW * 0.5f + parentX));
    if (iColumn == 2) Store(pOutX, (parentX + parentW) - fRight);

    // KEEP(profiles): the middle row uses the parent's x, not its y; callers pass a parent at (0, 0).
    const f32 fMiddle = h * 0.5f + fTop, fParentMiddle = parentH * 0.5f + parentX;
    if (iRow == 0) Store(pOutY, fTop - parentY);
    if (iRow == 1) Store(pOutY, iNewCode == 5 ? fParentMiddle - fMiddle : fMiddle - fParentMiddle);
    if (iRow == 2) Store(pOutY, (parentY + parentH) - fBottom);
}

void g_fnReanchorOnCanvas(i32 iCode, f32 x, f32 y, f32 w, f32 h, i32 iNewCode, f32* pOutX, f32* pOutY) {
    g_fnReanchor(iCode, x, y, w, h, 0.0f, 0.0f, static_cast<f32>(g_uCanvasW), static_cast<f32>(g_uCanvasH),
                 iNewCode, pOutX, pOutY);
}
