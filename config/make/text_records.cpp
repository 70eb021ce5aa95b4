#include "config/make/text_records.h"

#include "base/log.h"
#include "config/make/record_font.h"
#include "controls/control_ids.h"
#include "controls/text_box.h"
#include "controls/text_file.h"
#include "draw/creation_table.h"
#include "platform/utf.h"

namespace {

void Place(CTextBox_Base& box, const stTextInit& st) {
    box.m_fnSetFont(g_fnFontAt(st.uFont));
    g_fnGiveLook(box, st.stLook);
    box.m_fnSetAnchor(st.iAnchorCode, static_cast<f32>(st.iX), static_cast<f32>(st.iY));
    const f32 w = static_cast<f32>(st.iWidth), h = static_cast<f32>(st.iHeight);
    if (st.bAutoSize) box.m_fnSetSize(st.stLook.m_fTextSize, st.stLook.m_fTextSize);
    if (!st.bAutoSize || !st.bFitToText) box.m_fnSetSize(w, h);
    if (st.bAutoSize && !st.bFitToText) box.m_fnSetClipWidth(w);
    box.m_fnSetAutoSize(st.bAutoSize);
    box.m_fnSetFitToText(st.bFitToText);
}

void LogFailedLoad(const char16_t* wzPath) {
    char szPath[g_uProfilePathCapacity * 3];
    platform::Utf16ToUtf8(wzPath, szPath, sizeof szPath);
    g_fnLog("m_fnLoadText(): %s\n", szPath);
    g_fnLog("m_fnLoadText() error !\n");
}

/// wzPath: of the memo.
bool GiveText(CTextBox_Base& box, const stTextInit& st, const char16_t* wzPath) {
    if (!st.bMemo) {
        box.m_fnSetTextW(st.wzText);
        return true;
    }
    if (box.m_fnLoadText(wzPath, true)) return true;
    LogFailedLoad(wzPath);
    return false;
}

bool Create(const stTextInit& st, const char16_t* wzPath) {
    const auto Maker = g_stCreationTable.m_fnCreateTextBox;
    std::unique_ptr<CTextBox_Base> pBox(Maker ? Maker() : nullptr);
    if (!pBox) return true;
    Place(*pBox, st);
    // KEEP(profiles): a memo file without text ends the whole creation.
    if (!GiveText(*pBox, st, wzPath)) return false;
    if (!pBox->m_fnInitialize()) return false;
    if (g_fnRegisterXCtrl(IdTextBox, st.u64LB_ID, pBox.get())) pBox.release();
    return true; // refused and logged: the control has no owner, so it goes
}

} // namespace

bool g_fnCreateTextBoxes(std::span<const stTextInit> records) {
    for (const stTextInit& st : records) {
        char16_t wzPath[g_uProfilePathCapacity] = {};
        if (st.bMemo && (!st.wzText || !g_fnCheckMemoFile(st.wzText, wzPath))) {
            g_fnLog("g_fnCheckMemoFile() error !\n");
            continue;
        }
        if (!Create(st, wzPath)) return false;
    }
    return true;
}
