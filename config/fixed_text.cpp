#include "config/fixed_text.h"

#include "config/item_map.h"
#include "config/item_number.h"
#include "config/item_text.h"
#include "config/sensor_table.h"
#include "controls/control_ids.h"
#include "controls/num_box.h"
#include "controls/panel.h"
#include "controls/text_box.h"
#include "draw/creation_table.h"
#include "font/font_unicode.h"
#include "frame/log.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

/// Printable ASCII: what numbers and the text of program values need.
constexpr u32 g_uFirstPrintable = 33, g_uLastPrintable = 126;

void AddGlyphs(CFontUniCode& font, std::span<const stFixedText> texts, u32 uFont) {
    std::set<u32> codes;
    for (u32 u = g_uFirstPrintable; u <= g_uLastPrintable; ++u) codes.insert(u);
    g_fnFontAddSet(&font, codes);
    for (const stFixedText& st : texts)
        if (st.stText.uFont == uFont) g_fnFontAddText(&font, st.stText.wzText);
}

std::unique_ptr<CFontUniCode> MakeFont(const stFixedFont& st) {
    std::unique_ptr<CFontUniCode> pFont(g_stCreationTable.m_fnCreateFont());
    if (!pFont) return nullptr;
    pFont->m_fnSetLayout(st.uGrid, st.uGrid, 0);
    pFont->m_fnSetTexSize(st.uAtlas, st.uAtlas);
    pFont->m_fnSetFontName(st.wzFace);
    pFont->m_fnSetFontWeight(st.iWeight);
    return pFont->m_fnInitialize(false) ? std::move(pFont) : nullptr;
}

bool MakeFonts(const stFixedWriting& st) {
    for (u32 u = 0; u < st.fonts.size() && u < g_uFontEntries; ++u) {
        std::unique_ptr<CFontUniCode> pFont = MakeFont(st.fonts[u]);
        if (!pFont) return false;
        AddGlyphs(*pFont, st.texts, u);
        g_ppFont[u] = pFont.release();
    }
    return true;
}

bool MakeTexts(std::span<const stFixedText> texts) {
    for (u32 u = 0; u < texts.size(); ++u) {
        stTextInit stText = texts[u].stText;
        std::u16string wzValue;
        stText.u64LB_ID = u + 1;
        if (texts[u].szValue && g_fnProgramValue(texts[u].szValue, wzValue)) stText.wzText = wzValue.c_str();
        if (!g_fnCreateTextBoxes({&stText, 1})) return false;
        if (texts[u].szName) (*g_fnControlNames('T'))[texts[u].szName] = stText.u64LB_ID;
    }
    return true;
}

/// The item by which the list builder finds box and data.
void RegisterNumberItem(const char* szName, const char* szData, u64 u64Id, u32 uType,
                        const stFixedMixed* pMixed) {
    CItemProperty_NumBox item;
    item.m_fnSetType(uType);
    item.m_u64ItemId = u64Id;
    std::strncpy(item.m_szItemName, szName, sizeof item.m_szItemName - 1);
    std::strncpy(item.m_szDataFullName, szData, sizeof item.m_szDataFullName - 1);
    if (pMixed) {
        item.m_iContentAnchor = pMixed->iAlign;
        item.m_iContentAnchorX = pMixed->iX;
        item.m_iContentAnchorY = pMixed->iY;
        item.m_fTextSpacingX = pMixed->fGap;
    }
    g_fnRegisterItemProperty(&item);
}

bool MakeNumbers(std::span<const stFixedNumber> numbers) {
    for (u32 u = 0; u < numbers.size(); ++u) {
        stNumInit stNumber = numbers[u].stNumber;
        stNumber.u64LB_ID = u + 1;
        if (!g_fnCreateNumBoxes({&stNumber, 1})) return false;
        (*g_fnControlNames('N'))[numbers[u].szName] = stNumber.u64LB_ID;
        if (numbers[u].szData)
            RegisterNumberItem(numbers[u].szName, numbers[u].szData, stNumber.u64LB_ID, ITEM_NUMBOX, nullptr);
    }
    return true;
}

void MakeMixed(std::span<const stFixedMixed> mixed, u64 u64FirstId) {
    for (const stFixedMixed& st : mixed) {
        (*g_fnControlNames('P'))[std::string(st.szName) + "_F"] = st.u64Panel;
        RegisterNumberItem(st.szName, st.szData, u64FirstId++, ITEM_MIXED, &st);
    }
}

void Hang(u64 u64Panel, CControl* pControl) {
    CPanel_Base* pPanel = g_fnFindCtrlById(u64Panel, g_stPanelIds, g_ppPanel);
    if (pControl) g_pOSDManager->m_fnAddChild(pPanel, pControl);
}

/// What a sensor file would say of names that the program does not know by itself.
void NameSensors() {
    for (const char* szName : {"RAM_USAGE_MB", "RAM_USAGE_P"}) g_mapSensorFormat.try_emplace(szName);
}

} // namespace

bool g_fnMakeFixedWriting(const stFixedWriting& st) {
    if (!g_stCreationTable.m_fnCreateFont) return true;
    NameSensors();
    if (!MakeFonts(st) || !MakeTexts(st.texts) || !MakeNumbers(st.numbers)) return false;
    MakeMixed(st.mixed, st.numbers.size() + 1);
    return true;
}

void g_fnHangFixedWriting(const stFixedWriting& st) {
    for (u32 u = 0; u < st.texts.size(); ++u)
        Hang(st.texts[u].u64Panel, g_fnFindCtrlById(u64{u} + 1, g_stTextBoxIds, g_ppTextBox));
    for (u32 u = 0; u < st.numbers.size(); ++u)
        Hang(st.numbers[u].u64Panel, g_fnFindCtrlById(u64{u} + 1, g_stNumBoxIds, g_ppNumBox));
}
