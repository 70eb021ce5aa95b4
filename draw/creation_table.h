#pragma once
// Makers of the flavour's objects, so that API-neutral code never names a GL class. Also how tests put a
// recording flavour underneath.
#include "platform/types.h"

class CMesh_Base;
class CEntity_Base;
class CTexture_Base;
class CFontUniCode;
class CTextBox_Base;
class CNumBox_Base;
class CFlipBox_Base;
class CPanel_Base;
class CDrawBasic_Base;
class CDrawText_Base;

/// Each maker allocates an object of the flavour and returns its _Base part, null on failure. A null entry:
/// the flavour has no such object.
struct stCreationTable {
    CMesh_Base* (*m_fnCreateMesh)();
    CEntity_Base* (*m_fnCreateEntity)();
    CTexture_Base* (*m_fnCreateTexture)();
    CFontUniCode* (*m_fnCreateFont)();
    CTextBox_Base* (*m_fnCreateTextBox)();
    CNumBox_Base* (*m_fnCreateNumBox)();
    CFlipBox_Base* (*m_fnCreateFlipBox)();
    CPanel_Base* (*m_fnCreatePanel)();
    CDrawBasic_Base* (*m_fnCreateDrawBasic)();
    CDrawText_Base* (*m_fnCreateDrawText)();
    void (*m_fnRelease)() noexcept; ///< tears the flavour's resources down
    void (*m_fnBegin)();            ///< ahead of a frame; null for GL
    void (*m_fnEnd)();              ///< behind a frame; null for GL
};

extern stCreationTable g_stCreationTable;

/// Fills in the makers of the GL objects; the release hook is the frame driver's to set.
void g_fnFillCreationTable_GL() noexcept;
