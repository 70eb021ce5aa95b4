// Size of a profile's preview.
#include "config/profile/profile_document.h"
#include "config/settings/setting_binding.h"
#include "platform/surface.h"
#include "shared/process_records.h"

#include <algorithm>
#include <string_view>

#include <tinyxml2.h>

namespace {

constexpr u32 c_uWidth = 1920, c_uHeight = 1080;
constexpr f32 c_fUsualRatio = 1.7777778f;

struct PreviewKeys {
    u32 uWidth, uHeight;
    char szRatio[g_uSettingText];
};

void ApplyKeys(const tinyxml2::XMLElement* pPreview, PreviewKeys& stKeys) {
    const stSettingRow aRows[] = {
        {"Width", "0", SETTING_DECIMAL, TARGET_U32, &stKeys.uWidth},
        {"Height", "0", SETTING_DECIMAL, TARGET_U32, &stKeys.uHeight},
        {"AspectRatio", "", SETTING_TEXT, TARGET_TEXT, stKeys.szRatio, std::size(stKeys.szRatio)},
    };
    g_fnReadXmlSettings(pPreview, aRows);
}

/// On a document of its own; what can't be found has its defaults.
void ReadKeys(PreviewKeys& stKeys) {
    char16_t wzPath[g_uDataPathCapacity];
    tinyxml2::XMLDocument document;
    const tinyxml2::XMLElement* pElement = nullptr;
    g_fnResolveProfileDocument(g_wzProfileName[0] ? g_wzProfileName : u"Default", wzPath);
    if (g_fnOpenProfileDocument(wzPath, document, nullptr)) {
        pElement = document.FirstChildElement("OSD");
        const char* const aszPath[] = {g_fnLayoutElementName(g_fnLayoutStyleOf(*pElement)), "Settings",
                                       "Preview"};
        for (const char* szName : aszPath)
            if (pElement) pElement = pElement->FirstChildElement(szName);
    }
    ApplyKeys(pElement, stKeys);
}

/// "21:9" and the like.
f32 RatioOf(std::string_view text) {
    const std::size_t uFirst = std::min(text.find(':'), text.size());
    const std::string_view second = text.substr(std::min(uFirst + 1, text.size()));
    const f32 fFirst = static_cast<f32>(g_fnParseFloat(std::string(text.substr(0, uFirst)).c_str()));
    const f32 fSecond = static_cast<f32>(g_fnParseFloat(std::string(second).c_str()));
    return fSecond > 0 ? fFirst / fSecond : c_fUsualRatio;
}

u32 WidthOf(f32 fRatio) {
    constexpr f32 fMost = 1000000.0f; // of no use, and no trouble
    return static_cast<u32>(std::clamp(fRatio * static_cast<f32>(c_uHeight), 0.0f, fMost));
}

} // namespace

void g_fnReadPreviewSize(u32& uWidth, u32& uHeight, bool& bFixedAspect) {
    PreviewKeys stKeys;
    ReadKeys(stKeys);
    bFixedAspect = stKeys.szRatio[0] != 0;
    uWidth = bFixedAspect ? WidthOf(RatioOf(stKeys.szRatio)) : stKeys.uWidth;
    uHeight = bFixedAspect ? c_uHeight : stKeys.uHeight;
    if (uWidth != 0 && uHeight != 0) return;
    u32 uDesktopW = 0, uDesktopH = 0;
    platform::DesktopSize(&uDesktopW, &uDesktopH);
    bFixedAspect = uDesktopW != 0 && uDesktopH != 0;
    uWidth = bFixedAspect ? WidthOf(static_cast<f32>(uDesktopW) / static_cast<f32>(uDesktopH)) : c_uWidth;
    uHeight = c_uHeight;
}
