#include "tools/profile/check/plain_flavour.h"

#include "controls/num_box.h"
#include "controls/panel.h"
#include "controls/text_box.h"
#include "draw/creation_table.h"
#include "draw/entity.h"
#include "draw/mesh.h"
#include "draw/texture.h"
#include "font/font_unicode.h"

#include <new>

namespace companion {
namespace {

class TextBox : public virtual CControl, public virtual CTextBox_Base {};
class NumBox : public virtual CControl, public virtual CNumBox_Base {};

/// A picture of any size stands for each: files are judged elsewhere.
class Picture : public CTexture_Base {
  public:
    bool m_fnLoadTexture(const char16_t*) override { return m_fnCreate(1, 1, g_uFormatRGBA8, 1, false); }
    bool m_fnLoadCache() override { return m_fnLoadTexture(nullptr); }
};

stCreationTable g_stFormer;

} // namespace

PlainFlavour::PlainFlavour() {
    g_stFormer = g_stCreationTable;
    g_stCreationTable = {};
    g_stCreationTable.m_fnCreateMesh = []() -> CMesh_Base* { return new (std::nothrow) CMesh_Base; };
    g_stCreationTable.m_fnCreateEntity = []() -> CEntity_Base* { return new (std::nothrow) CEntity_Base; };
    g_stCreationTable.m_fnCreateTexture = []() -> CTexture_Base* { return new (std::nothrow) Picture; };
    g_stCreationTable.m_fnCreateFont = []() -> CFontUniCode* { return new (std::nothrow) CFontUniCode; };
    g_stCreationTable.m_fnCreateTextBox = []() -> CTextBox_Base* { return new (std::nothrow) TextBox; };
    g_stCreationTable.m_fnCreateNumBox = []() -> CNumBox_Base* { return new (std::nothrow) NumBox; };
    g_stCreationTable.m_fnCreatePanel = []() -> CPanel_Base* { return new (std::nothrow) CPanel_Base; };
}

PlainFlavour::~PlainFlavour() { g_stCreationTable = g_stFormer; }

} // namespace companion
