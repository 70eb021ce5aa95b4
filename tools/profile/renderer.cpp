#include "tools/profile/renderer.h"
#include "base/layout_style.h"
#include "companion/profile_folder.h"
#include "companion/test_pattern.h"
#include "companion/utf.h"
#include "config/profile/profile_document.h"
#include "config/profile/profile_names.h"
#include "config/settings/settings.h"
#include "controls/osd_manager.h"
#include "draw/backdrop.h"
#include "draw/canvas.h"
#include "draw/own_context.h"
#include "entry/exports.h"
#include "entry/hooking.h"
#include "entry/reset_process.h"
#include "frame/api_claim.h"
#include "frame/context_state.h"
#include "frame/frame_driver.h"
#include "frame/limiter.h"
#include "frame/real_swap.h"
#include "frame/release.h"
#include "platform/gl_api.h"
#include "platform/headless/test_controls.h"
#include "platform/profile_context.h"
#include "platform/shared_block.h"
#include "shared/api_code.h"
#include "shared/frame_sources.h"
#include "shared/process_records.h"
#include "tools/profile/log_catcher.h"
#include "tools/profile/settings.h"
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>

namespace headless = platform::headless;

namespace companion {
namespace {

constexpr u32 kProcessId = 4242, kThreadId = 4343;
constexpr u32 kBuildTries = 3;
/// The background is drawn before this many last frames only; what comes before them nobody sees.
constexpr u32 kShownFrames = 3;
constexpr double kPublishSeconds = 0.1;
constexpr size_t kLinesKept = 1000; ///< of the overlay's log

/// Where the simulated clock stands, nanoseconds. It never goes back, however often a profile is drawn.
i64 g_iClock = 1'000'000'000;

// --- the simulated program ---------------------------------------------------------------------------------

void StartLibrary() {
    g_fnResetProcess();
    g_bHooked = true;
}

/// A quarter past eight in the evening, when the simulated time begins.
void SetTimeOfDay(double dSeconds) {
    const u32 uSeconds = 20 * 3600 + 15 * 60 + static_cast<u32>(dSeconds);
    headless::SetLocalTime({2026, 3, 14, uSeconds / 3600 % 24, uSeconds / 60 % 60, uSeconds % 60});
}

/// The program with its context and the overlay in it, from its start to its end.
class Program {
  public:
    explicit Program(const RenderPlan& stPlan) : m_stPlan(stPlan), m_log(stPlan.bVerbose, kLinesKept) {}
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    Result Start();
    /// One frame. One that is not shown is laid out and drawn as any other, but none of its pixels is worked
    /// out.
    void SwapOnce(bool bShown = true);
    /// Swaps until the layout stands, all in one moment of the simulated time: how many swaps that takes
    /// differs by platform, and the pictures may not.
    Result Build(RenderTimes& stTimes);
    void PaintBackground();
    Picture ReadFrame() const;
    double Seconds() const { return m_dSeconds; }

  private:
    void SetUpSegment();
    void PassTime();
    void Swap();
    void PublishValues();
    void MakeBackgroundTexture();
    Result NoLayout() const;

    const RenderPlan& m_stPlan;
    LogCatcher m_log;
    OffscreenContext m_context;
    std::unique_ptr<sensors::Publisher> m_pPublisher;
    std::set<std::string> m_setShown;
    double m_dSeconds = 0.0, m_dPublished = -1.0;
    GLuint m_uTexture = 0, m_uFramebuffer = 0;
};

Program::~Program() {
    g_fnTavo_GL_Release();
    g_fnCloseApiMapping();
    g_iClock += static_cast<i64>((m_dSeconds + 1) * 1e9);
    m_context.Destroy();
    g_bHooked = false;
    headless::ResetAll();
}

void Program::SetUpSegment() {
    std::u16string wzName;
    UnitsFromUtf8(m_stPlan.strProfile, wzName);
    wzName.resize(g_uProfileNameUnits, u'\0');
    wzName.back() = 0;
    SetOSDGlobalProfileNameFromGWexeToGWDll_GL(wzName.c_str());
    RegisterProcess(kProcessId, kThreadId);
    GetDataFullNamesFromProfile_GL(wzName.c_str(), &m_setShown);
    const sensors::PublishTarget stTarget{
        SetMonitorDataOffsetFromGWexeToGWDll_GL, SetMonitorDataFromGWexeToGWDll_GL,
        SetMonitorFilterDataFromGWexeToGWDll_GL, sendCmd_GWDLL_GL, platform::SharedSegment()};
    m_pPublisher = std::make_unique<sensors::Publisher>(stTarget);
    PublishValues();
}

Result Program::Start() {
    headless::ResetAll();
    TakeMachineSettings(m_stPlan.pathSettings, m_stPlan.bSettingsNamed);
    headless::SetClock(g_iClock);
    headless::SetCommonDataFolder(TextOfPath(m_stPlan.pathCommon));
    SetTimeOfDay(0);
    StartLibrary();
    const Result stMade = m_context.Create(m_stPlan.background.uWidth, m_stPlan.background.uHeight);
    if (!stMade) return stMade;
    if (!platform::InitGlew()) return Result::Fail("the graphics driver's functions cannot be loaded");
    MakeBackgroundTexture();
    SetUpSegment();
    return {};
}

void Program::PublishValues() {
    if (!m_stPlan.pValues || m_dSeconds < m_dPublished + kPublishSeconds) return;
    m_dPublished = m_dSeconds;
    m_pPublisher->Publish(m_stPlan.pValues->At(m_dSeconds, m_setShown));
}

void Program::PassTime() {
    const double dFrame = SampleFrameSeconds(m_dSeconds);
    m_dSeconds += dFrame;
    headless::AdvanceClock(static_cast<i64>(dFrame * 1e9));
    SetTimeOfDay(m_dSeconds);
    PublishValues();
}

void Program::Swap() {
    GL_wglSwapBuffers(m_context.Surface());
    EnableFPSLimiter = 0; // it would wait for a clock that only moves from frame to frame
}

void Program::SwapOnce(bool bShown) {
    PassTime();
    const bool bBackdrop = g_bCaptureBackdrop;
    if (!bShown) {
        glEnable(GL_RASTERIZER_DISCARD);
        g_bCaptureBackdrop = false; // frosting costs most of a frame
    }
    Swap();
    if (!bShown) {
        glDisable(GL_RASTERIZER_DISCARD);
        g_bCaptureBackdrop = bBackdrop;
    }
}

/// No program writes frames here. Each source shows a still picture from its first frame on.
void ShowTestPattern() {
    constexpr u32 kFrame = 30; ///< the line stands at a quarter of the width
    for (u32 u = 0; g_ppVideoBox && u < g_uVideoSources; ++u) {
        const stVideoSource& st = g_stSettings.aVideoSource[u];
        std::string strName;
        for (const char16_t* p = st.wzFileMappingName; *p; ++p)
            strName += *p < 0x80 ? static_cast<char>(*p) : '?';
        u32 uBytes = 0; // a name may be that of another block
        u8* const pBlock = headless::MappingContents(strName.c_str(), &uBytes);
        if (g_ppVideoBox[u] && uBytes >= g_uFrameBlockBytes)
            DrawTestPattern(pBlock, st.uBufferSizeW, st.uBufferSizeH, kFrame);
    }
}

double MillisecondsOf(const std::function<void()>& fnWork) {
    glFinish();
    const auto start = std::chrono::steady_clock::now();
    fnWork();
    glFinish();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

Result Program::Build(RenderTimes& stTimes) {
    PassTime();
    stTimes.uFrames = 1;
    for (u32 u = 0; u < kBuildTries && !g_bInitGL; ++u) {
        m_log.Take();
        stTimes.dFirstFrame = MillisecondsOf([this] { Swap(); });
    }
    ShowTestPattern();
    return g_bInitGL ? Result{} : NoLayout();
}

const char* ProfileErrorText(i32 iError) {
    switch (iError) {
    case PROFILE_NOT_OPENED:
        return "a document cannot be opened, or is too large";
    case PROFILE_NOT_PARSED:
        return "a document is not well formed";
    case PROFILE_NO_ROOT:
        return "a document has no root OSD";
    case PROFILE_NO_LAYOUT:
        return "OSD.xml has no element of its layout style";
    case PROFILE_NO_SETTINGS:
        return "the element of the layout style has no Settings";
    case PROFILE_NO_GROUP:
    case PROFILE_NO_TEMPLATE:
        return "OSD_Ref.xml lacks what this layout style needs";
    default:
        return nullptr;
    }
}

Result Program::NoLayout() const {
    std::string strWhy = "no layout can be made of the profile " + m_stPlan.strProfile;
    const char* const szError = ProfileErrorText(g_stProfile.iError);
    if (szError)
        strWhy += std::string(": ") + szError;
    else if (g_stProfile.pRoot && !g_stProfile.pRoutine)
        strWhy += std::string(": layouts of the style ") + g_fnLayoutElementName(g_uLayoutStyle) +
                  " cannot be shown by this version";
    if (!m_log.Last().empty()) strWhy += " (" + m_log.Last() + ")";
    return Result::Fail(strWhy);
}

// --- the framebuffer ---------------------------------------------------------------------------------------

void Program::MakeBackgroundTexture() {
    const Picture& picture = m_stPlan.background;
    const size_t uRow = static_cast<size_t>(picture.uWidth) * 4;
    std::vector<u8> aBottomUp(picture.aPixels.size());
    for (u32 uY = 0; uY < picture.uHeight; ++uY)
        std::memcpy(&aBottomUp[uY * uRow], &picture.aPixels[(picture.uHeight - 1 - uY) * uRow], uRow);
    glGenTextures(1, &m_uTexture);
    glBindTexture(GL_TEXTURE_2D, m_uTexture);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, static_cast<GLsizei>(picture.uWidth),
                 static_cast<GLsizei>(picture.uHeight), 0, GL_RGBA, GL_UNSIGNED_BYTE, aBottomUp.data());
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAX_LEVEL, 0);
    glBindTexture(GL_TEXTURE_2D, 0);
    glGenFramebuffers(1, &m_uFramebuffer);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, m_uFramebuffer);
    glFramebufferTexture2D(GL_READ_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, m_uTexture, 0);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, 0);
    glViewport(0, 0, static_cast<GLsizei>(picture.uWidth), static_cast<GLsizei>(picture.uHeight));
}

void Program::PaintBackground() {
    const GLint iWidth = static_cast<GLint>(m_stPlan.background.uWidth);
    const GLint iHeight = static_cast<GLint>(m_stPlan.background.uHeight);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, m_uFramebuffer);
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 0);
    glBlitFramebuffer(0, 0, iWidth, iHeight, 0, 0, iWidth, iHeight, GL_COLOR_BUFFER_BIT, GL_NEAREST);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, 0);
}

Picture Program::ReadFrame() const {
    Picture picture(m_stPlan.background.uWidth, m_stPlan.background.uHeight);
    std::vector<u8> aBottomUp(picture.aPixels.size());
    glBindFramebuffer(GL_READ_FRAMEBUFFER, 0);
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glReadPixels(0, 0, static_cast<GLsizei>(picture.uWidth), static_cast<GLsizei>(picture.uHeight), GL_RGBA,
                 GL_UNSIGNED_BYTE, aBottomUp.data());
    const size_t uRow = static_cast<size_t>(picture.uWidth) * 4;
    for (u32 uY = 0; uY < picture.uHeight; ++uY)
        std::memcpy(&picture.aPixels[uY * uRow], &aBottomUp[(picture.uHeight - 1 - uY) * uRow], uRow);
    return picture;
}

/// How many frames a plan asks for, drawn one after the other by the simulated pace.
u32 FramesOf(const RenderPlan& stPlan) {
    if (stPlan.uFrames > 0) return stPlan.uFrames;
    u32 uFrames = 0;
    for (double dSeconds = 0.0; dSeconds < stPlan.dSeconds; ++uFrames)
        dSeconds += SampleFrameSeconds(dSeconds);
    return std::max(1u, uFrames);
}

} // namespace

Result RenderProfile(const RenderPlan& stPlan, const StopAsked& fnStop, Picture& picture,
                     RenderTimes& stTimes) {
    Program program(stPlan);
    stTimes = {};
    Result stResult = program.Start();
    if (stResult) {
        program.PaintBackground();
        stResult = program.Build(stTimes);
    }
    if (!stResult) return stResult;
    const u32 uFrames = FramesOf(stPlan);
    while (stTimes.uFrames < uFrames) {
        if (fnStop && fnStop()) return Result::Fail("");
        const bool bShown = stTimes.uFrames + kShownFrames >= uFrames;
        if (bShown) program.PaintBackground();
        if (stTimes.uFrames == 1)
            stTimes.dSecondFrame = MillisecondsOf([&] { program.SwapOnce(); });
        else
            program.SwapOnce(bShown);
        ++stTimes.uFrames;
    }
    picture = program.ReadFrame();
    return {};
}

Result WithBuiltProfile(const RenderPlan& stPlan, const std::function<Result()>& fnLook) {
    Program program(stPlan);
    RenderTimes stTimes;
    Result stResult = program.Start();
    if (stResult) stResult = program.Build(stTimes);
    if (!stResult) return stResult;
    for (u32 uFrames = FramesOf(stPlan); stTimes.uFrames < uFrames; ++stTimes.uFrames)
        program.SwapOnce(false);
    return fnLook();
}

} // namespace companion
