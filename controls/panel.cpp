#include "controls/panel.h"

#include "draw/creation_table.h"
#include "draw/draw_base.h"
#include "draw/draw_keys.h"

#include <new>

CPanel_Base::CPanel_Base()
    : m_uShape(g_uShapeRect), m_fPanelW(512), m_fPanelH(512), m_fOutset(0), m_fThickness(0), m_fCornerSize(0),
      m_fRectOutset(0), m_afColor{0.5f, 0.5f, 0.5f, 1.0f}, m_bCorners(false), m_pDrawKey(g_keyColorList) {
    m_fnSetPosition(0, 0, 0);
}

CPanel_Base::~CPanel_Base() { CPanel_Base::m_fnRelease(); }

void CPanel_Base::m_fnReserved0() {}
void CPanel_Base::m_fnReserved1() {}

bool CPanel_Base::m_fnCreateEntity() {
    m_pEntity.reset(g_stCreationTable.m_fnCreateEntity ? g_stCreationTable.m_fnCreateEntity() : nullptr);
    return m_pEntity != nullptr;
}

bool CPanel_Base::m_fnCreateShape() {
    if (m_uShape == g_uShapeRect) {
        m_pRectMesh.reset(new (std::nothrow) CRect_Mesh_Base);
        return m_pRectMesh != nullptr;
    }
    if (m_uShape != g_uShapeFrame && m_uShape != g_uShapeBorder) return false;
    // Both are made, so that corners can come and go without building anything.
    m_pFrameMesh.reset(new (std::nothrow) CFrame_Mesh_Base);
    m_pBorderMesh.reset(new (std::nothrow) CBorder_Mesh_Base);
    return m_pFrameMesh && m_pBorderMesh;
}

bool CPanel_Base::m_fnBuildShape() {
    m_fnNoteChange();
    if (m_uShape == g_uShapeRect)
        return m_pRectMesh && m_pRectMesh->m_fnCreateExpanded(m_fPanelW, m_fPanelH, m_fRectOutset);
    return m_pFrameMesh && m_pBorderMesh &&
           m_pFrameMesh->m_fnCreate(m_fPanelW, m_fPanelH, m_fOutset, m_fThickness) &&
           m_pBorderMesh->m_fnCreate(m_fPanelW, m_fPanelH, m_fOutset, m_fThickness, m_fCornerSize);
}

void CPanel_Base::m_fnSetColorF(f32 r, f32 g, f32 b, f32 a) {
    m_afColor[0] = r;
    m_afColor[1] = g;
    m_afColor[2] = b;
    m_afColor[3] = a;
    m_fnNoteChange();
}

void CPanel_Base::m_fnSetColorB(u8 r, u8 g, u8 b, u8 a) {
    m_fnSetColorF(r / 255.0f, g / 255.0f, b / 255.0f, a / 255.0f);
}

void CPanel_Base::m_fnSetShape(u32 uShape) {
    m_uShape = uShape;
    m_fnNoteChange();
}

void CPanel_Base::m_fnSetCorners(bool bCorners) {
    m_bCorners = bCorners;
    if (bCorners && m_uShape == g_uShapeFrame)
        m_uShape = g_uShapeBorder;
    else if (!bCorners && m_uShape == g_uShapeBorder)
        m_uShape = g_uShapeFrame;
    m_fnNoteChange();
}

void CPanel_Base::m_fnSetColor(u32 uRGB, u8 a) {
    m_fnSetColorB(static_cast<u8>(uRGB >> 16), static_cast<u8>(uRGB >> 8), static_cast<u8>(uRGB), a);
}

void CPanel_Base::m_fnSetGeometry5(f32 w, f32 h, f32 e, f32 t, f32 c) {
    m_fCornerSize = c;
    m_fnSetGeometry4(w, h, e, t);
}

void CPanel_Base::m_fnSetGeometry4(f32 w, f32 h, f32 e, f32 t) {
    m_fOutset = e;
    m_fThickness = t;
    m_fnSetGeometry(w, h);
}

void CPanel_Base::m_fnSetGeometry(f32 w, f32 h) {
    m_fPanelW = w;
    m_fPanelH = h;
    m_fnSetSize(w, h);
    if (m_pRectMesh) m_pRectMesh->m_fnCreateExpanded(w, h, m_fRectOutset);
    if (m_pFrameMesh) m_pFrameMesh->m_fnCreate(w, h, m_fOutset, m_fThickness);
    if (m_pBorderMesh) m_pBorderMesh->m_fnCreate(w, h, m_fOutset, m_fThickness, m_fCornerSize);
    m_fnNoteChange();
}

void CPanel_Base::m_fnSetRectOutset(f32 e) { m_fRectOutset = e; }

void CPanel_Base::m_fnSetDrawKey(const void* pKey) { m_pDrawKey = pKey; }

namespace {

template <class Mesh> void DrawMesh(Mesh* pMesh, CDraw_Base& batcher) {
    if (!pMesh) return;
    pMesh->m_fnBind();
    batcher.m_fnBindVertexLayout(nullptr);
    pMesh->m_fnDraw();
}

} // namespace

void CPanel_Base::m_fnDrawPanel(CDraw_Base* pBatcher, const f32* pWorld, const f32* pColor) {
    if (!m_fnIsRenderable()) return;
    const stDrawConstants stConstants{pWorld, pColor};
    pBatcher->m_fnSetDrawConstants(&stConstants);
    if (m_uShape == g_uShapeRect) DrawMesh(m_pRectMesh.get(), *pBatcher);
    if (m_uShape == g_uShapeFrame) DrawMesh(m_pFrameMesh.get(), *pBatcher);
    if (m_uShape == g_uShapeBorder) DrawMesh(m_pBorderMesh.get(), *pBatcher);
}

void CPanel_Base::m_fnRelease() {
    m_pVertices.reset();
    m_pIndices.reset();
    m_pEntity.reset();
    m_pRectMesh.reset();
    m_pFrameMesh.reset();
    m_pBorderMesh.reset();
    m_fnNoteChange();
}

void CPanel_Base::m_fnOnMoved() {
    if (m_pEntity) m_pEntity->m_fnSetPosition(m_fPosX, m_fPosY, m_fPosZ);
}

const void* CPanel_Base::m_fnGetDrawKey() { return m_pDrawKey; }

void CPanel_Base::m_fnRender(CDraw_Base* pBatcher) {
    if (!m_fnIsRenderable() || !m_pEntity) return;
    m_fnDrawPanel(pBatcher, m_pEntity->m_fnGetWorldForDraw(), m_afColor);
}

bool CPanel_Base::m_fnInitialize() {
    if (!m_fnIsRenderable()) return true;
    return m_fnCreateEntity() && m_fnCreateShape() && m_fnBuildShape();
}
