#include "config/make/flip_records.h"

#include "config/make/record_font.h"
#include "controls/control_ids.h"
#include "controls/flip_box.h"
#include "draw/creation_table.h"

#include <algorithm>

namespace {

/// A text that is no valid UTF-16 refuses them all; the box then shows nothing.
void GiveTexts(CFlipBox_Base& box, const stFlipInit& st) {
    stFlipText aTexts[g_uFlipTexts] = {};
    for (u32 u = 0; u < g_uFlipTexts; ++u) {
        aTexts[u].wzText = st.awzText[u];
        std::copy_n(box.m_afTextColor, 4, aTexts[u].afColor);
    }
    box.m_fnSetStates(aTexts);
}

bool Create(const stFlipInit& st) {
    const auto Maker = g_stCreationTable.m_fnCreateFlipBox;
    std::unique_ptr<CFlipBox_Base> pBox(Maker ? Maker() : nullptr);
    if (!pBox) return true;
    pBox->m_fnSetFont(g_fnFontAt(st.uFont));
    g_fnGiveLook(*pBox, st.stLook);
    pBox->m_fnSetAnchor(st.iAnchorCode, static_cast<f32>(st.iX), static_cast<f32>(st.iY));
    GiveTexts(*pBox, st);
    if (!pBox->m_fnInitialize()) return false;
    if (g_fnRegisterXCtrl(IdFlipBox, st.u64LB_ID, pBox.get())) pBox.release();
    return true; // refused and logged: the control has no owner, so it goes
}

} // namespace

bool g_fnCreateFlipBoxes(std::span<const stFlipInit> records) {
    for (const stFlipInit& st : records)
        if (!Create(st)) return false;
    return true;
}
