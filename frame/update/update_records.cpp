#include "frame/update/update_records.h"

#include "controls/align_row.h"
#include "controls/flip_box.h"
#include "controls/num_box.h"
#include "controls/panel.h"
#include "controls/text_box.h"
#include "frame/update/update_boxes.h"
#include "shared/monitor_data.h"

std::list<CUpdateDataFuncN> g_listUpdateFPS_N, g_listUpdateData_N;
std::list<CUpdateDataFuncL> g_listUpdateFPS_L, g_listUpdateData_L;
std::list<CUpdateDataFuncF> g_listUpdateData_F;
std::list<stUpdateMixedData> g_listUpdateMixed;
u32 g_uUpdateRecordCount = 0;

CUpdateDataFuncN::CUpdateDataFuncN(u64 u64NumBoxBID, i32 iNumBox, const u32* pData, u32 uDecimals,
                                   u32 uDivisor) noexcept
    : m_uNumBoxBID(u64NumBoxBID), m_iNumBox(iNumBox), m_uDecimals(uDecimals), m_uDivisor(uDivisor),
      m_fnSimple(g_fnUpdateNumSimple), m_pData(pData) {}

void CUpdateDataFuncN::operator()() {
    if (m_fnSimple && m_iNumBox != g_iNoIndex) {
        m_fnSimple(m_iNumBox, m_pData, m_uDecimals, m_uDivisor);
        return;
    }
    if (!m_fnRow || m_iPanel == g_iNoIndex || m_iNumBox == g_iNoIndex || m_iTextBox == g_iNoIndex) return;
    m_fnRow(m_iPanel, m_iNumBox, m_iTextBox, m_pData, m_uDecimals, m_uDivisor);
}

void CUpdateDataFuncL::operator()() {
    if (m_fn && m_iIndex != g_iNoIndex) m_fn(m_iIndex, m_pData, m_uDivisor);
}

/// A number that is no state's changes nothing.
void CUpdateDataFuncF::operator()() {
    CFlipBox_Base* pBox = boxes::FlipBox(m_iIndex);
    if (pBox && m_pData) pBox->m_fnSelectState(static_cast<u32>(g_fnReadData(m_pData)));
}

void stUpdateMixedData::operator()() {
    if (m_fn) m_fn(*this);
}

void g_fnClearUpdateLists() noexcept {
    g_listUpdateFPS_N.clear();
    g_listUpdateFPS_L.clear();
    g_listUpdateData_N.clear();
    g_listUpdateData_L.clear();
    g_listUpdateData_F.clear();
    g_listUpdateMixed.clear();
    g_uUpdateRecordCount = 0;
}

void g_fnCountUpdateRecords(u32 uStyle) noexcept {
    std::size_t uCount = g_listUpdateData_N.size() + g_listUpdateData_L.size();
    if (uStyle == 2) uCount += g_listUpdateMixed.size();
    g_uUpdateRecordCount = static_cast<u32>(uCount);
}

u32 g_fnRandom() noexcept {
    static u32 uState = 1;
    uState = uState * 214013u + 2531011u;
    return (uState >> 16) & 0x7FFF;
}

u32 g_fnRandomValue() noexcept { return g_fnRandom() % 10000; }

void CRandomData_MB::m_fnGenerate() { m_uResult = g_fnRandom() % 16385; }
void CRandomData_Usage::m_fnGenerate() { m_uResult = g_fnRandom() % 101; }

i32 g_fnUpdateValue(const u32* pData) noexcept {
    return pData ? g_fnReadData(pData) : static_cast<i32>(g_fnRandomValue());
}

/// A divisor of 0 counts as 1; the quotient is cut to a whole number for boxes without decimals.
static void ShowNumber(CNumBox_Base& box, i32 iValue, u32 uDecimals, f32 fDivisor) {
    const f32 fValue = static_cast<f32>(iValue) / (fDivisor == 0.0f ? 1.0f : fDivisor);
    if (uDecimals != 0) {
        box.m_fnSetFloat(fValue, uDecimals);
        return;
    }
    box.m_fnSetInt(static_cast<i32>(static_cast<i64>(fValue)), 0);
}

/// A whole number that nothing divides goes to its box as it is, without a way through single precision.
static bool IsPlain(u32 uDecimals, u32 uDivisor) { return uDecimals == 0 && uDivisor <= 1; }

static void ShowValue(CNumBox_Base& box, const u32* pData, u32 uDecimals, u32 uDivisor, f32 fDivisor) {
    const i32 iValue = g_fnUpdateValue(pData);
    if (IsPlain(uDecimals, uDivisor))
        box.m_fnSetInt(iValue, 0);
    else
        ShowNumber(box, iValue, uDecimals, fDivisor);
}

// KEEP(profiles): this form takes the divisor as signed, the row form takes it as unsigned.
void g_fnUpdateNumSimple(i32 iNumBox, const u32* pData, u32 uDecimals, u32 uDivisor) {
    if (CNumBox_Base* pBox = boxes::NumBox(iNumBox))
        ShowValue(*pBox, pData, uDecimals, uDivisor, static_cast<f32>(static_cast<i32>(uDivisor)));
}

void g_fnUpdateNumRow(i32 iPanel, i32 iNumBox, i32 iTextBox, const u32* pData, u32 uDecimals, u32 uDivisor) {
    CNumBox_Base* pBox = boxes::NumBox(iNumBox);
    if (!pBox) return;
    ShowValue(*pBox, pData, uDecimals, uDivisor, static_cast<f32>(uDivisor));
    CControl* const apItems[] = {pBox, boxes::TextBox(iTextBox)};
    g_fnAlignRow(boxes::Panel(iPanel), apItems, 8, 1.0f);
}
