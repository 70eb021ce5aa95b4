#include "config/make/number_records.h"

#include "config/make/record_font.h"
#include "controls/control_ids.h"
#include "controls/num_box.h"
#include "draw/creation_table.h"

namespace {

void Configure(CNumBox_Base& box, const stNumInit& st) {
    box.m_fnSetFont(g_fnFontAt(st.uFont));
    box.m_fnSetSize(static_cast<f32>(st.iWidth), static_cast<f32>(st.iHeight));
    g_fnGiveLook(box, st.stLook);
    box.m_fnSetDigitPad(st.uPadDigits, st.uHidePad != 0);
    box.m_fnSetAutoSize(true);
    box.m_fnSetAnchor(st.iAnchorCode, static_cast<f32>(st.iX), static_cast<f32>(st.iY));
}

void HandOnSource(CNumBox_Base& box, const stNumInit& st) {
    if (st.uDataKind > 1) return;
    box.m_uDataKind = st.uDataKind;
    if (st.uDataKind == 0) box.m_u8DataFlag = st.u8DataFlag;
    box.m_pDataSource = st.pDataSource;
    box.m_uDataArg = st.uDataArg;
}

bool Create(const stNumInit& st) {
    const auto Maker = g_stCreationTable.m_fnCreateNumBox;
    std::unique_ptr<CNumBox_Base> pBox(Maker ? Maker() : nullptr);
    if (!pBox) return true;
    Configure(*pBox, st);
    HandOnSource(*pBox, st);
    if (!pBox->m_fnInitialize()) return false;
    if (g_fnRegisterXCtrl(IdNumBox, st.u64LB_ID, pBox.get())) pBox.release();
    return true; // refused and logged: the control has no owner, so it goes
}

} // namespace

bool g_fnCreateNumBoxes(std::span<const stNumInit> records) {
    for (const stNumInit& st : records)
        if (!Create(st)) return false;
    return true;
}
