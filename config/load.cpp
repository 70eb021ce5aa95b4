#include "config/load.h"

#include "base/layout_style.h"
#include "base/log.h"
#include "base/renew.h"
#include "base/watched_files.h"
#include "batch/draw_text.h"
#include "config/custom/custom_layout.h"
#include "config/fixed/attribute_value.h"
#include "config/fixed/enable_map.h"
#include "config/fixed/fixed_layout.h"
#include "config/fixed/group_order.h"
#include "config/fixed/info_place.h"
#include "config/fixed/name_maps.h"
#include "config/fixed/template_records.h"
#include "config/fixed/variables.h"
#include "config/profile/profile_cards.h"
#include "config/profile/profile_document.h"
#include "config/profile/profile_panel_keys.h"
#include "config/profile/profile_switches.h"
#include "config/settings/intervals.h"
#include "config/settings/sensor_table.h"
#include "config/settings/settings.h"
#include "config/settings/settings_sensors.h"
#include "controls/control_ids.h"
#include "controls/osd_manager.h"
#include "draw/backdrop.h"
#include "draw/canvas.h"
#include "draw/data_path.h"
#include "draw/draw_keys.h"
#include "font/kept_glyphs.h"
#include "platform/clock.h"
#include "shared/process_records.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <string>

stPreviewSize g_stPreview;

namespace {

/// Waits after a failed load: so many seconds, or so many times what the try took.
constexpr f64 g_fLeastWait = 1, g_fMostWait = 10, g_fWaitPerTry = 20;

struct stFailedLoad {
    bool bFailed = false;
    char16_t wzProfile[g_uProfileNameUnits] = {};
    i64 iDue = 0;  ///< of the next try, performance-counter ticks
    i64 iLook = 0; ///< of the next look at the files, performance-counter ticks
};
stFailedLoad g_stFailedLoad;

/// A build that failed later on leaves its controls; the next try must not stand on them.
bool EmptyManager() {
    if (!g_pOSDManager || !g_pOSDManager->m_fnStartOver()) return false;
    g_fnSelectManager();
    return true;
}

bool ReadDocuments() {
    g_apLayoutRoutine[STYLE_CLASSIC] = g_fnCreate_Tavo_ResourceByClassicStyle;
    g_apLayoutRoutine[STYLE_RV5] = g_fnCreate_Tavo_ResourceByRV5Style;
    g_apLayoutRoutine[STYLE_CUSTOM] = g_fnCreateCustomLayout;
    if (g_fnRead_OSD_Profile()) return true;
    g_fnReportProfileFailure();
    return false;
}

bool CreateLayout() {
    if (g_stProfile.pRoutine) return g_stProfile.pRoutine();
    g_fnLog("no routine for layout style %i", static_cast<i32>(g_uLayoutStyle));
    return false;
}

/// Texts that come later may still add a glyph.
void RestFonts() {
    for (u32 u = 0; g_ppFont && u < g_uFontEntries; ++u)
        if (g_ppFont[u] && g_ppFont[u]->m_vecWaiting.empty()) g_ppFont[u]->m_fnPackAtlas();
    g_fnDropKeptGlyphs();
}

bool Load() {
    g_fnForgetWatchedFiles();
    g_fnClearConfiguration();
    if (!EmptyManager()) return false;
    g_fnRegisterVariables();
    g_fnProbeWowKeys();
    g_fnSelectProfileName();
    g_fnReadPreviewSize(g_stPreview.uWidth, g_stPreview.uHeight, g_stPreview.bFixedAspect);
    g_fnSetCanvasHeight(g_stPreview.bFixedAspect ? 0 : g_stPreview.uHeight);
    g_fnLoadGlobalSettings();
    if (!ReadDocuments()) return false;
    g_fnReadSensorDefinitions();
    g_fnReadPresetVariables(g_stProfile.pPreset);
    if (!CreateLayout()) return false;
    RestFonts();
    return true;
}

} // namespace

bool g_fnLoadConfiguration() {
    try {
        return Load();
    } catch (const std::exception& error) {
        g_fnLog("g_fnLoadConfiguration() - %s", error.what());
    } catch (...) {
        g_fnLog("g_fnLoadConfiguration() - exception");
    }
    return false;
}

void g_fnKeepFontGlyphs() noexcept {
    for (u32 u = 0; g_ppFont && u < g_uFontEntries; ++u)
        if (g_ppFont[u]) g_fnKeepGlyphs(*g_ppFont[u]);
}

void g_fnClearConfiguration() {
    g_fnClearControlIds();
    g_fnClearFontsToStay();
    g_listColorOrder.clear();
    g_mapAssembleInfo.clear();
    g_fnClearItems();
    g_fnClearProfileDocuments();
    g_fnClearFileVariables();
    g_mapBlurDiameters.clear();
    g_bCaptureBackdrop = false;
}

static void ResetSettings() {
    g_fnRenew(g_stSettings);
    g_uCapMode = g_uCapType = 2;
    g_wzShotFolder[0] = 0;
    uFPSIntervalMs = g_uFirstFPSIntervalMs;
    uDataIntervalMs = g_uFirstDataIntervalMs;
    g_fnSetupIntervals();
}

static void ResetTables() {
    g_fnClearTemplates();
    g_fnClearNameMaps();
    g_fnClearItemEnable();
    g_fnRenew(g_stFontScale);
    g_fnRenew(g_stVariables);
    g_fnRenew(g_stInfoPlace);
    g_listGroupExtension.clear();
    g_fnRenew(g_stDisplay);
    std::fill(std::begin(g_iCardOfDisplay), std::end(g_iCardOfDisplay), 0);
    g_fnRenew(g_stSensors);
}

static void ResetProfile() {
    g_uLayoutStyle = STYLE_CLASSIC;
    g_iLayoutStyleOverride = -1;
    g_fnRenew(g_stPreview);
    g_fnRenew(g_stLooks);
    g_fnRenew(g_stInfoBlock);
    g_fnRenew(g_stProfileSwitches);
    g_uCardNum = 1;
}

void g_fnResetConfiguration() {
    g_fnClearConfiguration();
    g_fnDropKeptGlyphs();
    g_fnForgetFailedLoad();
    ResetSettings();
    ResetTables();
    ResetProfile();
}

void g_fnNoteFailedLoad(i64 iStart) noexcept {
    const i64 iNow = platform::CounterNow();
    const f64 fFrequency = static_cast<f64>(platform::CounterFrequency());
    const f64 fTry = static_cast<f64>(iNow - iStart) / fFrequency;
    const f64 fWait = std::clamp(fTry * g_fWaitPerTry, g_fLeastWait, g_fMostWait);
    g_stFailedLoad.bFailed = true;
    g_stFailedLoad.iLook = iNow + platform::CounterFrequency();
    g_stFailedLoad.iDue = iNow + static_cast<i64>(fWait * fFrequency);
    std::copy_n(g_wzProfileName, g_uProfileNameUnits, g_stFailedLoad.wzProfile);
}

bool g_fnHasLoadFailed() noexcept { return g_stFailedLoad.bFailed; }

void g_fnForgetFailedLoad() noexcept { g_stFailedLoad.bFailed = false; }

bool g_fnIsLoadDue() noexcept {
    if (!g_stFailedLoad.bFailed) return true;
    g_fnSelectProfileName();
    if (std::u16string_view(g_wzProfileName) != g_stFailedLoad.wzProfile) return true;
    const i64 iNow = platform::CounterNow();
    if (iNow >= g_stFailedLoad.iDue) return true;
    if (iNow < g_stFailedLoad.iLook) return false;
    g_stFailedLoad.iLook = iNow + platform::CounterFrequency();
    return g_fnHaveWatchedFilesChanged();
}

/// So many names of a folder are looked at.
static constexpr u32 g_uNamesMost = 256;

bool g_fnHasFontFiles() noexcept {
    namespace fs = std::filesystem;
    try {
        g_fnSelectProfileName();
        char16_t wzProfiles[g_uDataPathCapacity];
        if (!g_wzProfileFolder[0] || !g_fnResolveDataPath(wzProfiles, u"Profiles")) return false;
        std::error_code error;
        fs::directory_iterator it(fs::path(wzProfiles) / g_wzProfileName, error), end;
        for (u32 u = 0; !error && it != end && u < g_uNamesMost; ++u, it.increment(error))
            if (it->path().extension() == ".fnt") return true;
    } catch (...) { // out of memory
    }
    return false;
}
