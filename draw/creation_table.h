#pragma once
// Makers of the objects that belong to one graphics API, so that neutral code never names a class of that
// API. Tests install a recording flavour here.

class CControl;
class CDrawBasic_Base;
class CDrawText_Base;
class CEntity_Base;
class CFlipBox_Base;
class CFontUniCode;
class CMesh_Base;
class CNumBox_Base;
class CPanel_Base;
class CTextBox_Base;
class CTexture_Base;

/// Each maker allocates one object and returns its _Base part, null when out of memory. A null entry: the
/// flavour has no such object.
struct stCreationTable {
    CMesh_Base* (*m_fnCreateMesh)() = nullptr;
    CEntity_Base* (*m_fnCreateEntity)() = nullptr;
    CTexture_Base* (*m_fnCreateTexture)() = nullptr;
    CFontUniCode* (*m_fnCreateFont)() = nullptr;
    CTextBox_Base* (*m_fnCreateTextBox)() = nullptr;
    CNumBox_Base* (*m_fnCreateNumBox)() = nullptr;
    CFlipBox_Base* (*m_fnCreateFlipBox)() = nullptr;
    CPanel_Base* (*m_fnCreatePanel)() = nullptr;
    CDrawBasic_Base* (*m_fnCreateDrawBasic)() = nullptr;
    CDrawText_Base* (*m_fnCreateDrawText)() = nullptr;
    void (*m_fnReleaseHook)() = nullptr; ///< tears down everything the overlay holds in the API
    void (*Begin)() = nullptr;           ///< around a batch of updates; null in the OpenGL flavour
    void (*End)() = nullptr;
};

/// The flavour in use; empty until the first frame names one.
extern stCreationTable g_stCreationTable;
