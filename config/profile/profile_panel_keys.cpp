#include "config/profile/profile_panel_keys.h"

#include "batch/draw_text.h"
#include "config/make/panel_records.h"
#include "config/profile/profile_document.h"
#include "config/settings/settings.h"

#include <algorithm>
#include <cstring>
#include <span>

#include <tinyxml2.h>

using tinyxml2::XMLElement;

stProfileLooks g_stLooks = {};

namespace {

constexpr i32 c_iAlignLeft = 7, c_iAlignRight = 9;

// --- rows of the key tables

constexpr stSettingRow Number(const char* szKey, u32& uTarget, const char* szDefault = "0") {
    return {szKey, szDefault, SETTING_DECIMAL, TARGET_U32, &uTarget};
}

constexpr stSettingRow Signed(const char* szKey, i32& iTarget, const char* szDefault = "0") {
    return {szKey, szDefault, SETTING_DECIMAL, TARGET_I32, &iTarget};
}

constexpr stSettingRow Byte(const char* szKey, u8& uTarget) {
    return {szKey, "0", SETTING_DECIMAL, TARGET_U8, &uTarget};
}

constexpr stSettingRow Text(const char* szKey, char (&szTarget)[g_uSettingText]) {
    return {szKey, "", SETTING_TEXT, TARGET_TEXT, szTarget, g_uSettingText};
}

constexpr stSettingRow Text(const char* szKey, char16_t (&wzTarget)[g_uSettingText]) {
    return {szKey, "", SETTING_TEXT_LOCAL, TARGET_WIDE, wzTarget, g_uSettingText};
}

// --- what several parts have

/// A percentage of the profile, held to 100, and the byte that it stands for.
void TakePercent(u32 uPercent, u8& u8Percent, u8& u8Byte) {
    u8Percent = static_cast<u8>(std::min(uPercent, 100u));
    u8Byte = g_fnPercentToAlpha(u8Percent);
}

void ReadPanel(const XMLElement* pElement, stPanelKeys& st) {
    u32 uOpacity = 0;
    const stSettingRow aRows[] = {
        Byte("PanelColorR", st.u8R),
        Byte("PanelColorG", st.u8G),
        Byte("PanelColorB", st.u8B),
        Number("PanelOpacity", uOpacity),
        Number("PanelType", st.uType),
        Number("PanelScattering", st.uScattering, "30"),
        {"PanelThick", "0", SETTING_FLOAT, TARGET_F32, &st.fThick},
    };
    g_fnReadXmlSettings(pElement, aRows);
    TakePercent(uOpacity, st.u8Opacity, st.u8A);
    st.uScattering = std::min(st.uScattering, g_uScatterMax);
}

void ReadColors(const XMLElement* pElement, stTextColors& st) {
    u32 uOpacity = 0, uShadowOpacity = 0;
    const stSettingRow aRows[] = {
        Byte("TextColorR", st.m_u8TextR),     Byte("TextColorG", st.m_u8TextG),
        Byte("TextColorB", st.m_u8TextB),     Byte("ShadowColorR", st.m_u8ShadowR),
        Byte("ShadowColorG", st.m_u8ShadowG), Byte("ShadowColorB", st.m_u8ShadowB),
        Number("TextOpacity", uOpacity),      Number("ShadowOpacity", uShadowOpacity),
    };
    g_fnReadXmlSettings(pElement, aRows);
    TakePercent(uOpacity, st.m_u8TextOpacity, st.m_u8TextA);
    TakePercent(uShadowOpacity, st.m_u8ShadowOpacity, st.m_u8ShadowA);
}

void ReadPlace(const XMLElement* pElement, const char* szAnchor, stPartPlace& st) {
    const stSettingRow aRows[] = {
        Signed("Anchor", st.iAnchor, szAnchor),
        Signed("PositionX", st.iX),
        Signed("PositionY", st.iY),
    };
    g_fnReadXmlSettings(pElement, aRows);
}

// --- parts

void ReadInfo(const XMLElement* pElement) {
    stInfoKeys& st = g_stLooks.stInfo;
    const stSettingRow aRows[] = {Number("IsShow", st.uIsShow), Number("FontScale", st.uFontScale, "100")};
    g_fnReadXmlSettings(pElement, aRows);
    ReadPlace(pElement, "1", st.stPlace);
    ReadPanel(pElement, st.stPanel);
}

void ReadMemo(const XMLElement* pElement) {
    stMemoKeys& st = g_stLooks.stMemo;
    const stSettingRow aRows[] = {
        Number("IsShow", st.uIsShow),
        Text("Title", st.szTitle),
        Text("Filename", st.wzFilename),
        Number("FontScale", st.uFontScale, "5"),
        Number("FrameSizeW", st.uFrameSizeW, "200"),
    };
    g_fnReadXmlSettings(pElement, aRows);
    ReadColors(pElement, st.stColors);
    ReadPlace(pElement, "1", st.stPlace);
    ReadPanel(pElement, st.stPanel);
}

void ReadCaption(const XMLElement* pElement, stCaptionKeys& st) {
    const stSettingRow aRows[] = {
        Number("IsShow", st.uIsShow),
        Text("Title", st.szTitle),
        Text("FontName", st.wzFontName),
        Text("Text", st.wzText),
        Number("FontScale", st.uFontScale, "5"),
    };
    g_fnReadXmlSettings(pElement, aRows);
    ReadColors(pElement, st.stColors);
    ReadPlace(pElement, "7", st.stPlace);
    ReadPanel(pElement, st.stPanel);
}

void ReadPhoto(const XMLElement* pElement) {
    stPhotoKeys& st = g_stLooks.stPhoto;
    u32 uOpacity = 0;
    const stSettingRow aRows[] = {
        Number("IsShow", st.uIsShow),
        Text("Title", st.szTitle),
        Text("Filename", st.wzFilename),
        Number("FrameSizeW", st.uFrameSizeW, "200"),
        Number("FrameSizeH", st.uFrameSizeH, "200"),
        Number("PhotoOpacity", uOpacity),
    };
    g_fnReadXmlSettings(pElement, aRows);
    TakePercent(uOpacity, st.u8Opacity, st.u8A);
    ReadPlace(pElement, "1", st.stPlace);
    ReadPanel(pElement, st.stPanel);
}

void ReadCamera(const XMLElement* pElement) {
    u32 uGlow = 0, uShadow = 0;
    const stSettingRow aRows[] = {Number("TextGlow", uGlow), Number("TextShadow", uShadow)};
    g_fnReadXmlSettings(pElement, aRows);
    g_bTextGlow = uGlow != 0;
    g_stLooks.bTextShadow = uShadow != 0;
}

// --- styles

/// "ID", or else the digits of "Title". False if neither names a style.
bool StyleId(const XMLElement& element, u32& uId) {
    char szTitle[g_uSettingText];
    const stSettingRow aRows[] = {Number("ID", uId), Text("Title", szTitle)};
    g_fnReadXmlSettings(&element, aRows);
    if (!element.Attribute("ID")) uId = g_fnTitleNumber(szTitle);
    return uId < g_uStyleIds;
}

i32 ReadAlign(const XMLElement& element) {
    i32 iAnchor = 0;
    const stSettingRow aRows[] = {Signed("Anchor", iAnchor, "7")};
    g_fnReadXmlSettings(&element, aRows);
    return iAnchor >= c_iAlignLeft && iAnchor <= c_iAlignRight ? iAnchor : c_iAlignLeft;
}

template <class Take> void ForEachStyle(const char* szName, Take fnTake) {
    const XMLElement* const pInfo = g_fnProfileInfo();
    const XMLElement* const pList = pInfo ? pInfo->FirstChildElement("CustomSettings") : nullptr;
    const XMLElement* p = pList ? pList->FirstChildElement(szName) : nullptr;
    for (u32 uId = 0; p; p = p->NextSiblingElement(szName))
        if (StyleId(*p, uId)) fnTake(*p, uId);
}

} // namespace

const stTextColors& g_fnTextColorsOf(u32 uStyleId) {
    const auto it = g_stLooks.mapTextColors.find(uStyleId);
    return it != g_stLooks.mapTextColors.end() ? it->second : g_stPlainTextColors;
}

i32 g_fnTextAlignOf(u32 uStyleId) {
    const auto it = g_stLooks.mapTextAligns.find(uStyleId);
    return it != g_stLooks.mapTextAligns.end() ? it->second : c_iAlignLeft;
}

u32 g_fnTitleNumber(const char* szTitle) {
    const char* const szDigits = std::strpbrk(szTitle, "0123456789");
    return szDigits ? static_cast<u32>(std::min<u64>(g_fnParseDecimal(szDigits), g_uNoTitleNumber))
                    : g_uNoTitleNumber;
}

void g_fnReadProfilePanelKeys() {
    ReadInfo(g_fnProfileInfo());
    ReadMemo(g_fnProfileSetting("Memo"));
    ReadCaption(g_fnProfileSetting("Watermark"), g_stLooks.stWatermark);
    ReadCaption(g_fnProfileSetting("SystemInfo"), g_stLooks.stSystemInfo);
    ReadPhoto(g_fnProfileSetting("Photo"));
    ReadCamera(g_fnProfileSetting("Camera"));
}

void g_fnReadProfileTextStyles() {
    g_stLooks.mapTextColors.clear();
    g_stLooks.mapTextAligns.clear();
    ForEachStyle("TextColor", [](const XMLElement& element, u32 uId) {
        ReadColors(&element, g_stLooks.mapTextColors[uId]);
    });
    ForEachStyle("TextAlign", [](const XMLElement& element, u32 uId) {
        g_stLooks.mapTextAligns[uId] = ReadAlign(element);
    });
}

void g_fnReadProfileBatch() {
    g_fnReadProfilePanelKeys();
    g_fnReadSettingsBatch(g_stLooks.stPhoto.uFrameSizeW, g_stLooks.stPhoto.uFrameSizeH);
}
