#include "controls/num_box_gl.h"

#include "draw/draw_base.h"
#include "platform/gl_api.h"

void CNumBox_GL::m_fnDrawDigits(CDraw_Base* pBatcher, CEntity_Base** ppEntities, const f32* pColor) {
    if (!m_pMesh) return;
    // The cells' places are in the vertices, so the first entity serves all.
    const stDrawConstants stConstants{ppEntities[0]->m_fnGetWorldForDraw(), pColor};
    pBatcher->m_fnSetColor(&stConstants);
    m_pMesh->m_fnBind();
    pBatcher->m_fnBindVertexLayout(nullptr);
    pBatcher->m_fnSetWorld(&stConstants);
    for (i32 i = 0; i < m_iDrawCount; ++i) m_pMesh->m_fnDraw(m_uIndicesPerGlyph, m_auDrawIndex[i], 0);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
}

CNumBox_Base* CreateNumBox_GL() { return new CNumBox_GL; }
