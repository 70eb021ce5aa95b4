#include "tests/gl/frame_fixture.h"

#include "base/host_care.h"
#include "config/load.h"
#include "config/settings/settings.h"
#include "draw/backdrop.h"
#include "draw/canvas.h"
#include "draw/first_draws.h"
#include "draw/own_context.h"
#include "entry/hooking.h"
#include "entry/reset_process.h"
#include "frame/api_claim.h"
#include "frame/context_state.h"
#include "frame/frame_driver.h"
#include "frame/limiter.h"
#include "frame/parts.h"
#include "frame/real_swap.h"
#include "frame/release.h"
#include "frame/update/statistics.h"
#include "frame/update/status_items.h"
#include "platform/clock.h"
#include "platform/headless/test_controls.h"
#include "platform/shared_block.h"
#include "shared/api_code.h"
#include "shared/process_records.h"
#include "tests/support/gl_recorder.h"
#include "tests/support/test_data_folder.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace headless = platform::headless;
namespace fs = std::filesystem;

/// Where the virtual clock stood after the test before: timers of the process must never see it go back.
static i64 g_iClock = 1'000'000'000;

void FrameFixture::SetUp() {
    headless::ResetAll();
    headless::SetClock(g_iClock);
    g_fnResetProcess();
    m_strFolder = (fs::temp_directory_path() / ("orvin-gl-tests-" + std::to_string(getpid()))).string();
    UseShaders(true);
    RegisterProcess(4242, 4343);
    g_bHooked = true;
}

void FrameFixture::TearDown() {
    g_iClock = platform::CounterNow();
    if (m_context.Context()) m_context.MakeCurrent();
    g_fnTavo_GL_Release();
    m_context.Destroy();
    g_fnResetProcess();
    headless::ResetAll();
    fs::remove_all(m_strFolder);
}

void FrameFixture::UseShaders(bool bPresent) {
    fs::remove_all(m_strFolder);
    const fs::path data = fs::path(m_strFolder) / "ZARN" / "Orvin Deck" / "ORVIN-OSD" / "Data";
    InstallTestData(data.string(), bPresent);
    headless::SetCommonDataFolder(m_strFolder);
}

void FrameFixture::SetCare(std::initializer_list<const char*> listKeys) {
    std::ofstream file(fs::path(m_strFolder) / "ZARN" / "Orvin Deck" / "ORVIN-OSD" / "Data" / "OSD.ini");
    file << "[HostCare]\n";
    for (const char* szKey : listKeys) file << szKey << " = 1\n";
}

bool FrameFixture::Begin(bool bCore, const char16_t* wzProfile, u32 uWidth, u32 uHeight) {
    headless::EglOptions stOptions;
    stOptions.m_bCore = bCore;
    stOptions.m_uWidth = uWidth;
    stOptions.m_uHeight = uHeight;
    return Begin(stOptions, wzProfile);
}

bool FrameFixture::Begin(const headless::EglOptions& stOptions, const char16_t* wzProfile) {
    char16_t* wzGlobal = platform::SharedSegment()->wzGlobalProfile;
    std::size_t u = 0;
    do wzGlobal[u] = wzProfile[u];
    while (wzProfile[u++]);
    const bool bMade = m_context.Create(stOptions);
    EXPECT_TRUE(bMade) << "no such context";
    return bMade;
}

i32 FrameFixture::Swap() {
    headless::AdvanceClock(16'666'667);
    return GL_wglSwapBuffers(m_context.Surface());
}

bool FrameFixture::RunUntilBuilt() {
    for (int i = 0; i < 3 && !g_bInitGL; ++i) Swap();
    EXPECT_TRUE(g_bInitGL) << "the overlay was not built";
    for (int i = 0; i < 12 && g_fnAreDrawsSpread(); ++i) Swap();
    EXPECT_FALSE(g_fnAreDrawsSpread());
    return g_bInitGL;
}

std::vector<std::string> FrameFixture::RecordSwap() {
    gl_recorder::Install();
    gl_recorder::Start();
    Swap();
    return gl_recorder::Stop();
}

std::size_t FindCall(const std::vector<std::string>& vecCalls, const std::string& strCall,
                     std::size_t uFrom) {
    const auto it =
        std::find(vecCalls.begin() + static_cast<std::ptrdiff_t>(std::min(uFrom, vecCalls.size())),
                  vecCalls.end(), strCall);
    return it == vecCalls.end() ? std::string::npos : static_cast<std::size_t>(it - vecCalls.begin());
}

std::size_t CountCalls(const std::vector<std::string>& vecCalls, const std::string& strPrefix) {
    return static_cast<std::size_t>(
        std::count_if(vecCalls.begin(), vecCalls.end(), [&](const std::string& str) {
            return str.compare(0, strPrefix.size(), strPrefix) == 0;
        }));
}
