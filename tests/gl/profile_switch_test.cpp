// Profiles that change while a program runs, and profiles that must not hurt it.
#include "base/log.h"
#include "config/items/item_map.h"
#include "config/make/character_sets.h"
#include "draw/creation_table.h"
#include "font/font_unicode.h"
#include "frame/context_state.h"
#include "frame/release.h"
#include "platform/gl_api.h"
#include "platform/headless/test_controls.h"
#include "platform/shared_block.h"
#include "shared/process_records.h"
#include "tests/gl/profile_fixture.h"
#include "tests/support/gif_maker.h"
#include "tests/support/gl_recorder.h"
#include "tests/support/heap_bytes.h"
#include "tests/support/picture_files.h"

#include <algorithm>
#include <array>

namespace headless = platform::headless;

namespace {

constexpr i64 g_iSecond = 1'000'000'000;

class ProfileSwitch : public ProfileFixture {
  protected:
    void TearDown() override {
        g_fnLogSink = m_fnFormerSink;
        ProfileFixture::TearDown();
    }
    static void Select(const char16_t* wzName) {
        char16_t* wzOut = platform::SharedSegment()->wzGlobalProfile;
        do *wzOut++ = *wzName;
        while (*wzName++);
    }
    /// The command that makes a program build everything anew.
    static void Reload() {
        stProcessRecord& stRecord = platform::SharedSegment()->CommandTable[0];
        stRecord.Command.bRelease = 1;
        stRecord.bChanged = 1;
    }
    /// A small font file for a profile, so that no build has to draw glyphs.
    void WriteFont(const std::string& strProfile) const {
        const std::unique_ptr<CFontUniCode> pFont(g_stCreationTable.m_fnCreateFont());
        pFont->m_fnSetLayout(16, 16, 0);
        pFont->m_fnSetTexSize(256, 256);
        pFont->m_fnSetFontName(u"DejaVu Sans");
        ASSERT_TRUE(pFont->m_fnInitialize(false));
        glPixelStorei(GL_UNPACK_ALIGNMENT, 1); // as while the overlay draws: small levels have rows of a byte
        g_fnFontAddText(pFont.get(), g_wzPrintableSet);
        glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
        const std::string strPath = Data("Profiles/" + strProfile + "/2-DejaVu Sans.fnt").string();
        ASSERT_TRUE(pFont->m_fnSaveToFileA(strPath.c_str()));
    }
    /// One swap that must not fail.
    void Present() {
        ++m_uFrames;
        EXPECT_EQ(Swap(), 1);
    }

    static constexpr char c_szFont[] = " IsShow='1' FontName='DejaVu Sans' TextSize='60' ";
    static constexpr char c_szBox[] = " IsShow='1' FrameSizeW='400' FrameSizeH='200' ContentSizeW='400' "
                                      "ContentSizeH='200' ";
    u32 m_uFrames = 0;
    void (*m_fnFormerSink)(const char*) = g_fnLogSink;
};

/// What a process holds.
struct stHeld {
    std::array<u32, 6> auNames; ///< programs, shaders, textures, buffers, vertex arrays, framebuffers
    u32 uFiles;
    std::size_t uHeap;

    static stHeld Count() {
        stHeld st{};
        for (GLuint u = 1; u < 65536; ++u) {
            const bool ab[] = {glIsProgram(u) != 0, glIsShader(u) != 0,      glIsTexture(u) != 0,
                               glIsBuffer(u) != 0,  glIsVertexArray(u) != 0, glIsFramebuffer(u) != 0};
            for (u32 n = 0; n < 6; ++n) st.auNames[n] += ab[n];
        }
        for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd"))
            ++st.uFiles;
        st.uHeap = HeapBytes();
        return st;
    }
};

TEST_F(ProfileSwitch, AThousandChangesAndReloadsLeaveNothingBehind) {
    const std::string strText = std::string("<TextBox Name='T' Text='Hello'") + c_szFont + "/>";
    const auto image = [](const std::string& strFile) {
        return "<Image Name='I' ImageFileName='" + strFile + "'" + c_szBox + "/>";
    };
    WriteProfile("A", strText + "<NumBox Name='N' DataFullName='FPS'" + c_szFont + "/><Panel Name='P' " +
                          c_szBox + "PanelType='2'/><LineGraph Name='L' DataFullName='FPS' DataNum='8'" +
                          c_szBox + "/>" + image("i.gif"));
    WriteProfile("B",
                 std::string("<NumBox Name='C@P' DataFullName='SYSTEM_TIME'") + c_szFont +
                     "/><Panel Name='P'" + c_szBox +
                     "/><PieChart Name='Q' DataFullName='FPS' EndDegree='90'" + c_szBox + "/>" +
                     image("i.png"),
                 "<Photo IsShow='1' Filename='i.png' PhotoOpacity='50'/>");
    CGifMaker gif(4, 4);
    for (const char c : {'A', 'B'}) gif.Control(5, 1).Frame(0, 0, 4, 4, std::string(16, c));
    WriteData("Profiles/A/i.gif", gif.File());
    WriteData("Profiles/B/i.png", picture_files::Png(9, 9, [](u32, u32) { return 0x80FF0000; }));
    ASSERT_TRUE(Begin(true, u"A", 160, 120));
    ASSERT_TRUE(RunUntilBuilt());
    WriteFont("A");
    WriteFont("B");
    const u32 uSwapsBefore = headless::ImportedSwapCalls();
    constexpr u32 c_uChanges = 1000, c_uWarmUp = 100;
    stHeld before{};
    for (u32 u = 0; u < c_uChanges; ++u) {
        // A, A again, B, B again.
        const bool bA = u / 2 % 2 == 0;
        Select(bA ? u"A" : u"B");
        Reload();
        Present();
        Present();
        ASSERT_TRUE(g_bInitGL) << u;
        ASSERT_EQ(g_mapItemByName.contains("T"), bA) << u;
        // A program's own presenting ends the driver's work on the frame, too.
        glFinish();
        if (u == c_uWarmUp) before = stHeld::Count();
        if (u % 4 == 0) Present();
    }
    while (g_mapItemByName.contains("T") != true) {
        Select(u"A");
        Reload();
        Present();
        Present();
    }
    glFinish();
    const stHeld after = stHeld::Count();
    EXPECT_EQ(headless::ImportedSwapCalls() - uSwapsBefore, m_uFrames)
        << "every frame of the program is shown";
    EXPECT_EQ(after.auNames, before.auNames);
    EXPECT_EQ(after.uFiles, before.uFiles);
    // The records of the test back-end grow by some kilobytes a build; a control left behind would be more.
    EXPECT_LT(after.uHeap, before.uHeap + (c_uChanges - c_uWarmUp) * 10 * 1024);
    EXPECT_EQ(headless::OpenSettingsKeys(), 0u);
}

TEST_F(ProfileSwitch, AMissingProfileLeavesTheOverlayOffAndCostsLittleUntilAFileIsThere) {
    ASSERT_TRUE(Begin(true, u"Own"));
    Present();
    EXPECT_FALSE(g_bInitGL);
    EXPECT_EQ(g_apOSDManager[0], nullptr) << "nothing of the try is kept";
    const std::size_t uOpened = headless::OpenedFiles().size();
    const std::vector<std::string> calls = RecordSwap();
    EXPECT_EQ(calls, std::vector<std::string>{gl_recorder::Call("glGetError")});
    ++m_uFrames;
    for (u32 u = 0; u < 57; ++u) Present();
    EXPECT_EQ(headless::OpenedFiles().size(), uOpened) << "no file is looked for within a second";
    WriteProfile("Own", "<Panel");
    for (u32 u = 0; u < 65; ++u) Present();
    EXPECT_GT(headless::OpenedFiles().size(), uOpened) << "another look after a second";
    EXPECT_FALSE(g_bInitGL);
    WriteProfile("Own", "<Panel Name='P' IsShow='1'/>");
    for (u32 u = 0; u < 130 && !g_bInitGL; ++u) Present();
    EXPECT_TRUE(g_bInitGL);
    EXPECT_TRUE(g_mapItemByName.contains("P"));
    EXPECT_EQ(headless::ImportedSwapCalls(), m_uFrames);
}

TEST_F(ProfileSwitch, AnotherProfileOrAReloadIsTriedAtOnce) {
    WriteProfile("Good", "<Panel Name='P' IsShow='1'/>");
    ASSERT_TRUE(Begin(true, u"Gone"));
    Present();
    EXPECT_FALSE(g_bInitGL);
    Select(u"Good");
    Present();
    EXPECT_TRUE(g_bInitGL);
    Select(u"Gone");
    Reload();
    Present();
    Present();
    EXPECT_FALSE(g_bInitGL);
    WriteProfile("Gone", "<Panel Name='Q' IsShow='1'/>");
    Present();
    EXPECT_FALSE(g_bInitGL);
    Reload();
    Present();
    Present();
    EXPECT_TRUE(g_bInitGL);
    EXPECT_TRUE(g_mapItemByName.contains("Q"));
}

TEST_F(ProfileSwitch, AFailedLoadShowsTheProfilesNameWhereMessageBoxesAreAskedFor) {
    WriteData("OSD.ini", "[Info]\nDebugMessageBox=1\n");
    ASSERT_TRUE(Begin(true, u"Gone"));
    Present();
    const auto boxes = headless::MessageBoxes();
    ASSERT_EQ(boxes.size(), 2u);
    EXPECT_EQ(boxes[0].first, u"g_fnRead_OSD_Profile fail");
    EXPECT_EQ(boxes[0].second, "Error");
    EXPECT_EQ(boxes[1].first, u"Gone");
    EXPECT_EQ(boxes[1].second, "g_wzProfileName");
    for (u32 u = 0; u < 30; ++u) Present();
    EXPECT_EQ(headless::MessageBoxes().size(), 2u);
    WriteData("OSD.ini", "");
    g_fnTavo_GL_Release();
    Present();
    EXPECT_EQ(headless::MessageBoxes().size(), 2u);
}

bool g_bTooMany = false;

TEST_F(ProfileSwitch, AMillionItemsEndInALayoutThatHasRoomForSome) {
    std::string strItems;
    for (u32 u = 0; u < 1000000; ++u) strItems += "<Panel Name='" + std::to_string(u) + "' IsShow='1'/>";
    ASSERT_LT(strItems.size(), 32u * 1024 * 1024);
    WriteProfile("Own", strItems);
    g_bTooMany = false;
    g_fnLogSink = [](const char* szLine) {
        g_bTooMany = g_bTooMany || std::string_view(szLine).starts_with("error ! too many items");
    };
    ASSERT_TRUE(Begin(true, u"Own"));
    Present();
    EXPECT_TRUE(g_bInitGL);
    EXPECT_TRUE(g_bTooMany);
    EXPECT_EQ(g_mapItemByName.size(), 4096u);
    for (u32 u = 0; u < g_uPanelEntries; ++u) ASSERT_NE(g_ppPanel[u], nullptr) << u;
    Present();
    WriteProfile("Own", "<Panel Name='P' IsShow='1'/>");
    Reload();
    Present();
    Present();
    EXPECT_TRUE(g_bInitGL);
    EXPECT_EQ(g_mapItemByName.size(), 1u);
    EXPECT_EQ(headless::ImportedSwapCalls(), m_uFrames);
}

} // namespace
