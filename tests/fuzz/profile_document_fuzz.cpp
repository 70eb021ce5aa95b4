// The input as the profile's document, read by everything that reads profiles: the handles, the preview, all
// blocks of all styles and the companion's question. Each style is forced in turn. What was read holds
// together.
#include "base/layout_style.h"
#include "config/profile/profile_cards.h"
#include "config/profile/profile_document.h"
#include "config/profile/profile_names.h"
#include "config/profile/profile_panel_keys.h"
#include "config/profile/profile_switches.h"
#include "config/settings/settings_sensors.h"
#include "platform/headless/test_controls.h"
#include "shared/process_records.h"
#include "tests/support/test_data_folder.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <iterator>

#include <tinyxml2.h>

namespace {

void Require(bool bHolds) {
    if (!bHolds) std::abort();
}

template <class T, std::size_t N> bool Ends(const T (&text)[N]) {
    return std::char_traits<T>::find(text, N, T{}) != nullptr;
}

constexpr char c_szReference[] = "<OSD><ClassicLayout><Group/><Template/></ClassicLayout>"
                                 "<ORVINLayout><Group/><Template/></ORVINLayout></OSD>";

/// A machine of three cards on which everything is supported that the seeds name.
void FillSettings() {
    namespace headless = platform::headless;
    const std::u16string wstrRoot = u"SOFTWARE\\Zarn\\ORVIN-OSD\\Information Option\\";
    headless::SetSettingsNumber((wstrRoot + u"Card").c_str(), u"Card Num", 3);
    headless::SetSettingsText((wstrRoot + u"Config\\Sensor\\Pump").c_str(), u"DataName", u"PUMP");
    for (const char16_t* wzGroup : {u"0", u"3", u"63"})
        headless::SetSettingsNumber((wstrRoot + u"Sensor\\" + wzGroup + u"\\PUMP").c_str(), u"IsSupport", 1);
    for (const stInfoRow& row : g_aCpuRows)
        headless::SetSettingsNumber((wstrRoot + u"CPU\\" + row.wzRow).c_str(), u"IsSupport", 1);
    for (const char16_t* wzCard : {u"0", u"1"})
        for (const stInfoRow& row : g_aCardRows)
            headless::SetSettingsNumber((wstrRoot + u"Card\\" + wzCard + u"\\" + row.wzRow).c_str(),
                                        u"IsSupport", 1);
    g_fnProbeWowKeys();
    g_fnReadSensorDefinitions();
}

class CFolder {
  public:
    CFolder() {
        std::filesystem::create_directories(m_folder.Path("Profiles/Default"));
        m_folder.Write("OSD_Ref.xml", c_szReference);
        FillSettings();
    }
    void Write(const std::string& strBytes) const { m_folder.Write("Profiles/Default/OSD.xml", strBytes); }

  private:
    CTestDataFolder m_folder{false};
};

void CheckPanel(const stPanelKeys& st) {
    Require(st.u8Opacity <= 100 && st.uScattering <= 100 && std::isfinite(st.fThick));
}

void CheckColors(const stTextColors& st) {
    Require(st.m_u8TextOpacity <= 100 && st.m_u8ShadowOpacity <= 100);
}

void CheckCaption(const stCaptionKeys& st) {
    Require(Ends(st.szTitle) && Ends(st.wzFontName) && Ends(st.wzText));
    CheckColors(st.stColors);
    CheckPanel(st.stPanel);
}

void CheckKeys() {
    g_fnReadProfilePanelKeys();
    g_fnReadProfileTextStyles();
    CheckPanel(g_stLooks.stInfo.stPanel);
    Require(Ends(g_stLooks.stMemo.szTitle) && Ends(g_stLooks.stMemo.wzFilename));
    CheckColors(g_stLooks.stMemo.stColors);
    CheckPanel(g_stLooks.stMemo.stPanel);
    CheckCaption(g_stLooks.stWatermark);
    CheckCaption(g_stLooks.stSystemInfo);
    Require(Ends(g_stLooks.stPhoto.szTitle) && Ends(g_stLooks.stPhoto.wzFilename) &&
            g_stLooks.stPhoto.u8Opacity <= 100);
    for (const auto& [uId, st] : g_stLooks.mapTextColors) {
        Require(uId < g_uStyleIds);
        CheckColors(st);
    }
    for (const auto& [uId, iAnchor] : g_stLooks.mapTextAligns)
        Require(uId < g_uStyleIds && iAnchor >= 7 && iAnchor <= 9);
}

void CheckInfoBlock() {
    g_fnReadProfileSwitches();
    const bool bOrder = g_fnReadProfileCardOrder();
    const stCardBlock& st = g_stInfoBlock.stCards;
    Require(st.uDisplayCount <= (bOrder ? 3u : 0u));
    for (u32 u = 0; u < st.uDisplayCount; ++u)
        Require(st.aiCardOfDisplay[u] >= 0 && st.aiCardOfDisplay[u] < static_cast<i32>(g_uDisplayMax));
    if (!bOrder || !g_fnReadProfileInfoBlock()) return;
    Require(g_stDisplay.uCpus >= 1 && g_stDisplay.uCpus <= g_uDisplayMax);
    for (u32 u = 0; u < g_uDisplayMax; ++u) {
        g_fnIsCardRowVisible(st, u, g_uCardRows - 1);
        g_fnIsCpuRowVisible(g_stInfoBlock.stCpu, u, g_uCpuRows - 1);
    }
    for (const stSensorRow& row : g_stDisplay.listSensorRows) Require(row.uGroup < 64 && row.uOrdinal < 1024);
    std::map<std::string, u32, std::less<>> map;
    g_fnReadDisplayIndexes(g_fnProfileInfo(), map);
}

void CheckStyle(i32 iStyle) {
    u32 uWidth = 0, uHeight = 0;
    bool bFixed = false;
    std::set<std::string> names;
    g_iLayoutStyleOverride = iStyle;
    g_fnReadPreviewSize(uWidth, uHeight, bFixed);
    Require(uWidth != 0 && uHeight != 0);
    const bool bNames = g_fnGetDataFullNames(u"Default", &names) != 0;
    Require(bNames || names.empty());
    const bool bRead = g_fnRead_OSD_Profile();
    Require(bRead == (g_stProfile.iError == PROFILE_OK) && bRead == (g_stProfile.pSettings != nullptr));
    // What can be asked about can be loaded.
    Require(bRead || !bNames);
    CheckKeys();
    CheckInfoBlock();
    g_fnClearProfileDocuments();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const u8* pData, std::size_t uBytes) {
    static const CFolder s_folder;
    const std::string strBytes(reinterpret_cast<const char*>(pData), uBytes);
    tinyxml2::XMLDocument document;
    g_fnParseProfileDocument(strBytes, document, nullptr);
    s_folder.Write(strBytes);
    g_wzProfileName[0] = 0;
    for (const i32 iStyle : {-1, 0, 1, 2}) CheckStyle(iStyle);
    return 0;
}
