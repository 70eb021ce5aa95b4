#pragma once
// Text, number and flip boxes of the merged flavour: as those of the OpenGL flavour, without a call of the
// API.
#include "controls/flip_box.h"
#include "controls/num_box.h"
#include "controls/text_box.h"

class CTextBox_Merged final : public virtual CControl, public virtual CTextBox_Base {
  public:
    void m_fnDrawText(CDraw_Base* pBatcher, const f32* pWorld, const f32* pColor) override;
};

class CNumBox_Merged final : public virtual CControl, public virtual CNumBox_Base {
  public:
    /// Without the copies at the control's position, which nothing here reads: a third of what is kept of all
    /// controls.
    bool m_fnAllocBuffers() override;
    void m_fnDrawDigits(CDraw_Base* pBatcher, CEntity_Base** ppEntities, const f32* pColor) override;
};

class CFlipBox_Merged final : public virtual CControl, public virtual CFlipBox_Base {
  public:
    void m_fnDrawText(CDraw_Base* pBatcher, const f32* pWorld, const f32* pColor) override;
};

/// Entries of the creation table; null when out of memory.
CTextBox_Base* CreateTextBox_Merged();
CNumBox_Base* CreateNumBox_Merged();
CFlipBox_Base* CreateFlipBox_Merged();
