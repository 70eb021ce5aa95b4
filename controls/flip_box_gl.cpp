#include "controls/flip_box_gl.h"

#include "draw/draw_base.h"
#include "platform/gl_api.h"

void CFlipBox_GL::m_fnDrawText(CDraw_Base* pBatcher, const f32* pWorld, const f32* pColor) {
    if (!m_pMesh) return;
    const stDrawConstants stConstants{pWorld, pColor};
    pBatcher->m_fnSetDrawConstants(&stConstants);
    m_pMesh->m_fnBind();
    pBatcher->m_fnBindVertexLayout(nullptr);
    const stShown stRange = m_fnShown();
    m_pMesh->m_fnDraw(stRange.uCount, stRange.uFirst, 0);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
}

CFlipBox_Base* CreateFlipBox_GL() { return new CFlipBox_GL; }
