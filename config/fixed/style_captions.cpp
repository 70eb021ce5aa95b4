#include "config/fixed/style_captions.h"

#include "config/fixed/style_rows.h"
#include "config/fixed/template_records.h"
#include "config/settings/sensor_table.h"
#include "config/settings/setting_binding.h"
#include "config/settings/settings_sensors.h"

#include <cstring>
#include <map>
#include <string_view>

#include <tinyxml2.h>

namespace {

using tinyxml2::XMLElement;

// --- sensors -----------------------------------------------------------------------------------------------

/// A template of its own for an item that stands behind the extension, whose template it copies.
template <class Pool> void CopyTemplate(Pool& pool, u32 uExtension, u32 uBID) {
    if (pool.m_fnIsUsed(uBID)) return;
    const auto* const pFrom = pool.m_fnFind(uExtension);
    if (!pFrom) return;
    const auto copy = *pFrom;
    if (auto* const pTo = pool.m_fnUse(uBID)) *pTo = copy;
}

void CopyTemplates(const stStyleItem& item, u32 uRow) {
    const u32 uFrom = item.uBID - uRow;
    if (item.eKind == eItem::Text) CopyTemplate(g_stTemplates.poolTextBox, uFrom, item.uBID);
    if (item.eKind == eItem::Number) CopyTemplate(g_stTemplates.poolNumBox, uFrom, item.uBID);
    if (item.eKind == eItem::Panel) CopyTemplate(g_stTemplates.poolPanel, uFrom, item.uBID);
}

/// A sensor without words of its own is called as its data.
std::u16string TitleOf(const stSensorDefinition& st) {
    if (st.wzCaption[0]) return st.wzCaption;
    char16_t wzName[g_uSettingText];
    g_fnDecodeUtf8(st.szDataName, wzName, g_uSettingText);
    return wzName;
}

std::u16string_view WithoutBlanks(std::u16string_view wz) {
    while (wz.starts_with(u' ')) wz.remove_prefix(1);
    while (wz.ends_with(u' ')) wz.remove_suffix(1);
    return wz;
}

/// A sensor's unit as the style writes it. Reference files put blanks around units so that numbers line up: a
/// row with that unit, or the extension's own, shows how. One that none has stands off its number.
std::u16string UnitOf(const stStyleItems& style, const stSensorDefinition& st) {
    std::u16string wzUnit = st.wzUnit;
    bool bFound = wzUnit.empty();
    g_fnForEachItem(style, [&](const stStyleItem& item) {
        if (bFound || item.eKind != eItem::Text || item.szRole != std::string_view("UNIT")) return;
        const stTextTemplate* const p = g_stTemplates.poolTextBox.m_fnFind(item.uBID);
        bFound = p && p->wzText.starts_with(u' ') && WithoutBlanks(p->wzText) == st.wzUnit;
        if (bFound) wzUnit = p->wzText;
    });
    return bFound ? wzUnit : u' ' + wzUnit;
}

void PrepareItem(const stStyleItem& item, u32 uRow, const std::u16string& wzUnit, stSensorDefinition& st) {
    CopyTemplates(item, uRow);
    if (item.eKind == eItem::Number) st.iValueNumberId = static_cast<i32>(item.uBID);
    if (item.eKind != eItem::Text) return;
    const bool bTitle = item.szRole == std::string_view("TITLE");
    (bTitle ? st.iTitleTextId : st.iUnitTextId) = static_cast<i32>(item.uBID);
    g_fnSetItemText(item.uBID, bTitle ? TitleOf(st) : wzUnit);
}

// --- the profile's own words -------------------------------------------------------------------------------

std::u16string DisplayText(const XMLElement* pElement) {
    char16_t wzText[g_uSettingText] = {};
    const stSettingRow aRows[] = {
        {"DisplayText", "", SETTING_TEXT_LOCAL, TARGET_WIDE, wzText, g_uSettingText}};
    g_fnReadXmlSettings(pElement, aRows);
    return wzText;
}

/// The element that decides for all cards: that of the first one.
const XMLElement* FirstCard(const XMLElement* pInfo) {
    for (auto* p = pInfo->FirstChildElement("Card"); p; p = p->NextSiblingElement("Card"))
        if (const char* szTitle = p->Attribute("Title"); szTitle && !std::strcmp(szTitle, "Card#0")) return p;
    return nullptr;
}

const XMLElement* OwnerOf(const stDisplayRow& row, const XMLElement* pInfo) {
    if (row.eOf == eRowOf::Card) return FirstCard(pInfo);
    return row.eOf == eRowOf::Cpu ? pInfo->FirstChildElement("CPU") : pInfo;
}

void GiveTitle(const stStyleItems& style, std::string_view szWord, const XMLElement* pElement) {
    const u32 uBID = g_fnItemBID(style, eItem::Text, szWord, "TITLE");
    const std::u16string wzText = DisplayText(pElement);
    if (uBID != g_uNoBID && !wzText.empty()) g_fnSetItemText(uBID, wzText);
}

void GiveRowTitle(const stStyleItems& style, const stDisplayRow& row, const XMLElement* pInfo) {
    const XMLElement* const pOwner = OwnerOf(row, pInfo);
    if (!pOwner) return;
    GiveTitle(style, row.szWord, pOwner->FirstChildElement(row.szElement));
    if (row.szOtherElement) GiveTitle(style, row.szWord, pOwner->FirstChildElement(row.szOtherElement));
}

void GiveSensorTitles(const XMLElement& sensor) {
    for (auto* p = sensor.FirstChildElement(); p; p = p->NextSiblingElement()) {
        const auto itTag = g_stSensors.mapTag.find(std::string_view(p->Name()));
        if (itTag == g_stSensors.mapTag.end()) continue;
        const auto it = g_stSensors.mapByName.find(itTag->second);
        const std::u16string wzText = DisplayText(p);
        if (it != g_stSensors.mapByName.end() && it->second.iTitleTextId >= 0 && !wzText.empty())
            g_fnSetItemText(static_cast<u32>(it->second.iTitleTextId), wzText);
    }
}

} // namespace

bool g_fnSetItemText(u32 uTextBID, const std::u16string& wzText) {
    stTextTemplate* const p = g_stTemplates.poolTextBox.m_fnFind(uTextBID);
    if (p) p->wzText = wzText;
    return p != nullptr;
}

void g_fnApplyFixedCaptions() {
    for (const auto& [wzCaption, strTitle] : g_stNameMaps.mapCaptionTitle)
        g_fnSetItemText(g_fnFindBID(g_stNameMaps.mapTextBox, strTitle), wzCaption);
}

void g_fnPrepareSensorRows(const stStyleItems& style) {
    for (auto& [strName, st] : g_stSensors.mapByName)
        st.iTitleTextId = st.iValueNumberId = st.iUnitTextId = -1;
    // The first sensor stands in the extension's own items: what those show is looked at ahead of it.
    std::map<std::string_view, std::u16string> mapUnits;
    for (const auto& [strName, st] : g_stSensors.mapByName) mapUnits[strName] = UnitOf(style, st);
    for (const stSensorRow& row : g_stDisplay.listSensorRows) {
        const auto it = g_stSensors.mapByName.find(row.szBaseName);
        if (it == g_stSensors.mapByName.end()) continue;
        g_fnForEachSensorItem(style, row.szBaseName, row.uOrdinal, [&](const stStyleItem& item) {
            PrepareItem(item, row.uOrdinal, mapUnits[it->first], it->second);
        });
    }
}

void g_fnApplyDisplayTexts(const stStyleItems& style, const XMLElement* pInfo) {
    if (!pInfo) return;
    for (const stDisplayRow& row : g_fnDisplayRows()) GiveRowTitle(style, row, pInfo);
    GiveTitle(style, "POWERED_BY_ORVIN_DECK", pInfo->FirstChildElement("PoweredByOrvinDeck"));
    for (auto* p = pInfo->FirstChildElement("Sensor"); p; p = p->NextSiblingElement("Sensor"))
        GiveSensorTitles(*p);
}
