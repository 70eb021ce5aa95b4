#include "controls/control.h"

#include "controls/anchor.h"
#include "controls/osd_manager.h"
#include "draw/canvas.h"

u32 g_uControlChanges = 0, g_uDrawListChanges = 0;

namespace {

/// Stores and tells whether the value differed.
bool Change(f32& fField, f32 fValue) {
    const bool bChanged = fField != fValue;
    fField = fValue;
    return bChanged;
}

void Copy(f32* pOut, f32 fValue) {
    if (pOut) *pOut = fValue;
}

} // namespace

CControl::CControl()
    : m_fPosX(0), m_fPosY(0), m_fPosZ(0), m_bAutoSize(false), m_uVertexBytes(0), m_uIndexBytes(0),
      m_uVertexBase(0), m_uIndexBase(0), m_uType(0), m_bChanged(true) {
    // The virtual calls are meant to reach this class; the manager doesn't know the control yet.
    CControl::m_fnSetAnchor(1, -1, -1);
    m_fSizeW = m_fSizeH = -1; // so that a size of 0 counts as a change
    CControl::m_fnSetSize(0, 0);
    CControl::m_fnSetRenderable(true);
}

u32 CControl::m_fnGetVertexBytes() { return m_uVertexBytes; }
u32 CControl::m_fnGetIndexBytes() { return m_uIndexBytes; }
void CControl::m_fnSetVertexBase(u32 uBase) { m_uVertexBase = uBase; }
void CControl::m_fnSetIndexBase(u32 uBase) { m_uIndexBase = uBase; }
void* CControl::m_fnGetVertexData() { return nullptr; }
void* CControl::m_fnGetIndexData() { return nullptr; }
u32 CControl::m_fnGetType() { return m_uType; }
void CControl::m_fnOnMoved() {}

void CControl::m_fnApplyRect(const stControlRect& stRect) {
    m_fnSetSize(stRect.w, stRect.h);
    m_fnSetAnchor(stRect.code, stRect.x, stRect.y);
}

void CControl::m_fnSetAutoSize(bool bAutoSize) { m_bAutoSize = bAutoSize; }
bool CControl::m_fnGetAutoSize() { return m_bAutoSize; }

void CControl::m_fnSetPosition(f32 x, f32 y, f32 z) {
    m_iAnchorCode = 1; // KEEP(profiles): whatever it was; children stay where they are
    bool bChanged = Change(m_fPosX, x);
    bChanged |= Change(m_fPosY, y);
    bChanged |= Change(m_fPosZ, z);
    bChanged |= Change(m_fAnchorX, x);
    bChanged |= Change(m_fAnchorY, y);
    if (!bChanged) return;
    m_fnOnMoved();
    m_fnNoteChange();
}

void CControl::m_fnGetPosition(f32* pX, f32* pY, f32* pZ) {
    Copy(pX, m_fPosX);
    Copy(pY, m_fPosY);
    Copy(pZ, m_fPosZ);
}

void CControl::m_fnMoveTo(f32 x, f32 y, f32 z) {
    // KEEP(profiles): no test for change; every call goes down the whole subtree.
    ControlList* pChildren = g_pOSDManager ? g_pOSDManager->m_fnGetChildren(this) : nullptr;
    m_fPosX = x;
    m_fPosY = y;
    m_fPosZ = z;
    if (pChildren)
        for (CControl* pChild : *pChildren) pChild->m_fnResolvePosition(this);
    m_fnOnMoved();
    m_fnNoteChange();
}

void CControl::m_fnGetAnchor(i32* pCode, f32* pX, f32* pY) {
    if (pCode) *pCode = m_iAnchorCode;
    Copy(pX, m_fAnchorX);
    Copy(pY, m_fAnchorY);
}

void CControl::m_fnSetAnchor(i32 iCode, f32 x, f32 y) {
    m_fAnchorX = x; // KEEP(profiles): no test for change
    m_fAnchorY = y;
    m_iAnchorCode = iCode;
    if (g_pOSDManager) g_pOSDManager->m_fnResolveControl(this);
}

void CControl::m_fnSetRenderable(bool bRenderable) {
    m_bRenderable = bRenderable;
    m_fnNoteChange();
}
bool CControl::m_fnIsRenderable() { return m_bRenderable; }

void CControl::m_fnResolvePosition(CControl* pParent) {
    f32 fParentX = 0, fParentY = 0;
    f32 fParentW = static_cast<f32>(g_uCanvasW), fParentH = static_cast<f32>(g_uCanvasH);
    if (pParent) {
        pParent->m_fnGetPosition(&fParentX, &fParentY, nullptr);
        pParent->m_fnGetSize(&fParentW, &fParentH);
    }
    f32 x, y;
    g_fnAnchorToPosition(m_iAnchorCode, m_fAnchorX, m_fAnchorY, m_fSizeW, m_fSizeH, fParentX, fParentY,
                         fParentW, fParentH, &x, &y);
    m_fnMoveTo(x, y, 0); // KEEP(profiles): z is lost
}

const void* CControl::m_fnGetDrawKey() { return nullptr; }

void CControl::m_fnSetSize(f32 w, f32 h) {
    bool bChanged = Change(m_fSizeW, w);
    bChanged |= Change(m_fSizeH, h);
    if (bChanged && g_pOSDManager) g_pOSDManager->m_fnResolveControl(this);
}

void CControl::m_fnGetSize(f32* pW, f32* pH) {
    Copy(pW, m_fSizeW);
    Copy(pH, m_fSizeH);
}

void CControl::m_fnRender(CDraw_Base*) {}
