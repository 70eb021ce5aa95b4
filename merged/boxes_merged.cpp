#include "merged/boxes_merged.h"

#include "draw/draw_base.h"

void CTextBox_Merged::m_fnDrawText(CDraw_Base* pBatcher, const f32* pWorld, const f32* pColor) {
    if (!m_pMesh) return;
    const stDrawConstants stConstants{pWorld, pColor};
    pBatcher->m_fnSetDrawConstants(&stConstants);
    m_pMesh->m_fnDraw(m_uIndexCount, 0, 0);
}

bool CNumBox_Merged::m_fnAllocBuffers() {
    const bool bDone = CNumBox_Base::m_fnAllocBuffers();
    m_pVerticesOut.reset();
    m_pIndicesOut.reset();
    return bDone;
}

void CNumBox_Merged::m_fnDrawDigits(CDraw_Base* pBatcher, CEntity_Base** ppEntities, const f32* pColor) {
    if (!m_pMesh) return;
    // The cells' places are in the vertices, so the first entity serves all.
    const stDrawConstants stConstants{ppEntities[0]->m_fnGetWorldForDraw(), pColor};
    pBatcher->m_fnSetDrawConstants(&stConstants);
    for (i32 i = 0; i < m_iDrawCount; ++i) m_pMesh->m_fnDraw(m_uIndicesPerGlyph, m_auDrawIndex[i], 0);
}

void CFlipBox_Merged::m_fnDrawText(CDraw_Base* pBatcher, const f32* pWorld, const f32* pColor) {
    if (!m_pMesh) return;
    const stDrawConstants stConstants{pWorld, pColor};
    pBatcher->m_fnSetDrawConstants(&stConstants);
    const stShown stRange = m_fnShown();
    m_pMesh->m_fnDraw(stRange.uCount, stRange.uFirst, 0);
}

CTextBox_Base* CreateTextBox_Merged() { return new CTextBox_Merged; }

CNumBox_Base* CreateNumBox_Merged() { return new CNumBox_Merged; }

CFlipBox_Base* CreateFlipBox_Merged() { return new CFlipBox_Merged; }
