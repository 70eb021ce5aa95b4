// Screenshots in a real context: each mode and type is the window's picture, nothing of the program's state
// is lost, and nothing waits for a file that should not.
#include "base/host_care.h"
#include "capture/frame_pixels.h"
#include "capture/screenshot.h"
#include "capture/shot_request.h"
#include "config/settings/settings.h"
#include "controls/osd_manager.h"
#include "controls/panel.h"
#include "draw/canvas.h"
#include "draw/texture.h"
#include "frame/context_state.h"
#include "frame/update/status_items.h"
#include "platform/gl_api.h"
#include "platform/headless/test_controls.h"
#include "platform/utf.h"
#include "tests/gl/frame_fixture.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

namespace {

namespace fs = std::filesystem;
namespace headless = platform::headless;
using Pixels = std::vector<u8>;

std::u16string Wide(const std::string& str) {
    char16_t wz[1024] = {};
    platform::Utf8ToUtf16(str.c_str(), wz, 1024);
    return wz;
}

/// A picture file as RGBA bytes.
Pixels Load(const fs::path& path) {
    CTexture_Base texture;
    EXPECT_TRUE(texture.m_fnLoadTexture(Wide(path.string()).c_str())) << path;
    u8* p = nullptr;
    texture.m_fnGetLevel(&p, 0, 0);
    if (!p) return {};
    Pixels vec(p, p + texture.m_uFrameBytes);
    if (texture.m_uFormat == g_uFormatBGRA8)
        for (std::size_t u = 0; u < vec.size(); u += 4) std::swap(vec[u], vec[u + 2]);
    return vec;
}

/// Screenshots have no alpha of their own.
Pixels Opaque(Pixels vec) {
    for (std::size_t u = 3; u < vec.size(); u += 4) vec[u] = 255;
    return vec;
}

/// Mean difference of a byte.
f64 MeanDifference(const Pixels& a, const Pixels& b) {
    if (a.size() != b.size() || a.empty()) return 999;
    f64 f = 0;
    for (std::size_t u = 0; u < a.size(); ++u) f += std::abs(a[u] - b[u]);
    return f / static_cast<f64>(a.size());
}

class Screenshot : public FrameFixture {
  protected:
    bool Build(const headless::EglOptions& stOptions, std::initializer_list<const char*> listCare = {}) {
        if (listCare.size()) SetCare(listCare);
        if (!Begin(stOptions, u"Boxes8")) return false;
        // No confirmation on the frames behind a shot.
        fs::remove(fs::path(m_strFolder) / "ZARN/Orvin Deck/ORVIN-OSD/Data/Screenshot.anm");
        if (!RunUntilBuilt()) return false;
        m_folder = fs::path(m_strFolder) / "shots";
        fs::create_directory(m_folder);
        const std::u16string wstr = Wide(m_folder.string());
        g_wzShotFolder[wstr.copy(g_wzShotFolder, g_uDataPathCapacity - 1)] = 0;
        return true;
    }
    static headless::EglOptions Options(bool bCore = true, u32 uSamples = 0) {
        headless::EglOptions st;
        st.m_bCore = bCore;
        st.m_uWidth = 161; // rows that no alignment fits by chance
        st.m_uHeight = 121;
        st.m_uSamples = uSamples;
        return st;
    }
    static void Paint() {
        glClearColor(0.2f, 0.4f, 0.1f, 1.0f);
        glClear(GL_COLOR_BUFFER_BIT);
        glEnable(GL_SCISSOR_TEST);
        glScissor(0, 0, 40, 20); // so that top and bottom, left and right differ
        glClearColor(0.9f, 0.1f, 0.3f, 1.0f);
        glClear(GL_COLOR_BUFFER_BIT);
        glDisable(GL_SCISSOR_TEST);
    }
    static void Nothing(bool) {}
    /// One frame with a shot asked for, the program's state set behind its drawing. What the window shows.
    Pixels Shoot(u32 uMode, u32 uType, const std::function<void(bool)>& fnSet = Nothing) {
        Paint();
        g_uCapMode = uMode;
        g_uCapType = uType;
        g_bShotPending = 1;
        fnSet(true);
        Swap();
        fnSet(false);
        headless::JoinThreads();
        return Opaque(m_context.ReadPixels());
    }
    Pixels Bare() {
        Paint();
        return Opaque(m_context.ReadPixels());
    }
    std::vector<fs::path> Files() const {
        std::vector<fs::path> vec;
        for (const auto& entry : fs::directory_iterator(m_folder)) vec.push_back(entry.path());
        return vec;
    }
    /// The one file of the folder, which is empty then.
    Pixels TakeFile() {
        const std::vector<fs::path> vec = Files();
        EXPECT_EQ(vec.size(), 1u);
        if (vec.size() != 1) return {};
        Pixels pixels = Load(vec[0]);
        fs::remove(vec[0]);
        return pixels;
    }
    fs::path m_folder;
};

} // namespace

TEST_F(Screenshot, IsTheWindowWithTheOverlayOrWithoutIt) {
    for (const bool bCore : {true, false}) {
        ASSERT_TRUE(Build(Options(bCore)));
        const Pixels vecBare = Bare();
        const Pixels vecShown = Shoot(2, 2);
        ASSERT_NE(vecShown, vecBare);
        EXPECT_EQ(TakeFile(), vecShown);
        EXPECT_EQ(Shoot(1, 2), vecShown) << "the window has the overlay all the same";
        EXPECT_EQ(TakeFile(), vecBare);
        TearDown();
        SetUp();
    }
}

TEST_F(Screenshot, EachTypeIsTheWindow) {
    ASSERT_TRUE(Build(Options()));
    for (const u32 uType : {0u, 2u}) {
        const Pixels vecShown = Shoot(2, uType);
        EXPECT_EQ(TakeFile(), vecShown) << uType;
    }
    const Pixels vecShown = Shoot(2, 1);
    EXPECT_LT(MeanDifference(TakeFile(), vecShown), 6.0);
    const Pixels vecHeif = Shoot(2, 3);
    if (!Files().empty()) {
        EXPECT_LT(MeanDifference(TakeFile(), vecHeif), 6.0);
    }
}

TEST_F(Screenshot, HasThreeFilesOfOneNameFromType4On) {
    for (const u32 uType : {4u, 0xFFFFFFFFu}) {
        ASSERT_TRUE(Build(Options()));
        const Pixels vecShown = Shoot(2, uType);
        EXPECT_EQ(headless::StartedThreads(), 0u) << "written before the frame went on";
        std::vector<fs::path> vec = Files();
        ASSERT_EQ(vec.size(), 3u);
        for (const fs::path& path : vec) {
            EXPECT_EQ(path.stem(), vec[0].stem());
            if (path.extension() == ".jpg")
                EXPECT_LT(MeanDifference(Load(path), vecShown), 6.0);
            else
                EXPECT_EQ(Load(path), vecShown) << path;
        }
        TearDown();
        SetUp();
    }
}

TEST_F(Screenshot, OneFileIsTheWorkOfAThreadThatNobodyWaitsFor) {
    ASSERT_TRUE(Build(Options()));
    headless::SetThreadMode(headless::ThreadMode::Held);
    const Pixels vecShown = Shoot(2, 2);
    EXPECT_EQ(g_bShotPending, 0);
    EXPECT_TRUE(Files().empty());
    EXPECT_EQ(headless::HeldThreads(), 1u);
    Paint();
    Swap(); // another frame, before the worker comes to it
    EXPECT_TRUE(headless::RunHeldThread());
    EXPECT_EQ(TakeFile(), vecShown);
}

TEST_F(Screenshot, SeveralWorkersShareNothing) {
    ASSERT_TRUE(Build(Options()));
    headless::SetThreadMode(headless::ThreadMode::Held);
    const i64 iStart = 1'709'211'909'000;
    std::vector<Pixels> vecShown;
    for (u32 u = 0; u < 6; ++u) {
        headless::SetUnixMilliseconds(iStart + u * 10);
        vecShown.push_back(Shoot(u % 2 ? 1 : 2, 2));
    }
    while (headless::RunHeldThread()) {
    }
    EXPECT_EQ(Files().size(), 6u);
}

TEST_F(Screenshot, ARefusedThreadLosesTheShotAlone) {
    ASSERT_TRUE(Build(Options()));
    headless::SetThreadMode(headless::ThreadMode::Refused);
    Shoot(2, 2);
    EXPECT_EQ(g_bShotPending, 0);
    EXPECT_TRUE(Files().empty());
    headless::SetThreadMode(headless::ThreadMode::Real);
    const Pixels vecShown = Shoot(2, 2);
    EXPECT_EQ(TakeFile(), vecShown);
}

TEST_F(Screenshot, ShowsNoStatusPanelAndTheNextFrameHasIt) {
    ASSERT_TRUE(Build(Options()));
    const Pixels vecWith = Shoot(2, 2);
    EXPECT_EQ(TakeFile(), vecWith);
    // The layout's own panel stands in the place of a status panel.
    CPanel_Base** const ppPanel =
        std::find_if(g_ppPanel, g_ppPanel + g_uPanelEntries,
                     [](const CPanel_Base* p) { return p && p->m_afColor[3] > 0.1f; });
    ASSERT_NE(ppPanel, g_ppPanel + g_uPanelEntries);
    for (const u32 u : {1u, 3u, 5u}) {
        g_ppStylePanel[u] = *ppPanel;
        g_timerStatus.Restart(); // or the status, long over, would make it clear
        std::fill(std::begin(g_abStatusDue), std::end(g_abStatusDue), u8{0});
        const Pixels vecShown = Shoot(2, 2), vecShot = TakeFile();
        EXPECT_EQ(vecShot, vecShown) << "this frame is what was saved";
        EXPECT_NE(vecShot, vecWith) << u;
        EXPECT_TRUE(g_pOSDManager->m_fnIsAttached(*ppPanel, g_uLayerColor)) << u;
        g_ppStylePanel[u] = nullptr;
        Paint();
        Swap();
        EXPECT_EQ(Opaque(m_context.ReadPixels()), vecWith) << u;
    }
}

TEST_F(Screenshot, AnOtherModeSavesNothing) {
    ASSERT_TRUE(Build(Options()));
    for (const u32 uMode : {0u, 3u, 0xFFFFFFFFu}) {
        Shoot(uMode, 2);
        EXPECT_EQ(g_bShotPending, 1);
    }
    EXPECT_TRUE(Files().empty());
    EXPECT_EQ(headless::StartedThreads(), 0u);
}

TEST_F(Screenshot, OfAWindowWithSeveralSamplesIsTheResolvedPicture) {
    ASSERT_TRUE(Build(Options(true, 4)));
    const Pixels vecShown = Shoot(2, 2);
    EXPECT_EQ(TakeFile(), vecShown);
}

TEST_F(Screenshot, OfAWindowWithoutAreaIsNone) {
    ASSERT_TRUE(Build(Options()));
    for (const auto& [uWidth, uHeight] : {std::pair(0u, 0u), std::pair(0u, 121u), std::pair(161u, 0u)}) {
        headless::SetClientSize(uWidth, uHeight);
        headless::AdvanceClock(300'000'000); // the size is asked for now and then
        for (const u32 uType : {2u, 4u}) Shoot(1, uType);
        EXPECT_EQ(g_bShotPending, 0);
    }
    EXPECT_TRUE(Files().empty());
    EXPECT_EQ(headless::StartedThreads(), 0u);
    EXPECT_FALSE(g_fnReadFrame(0, 0) || g_fnReadFrame(5, 0) || g_fnReadFrame(0xFFFFFFFF, 0xFFFFFFFF));
}

TEST_F(Screenshot, IntoAFolderThatIsGoneIsNone) {
    ASSERT_TRUE(Build(Options()));
    fs::remove(m_folder);
    for (const u32 uType : {0u, 1u, 2u, 3u, 4u}) Shoot(2, uType);
    EXPECT_FALSE(fs::exists(m_folder));
    EXPECT_EQ(g_bShotPending, 0);
}

TEST_F(Screenshot, StartsTheShutterAnew) {
    ASSERT_TRUE(Build(Options()));
    g_bShutter = false;
    Shoot(2, 2);
    EXPECT_TRUE(g_bShutter);
    EXPECT_EQ(g_timerShutter.m_bStopped, 0);
}

// --- state that the program has set ------------------------------------------------------------------------

namespace {

GLuint g_uFramebuffer = 0, g_uPackBuffer = 0;

/// A framebuffer with one red picture as large as the window, and a buffer for pixels.
void MakeObjects() {
    GLuint uTexture = 0;
    glGenTextures(1, &uTexture);
    glBindTexture(GL_TEXTURE_2D, uTexture);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, 161, 121, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    glBindTexture(GL_TEXTURE_2D, 0);
    glGenFramebuffers(1, &g_uFramebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, g_uFramebuffer);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, uTexture, 0);
    glClearColor(1, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    glGenBuffers(1, &g_uPackBuffer);
    glBindBuffer(GL_PIXEL_PACK_BUFFER, g_uPackBuffer);
    glBufferData(GL_PIXEL_PACK_BUFFER, 161 * 121 * 4, nullptr, GL_STATIC_READ);
    glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
}

struct stOddRead {
    const char* szName;
    bool bCompatibilityOnly;
    std::function<void(bool)> fnSet;
};

stOddRead Pack(const char* szName, GLenum eName, GLint iOdd, GLint iPlain) {
    return {szName, false, [=](bool b) { glPixelStorei(eName, b ? iOdd : iPlain); }};
}

std::vector<stOddRead> OddReads() {
    return {
        Pack("row length", GL_PACK_ROW_LENGTH, 1000, 0),
        Pack("skipped pixels", GL_PACK_SKIP_PIXELS, 50, 0),
        Pack("skipped rows", GL_PACK_SKIP_ROWS, 300, 0),
        Pack("alignment", GL_PACK_ALIGNMENT, 8, 4),
        Pack("swapped bytes", GL_PACK_SWAP_BYTES, 1, 0),
        {"framebuffer", false,
         [](bool b) { glBindFramebuffer(GL_READ_FRAMEBUFFER, b ? g_uFramebuffer : 0); }},
        {"framebuffer without read buffer", false,
         [](bool b) {
             glBindFramebuffer(GL_READ_FRAMEBUFFER, g_uFramebuffer);
             glReadBuffer(b ? GL_NONE : GL_COLOR_ATTACHMENT0);
             if (!b) glBindFramebuffer(GL_READ_FRAMEBUFFER, 0);
         }},
        {"no read buffer", false, [](bool b) { glReadBuffer(b ? GL_NONE : GL_BACK); }},
        {"pack buffer", false, [](bool b) { glBindBuffer(GL_PIXEL_PACK_BUFFER, b ? g_uPackBuffer : 0); }},
        {"red scale", true, [](bool b) { glPixelTransferf(GL_RED_SCALE, b ? 0.25f : 1.0f); }},
        {"green bias", true, [](bool b) { glPixelTransferf(GL_GREEN_BIAS, b ? 0.5f : 0.0f); }},
    };
}

/// All that decides on reads.
std::vector<GLint> ReadState(bool bCompatibility) {
    std::vector<GLint> vec;
    for (const GLenum e :
         {GL_PACK_ROW_LENGTH, GL_PACK_SKIP_PIXELS, GL_PACK_SKIP_ROWS, GL_PACK_ALIGNMENT, GL_PACK_SWAP_BYTES,
          GL_PACK_LSB_FIRST, GL_READ_FRAMEBUFFER_BINDING, GL_READ_BUFFER, GL_PIXEL_PACK_BUFFER_BINDING}) {
        GLint i = -1;
        glGetIntegerv(e, &i);
        vec.push_back(i);
    }
    for (const GLenum e : {GL_RED_SCALE, GL_GREEN_BIAS, GL_ALPHA_SCALE}) {
        GLfloat f = -1;
        if (bCompatibility) glGetFloatv(e, &f);
        vec.push_back(static_cast<GLint>(f * 256));
    }
    return vec;
}

struct CarefulShots : Screenshot {
    /// The same picture under each odd state, and the state comes back.
    void Compare(bool bCore, u32 uMode, std::initializer_list<const char*> listCare) {
        ASSERT_TRUE(Build(Options(bCore), listCare));
        MakeObjects();
        Shoot(uMode, 2);
        const Pixels vecWanted = TakeFile();
        for (const stOddRead& st : OddReads()) {
            if (bCore && st.bCompatibilityOnly) continue;
            SCOPED_TRACE(st.szName);
            std::vector<GLint> vecBefore, vecAfter;
            Shoot(uMode, 2, [&](bool b) {
                if (!b) vecAfter = ReadState(!bCore);
                st.fnSet(b);
                if (b) vecBefore = ReadState(!bCore);
            });
            // The prescribed guard leaves framebuffer 0 bound for reading.
            if (g_stHostCare.bOuterGuard || vecBefore[6] == 0) {
                EXPECT_EQ(vecAfter, vecBefore);
            }
            EXPECT_TRUE(TakeFile() == vecWanted);
            while (glGetError() != GL_NO_ERROR) {
            }
        }
    }
};

} // namespace

TEST_F(CarefulShots, ShowTheWindowWhateverTheProgramReadsInCore) {
    Compare(true, 2, {"CarefulShots", "OuterGuard"});
}
TEST_F(CarefulShots, ShowTheWindowWhateverTheProgramReadsInCompatibility) {
    Compare(false, 2, {"CarefulShots", "OuterGuard"});
}
TEST_F(CarefulShots, ShowTheWindowAheadOfTheOverlayToo) { Compare(false, 1, {"CarefulShots", "OuterGuard"}); }
TEST_F(CarefulShots, NeedNoOuterGuard) { Compare(true, 2, {"CarefulShots"}); }

TEST_F(CarefulShots, RaiseNoError) {
    ASSERT_TRUE(Build(Options(true), {"CarefulShots", "OuterGuard"}));
    MakeObjects();
    while (glGetError() != GL_NO_ERROR) {
    }
    g_uCapMode = 2;
    glBindBuffer(GL_PIXEL_PACK_BUFFER, g_uPackBuffer);
    const FramePixels p = g_fnReadFrame(161, 121);
    EXPECT_TRUE(p);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
}

TEST_F(CarefulShots, HaveAllFilesWrittenBesideTheProgram) {
    ASSERT_TRUE(Build(Options(), {"CarefulShots"}));
    headless::SetThreadMode(headless::ThreadMode::Held);
    Shoot(2, 4);
    EXPECT_TRUE(Files().empty());
    EXPECT_TRUE(headless::RunHeldThread());
    EXPECT_EQ(Files().size(), 3u);
}

TEST_F(CarefulShots, WaitForTheirTurnWhereManyAreBeingWritten) {
    ASSERT_TRUE(Build(Options(), {"CarefulShots"}));
    headless::SetThreadMode(headless::ThreadMode::Held);
    for (u32 u = 0; u < 4; ++u) Shoot(2, 2);
    EXPECT_EQ(headless::HeldThreads(), 4u);
    const Pixels vecShown = Shoot(2, 2);
    EXPECT_EQ(g_bShotPending, 1) << "with a later frame";
    EXPECT_NE(vecShown, Bare()) << "and this one looks as any other";
    EXPECT_EQ(headless::HeldThreads(), 4u);
    EXPECT_TRUE(headless::RunHeldThread());
    Paint();
    Swap();
    EXPECT_EQ(g_bShotPending, 0);
    EXPECT_EQ(headless::HeldThreads(), 4u);
    while (headless::RunHeldThread()) {
    }
}

/// Nothing is lost but the picture, and no memory is touched that is not ours.
TEST_F(Screenshot, WithoutTheKeyIsWhatTheProgramReads) {
    ASSERT_TRUE(Build(Options(true)));
    MakeObjects();
    Shoot(2, 2);
    const Pixels vecWanted = TakeFile();
    for (const stOddRead& st : OddReads()) {
        if (st.bCompatibilityOnly) continue;
        SCOPED_TRACE(st.szName);
        std::vector<GLint> vecBefore, vecAfter;
        Shoot(2, 2, [&](bool b) {
            if (!b) vecAfter = ReadState(false);
            st.fnSet(b);
            if (b) vecBefore = ReadState(false);
        });
        // The prescribed guard leaves framebuffer 0 bound for reading.
        if (vecBefore[6] == 0) {
            EXPECT_EQ(vecAfter, vecBefore);
        }
        Pixels vec = TakeFile();
        EXPECT_EQ(vec.size(), vecWanted.size());
        if (st.szName == std::string("row length")) {
            EXPECT_NE(vec, vecWanted);
        }
        if (st.szName == std::string("pack buffer")) {
            EXPECT_EQ(vec, Opaque(Pixels(vecWanted.size(), 0))) << "nothing was read to us";
        }
        while (glGetError() != GL_NO_ERROR) {
        }
    }
}

TEST_F(Screenshot, FlipsRowsInPlace) {
    for (const u32 uHeight : {1u, 2u, 5u}) {
        Pixels vec, vecWanted;
        for (u32 y = 0; y < uHeight; ++y) {
            vec.insert(vec.end(), 12, static_cast<u8>(y));
            vecWanted.insert(vecWanted.begin(), 12, static_cast<u8>(y));
        }
        g_fnFlipRows(vec.data(), 3, uHeight);
        EXPECT_EQ(vec, vecWanted);
    }
}
