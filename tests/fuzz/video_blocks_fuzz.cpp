// The input is a play around video and the control block: settings of any size make boxes, other programs
// write the blocks, cut them and let them grow, time passes, and this process takes frames and requests.
#include "capture/control_block.h"
#include "capture/preview_feed.h"
#include "config/make/video_boxes.h"
#include "config/settings/settings.h"
#include "controls/osd_manager.h"
#include "controls/panel.h"
#include "controls/video_box.h"
#include "draw/creation_table.h"
#include "platform/headless/test_controls.h"
#include "shared/process_records.h"
#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {

namespace headless = platform::headless;

constexpr u32 c_uStepsMax = 48;

void Require(bool bHolds) {
    if (!bHolds) std::abort();
}

/// Takes the input from its front; zeros when it is used up.
class Script {
  public:
    Script(const u8* pData, std::size_t uBytes) : m_pData(pData), m_uLeft(uBytes) {}
    bool IsOver() const { return m_uLeft == 0; }
    template <class T> T Take() {
        T value{};
        const std::size_t uTaken = std::min(sizeof value, m_uLeft);
        std::memcpy(&value, m_pData, uTaken);
        m_pData += uTaken;
        m_uLeft -= uTaken;
        return value;
    }
    /// Mostly a few pixels, else anything.
    u32 Side() { return Take<u8>() % 4 ? Take<u8>() % 64 : Take<u32>(); }

  private:
    const u8* m_pData;
    std::size_t m_uLeft;
};

/// Reads all that it is promised, so that a sanitizer sees a promise that isn't kept. Textures of hostile
/// sizes are refused as a driver does.
class CTexture final : public virtual CTexture_Base {
  public:
    bool m_fnCreate(u32 uWidth, u32 uHeight, u32 uFormat, u32 uFrames, bool bMipmap) override {
        if (uWidth > 16384 || uHeight > 16384 || (s_bSecondFormat && uFormat == g_uFormatRGBA8)) return false;
        return CTexture_Base::m_fnCreate(uWidth, uHeight, uFormat, uFrames, bMipmap);
    }
    bool m_fnUploadLevel(const void* pPixels, u32, u32) override {
        const u8* const p = static_cast<const u8*>(pPixels);
        s_uSum = s_uSum + p[0] + p[m_uFrameBytes / 2] + p[m_uFrameBytes - 1];
        return true;
    }
    inline static bool s_bSecondFormat = false;
    inline static volatile u32 s_uSum = 0;
};

std::u16string Key(u32 uSource) {
    return u"SOFTWARE\\Zarn\\ORVIN-OSD\\Video\\" + std::u16string(1, static_cast<char16_t>(u'0' + uSource));
}

std::string BlockName(u32 uSource) { return "F" + std::to_string(uSource); }

void SetUpSource(Script& script, u32 uSource) {
    const std::u16string wstrKey = Key(uSource);
    for (const char16_t* wzName : {u"BufferSize: W", u"BufferSize: H", u"FrameSize: W", u"FrameSize: H",
                                   u"Update: I", u"Update: F", u"Anchor", u"Position: X", u"Alpha"})
        headless::SetSettingsNumber(wstrKey.c_str(), wzName, script.Side());
    headless::SetSettingsNumber(wstrKey.c_str(), u"Enable", 1);
    const std::u16string wstrBlock = u"F" + wstrKey.substr(wstrKey.size() - 1);
    headless::SetSettingsText(wstrKey.c_str(), u"FileMappingName", wstrBlock.c_str());
}

void Build(Script& script) {
    g_apOSDManager[0]->m_fnStartOver();
    g_fnSelectManager();
    for (const u32 u : {3u, 4u, 5u, 6u, 7u}) g_ppStylePanel[u] = new CPanel_Base;
    CTexture::s_bSecondFormat = script.Take<u8>() % 4 == 0;
    g_fnReadFeatureSwitches();
    g_fnCreateVideoBoxes();
    g_fnOpenControlBlock();
}

void WriteControl(Script& script) {
    u32 uBytes = 0;
    u8* const pBlock = headless::MappingContents("TavoCtrl", &uBytes);
    const u32 uAt = script.Take<u8>() % 24;
    if (pBlock && uAt < uBytes) pBlock[uAt] = script.Take<u8>();
}

void CutSomething(Script& script) {
    const u32 uWhich = script.Take<u8>() % 9;
    const u32 uBytes = script.Take<u8>() % 3 ? script.Take<u16>() : g_uFrameBlockBytes;
    headless::CutMapping(uWhich == 8 ? "TavoCtrl" : BlockName(uWhich).c_str(), uBytes);
}

void Frame(Script& script) {
    headless::AdvanceClock(i64{script.Take<u8>()} * 1'000'000);
    g_fnTransferVideo();
    g_fnPollControlBlock();
    // A panel beside the three is never coloured.
    Require(g_ppStylePanel[3]->m_afColor[0] == 0.5f && g_ppStylePanel[7]->m_afColor[0] == 0.5f);
}

void Step(Script& script) {
    switch (script.Take<u8>() % 6) {
    case 0:
        return SetUpSource(script, script.Take<u8>() % 8);
    case 1:
        return Build(script);
    case 2:
        return WriteControl(script);
    case 3:
        return CutSomething(script);
    default:
        return Frame(script);
    }
}

void Begin() {
    headless::ResetAll();
    headless::SetClock(1'000'000'000);
    RegisterProcess(4242, 4343);
    headless::SetSettingsNumber(u"SOFTWARE\\Zarn\\ORVIN-OSD\\Video", u"Enable", 1);
    g_fnProbeWowKeys();
    g_stCreationTable.m_fnCreateMesh = []() -> CMesh_Base* { return new CMesh_Base; };
    g_stCreationTable.m_fnCreateEntity = []() -> CEntity_Base* { return new CEntity_Base; };
    g_stCreationTable.m_fnCreateTexture = []() -> CTexture_Base* { return new CTexture; };
    g_apOSDManager[0] = new COSDManager;
    g_apOSDManager[0]->m_fnInitialize();
}

void End() {
    g_fnResetPreviewFeed();
    g_fnResetControlBlock();
    g_fnDestroyManagers();
    g_stCreationTable = {};
    Require(headless::OpenWatchedBlocks() == 0);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const u8* pData, std::size_t uBytes) {
    Script script(pData, uBytes);
    Begin();
    Build(script);
    for (u32 u = 0; u < c_uStepsMax && !script.IsOver(); ++u) Step(script);
    End();
    return 0;
}
