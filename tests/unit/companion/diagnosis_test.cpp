#include "companion/diagnosis.h"
#include "companion/machine_check.h"
#include "companion/reports.h"
#include "platform/foreign_overlays.h"
#include "platform/tool_bytes.h"
#include "shared/frame_trace.h"
#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using namespace companion;
using namespace platform::tool;

namespace {

/// A program in which everything is as it should be.
Evidence Healthy() {
    Evidence st;
    st.stProcess.bExists = st.stProcess.bReadable = st.stProcess.bLibraryMapped = st.stProcess.bGlMapped =
        true;
    st.stProcess.eDetour = Detour::Ours;
    st.stProcess.strName = "game";
    st.bCommandRecord = st.bStatusRecord = st.bFramesSeen = st.bQueryFrameTime = true;
    st.eClaim = ApiClaim::OpenGL;
    st.uApiCode = 1024;
    return st;
}

PipelineState StateOf(const Evidence& st) { return Diagnose(st).eState; }

bool HasNote(const Evidence& st, const char* szPart) {
    const auto listNotes = Diagnose(st).listNotes;
    return std::any_of(listNotes.begin(), listNotes.end(), [&](const Remark& stNote) {
        return stNote.strSeen.find(szPart) != std::string::npos;
    });
}

} // namespace

TEST(CompanionDoctor, Running) {
    EXPECT_EQ(StateOf(Healthy()), PipelineState::Running);
    EXPECT_TRUE(Diagnose(Healthy()).listNotes.empty());
    Evidence st = Healthy();
    st.stProcess.eDetour = Detour::Preload;
    EXPECT_EQ(StateOf(st), PipelineState::Running);
}

TEST(CompanionDoctor, NoProcess) {
    EXPECT_EQ(StateOf(Evidence{}), PipelineState::NoProcess);
    Evidence st = Healthy();
    st.stProcess = {};
    EXPECT_EQ(StateOf(st), PipelineState::NoProcess);
    EXPECT_TRUE(HasNote(st, "left behind"));
}

TEST(CompanionDoctor, NotAdmitted) {
    Evidence st = Healthy();
    st.stProcess.bLibraryMapped = false;
    EXPECT_EQ(StateOf(st), PipelineState::NotAdmitted);
}

TEST(CompanionDoctor, WithoutAccessTheRecordStillTells) {
    Evidence st = Healthy();
    st.stProcess.bReadable = st.stProcess.bLibraryMapped = false;
    st.stProcess.eDetour = Detour::Unknown;
    EXPECT_EQ(StateOf(st), PipelineState::Running);
    st.bCommandRecord = st.bStatusRecord = false;
    EXPECT_EQ(StateOf(st), PipelineState::Unknown);
}

TEST(CompanionDoctor, PassiveWhenSwitchedOff) {
    Evidence st = Healthy();
    st.bGlobalEnable = false;
    st.bFramesSeen = false;
    EXPECT_EQ(StateOf(st), PipelineState::Passive);
}

TEST(CompanionDoctor, WaitingForAForeignOverlay) {
    Evidence st = Healthy();
    st.stProcess.eDetour = Detour::NotLaid;
    EXPECT_EQ(StateOf(st), PipelineState::NoDetour);
    st.stProcess.listOverlays = {"steam_api64.dll"};
    EXPECT_EQ(StateOf(st), PipelineState::WaitingForOverlay);
    st.stProcess.eDetour = Detour::Ours; // the wait is over
    EXPECT_EQ(StateOf(st), PipelineState::Running);
}

TEST(CompanionDoctor, ClaimedByAnotherFlavour) {
    Evidence st = Healthy();
    st.eClaim = ApiClaim::Direct3D;
    st.uApiCode = 0;
    EXPECT_EQ(StateOf(st), PipelineState::Foreign);
}

TEST(CompanionDoctor, NoFrame) {
    Evidence st = Healthy();
    st.bFramesSeen = false;
    st.uApiCode = 9527;
    EXPECT_EQ(StateOf(st), PipelineState::NoFrame);
}

TEST(CompanionDoctor, FramesWithoutResources) {
    Evidence st = Healthy();
    st.uApiCode = 0;
    EXPECT_EQ(StateOf(st), PipelineState::AwaitingGL);
}

TEST(CompanionDoctor, NonsenseApiCodeIsUnknown) {
    Evidence st = Healthy();
    st.uApiCode = 77;
    EXPECT_EQ(StateOf(st), PipelineState::Unknown);
    EXPECT_NE(Diagnose(st).stState.strSeen.find("API number"), std::string::npos);
}

TEST(CompanionDoctor, ProgramWithoutARecord) {
    Evidence st = Healthy();
    st.bCommandRecord = st.bStatusRecord = false;
    st.bTablesFull = true;
    EXPECT_EQ(StateOf(st), PipelineState::Unknown);
    EXPECT_TRUE(HasNote(st, "no record"));
    EXPECT_TRUE(HasNote(st, "All 100"));
}

TEST(CompanionDoctor, Notes) {
    Evidence st = Healthy();
    st.bCommandWaiting = true;
    st.bQueryFrameTime = false;
    st.stProcess.eDetour = Detour::Other;
    st.stProcess.bGlMapped = false;
    st.eClaim = ApiClaim::Unreadable;
    for (const char* szPart :
         {"command waits", "Frame times", "Something else stands", "no OpenGL", "could not be read"}) {
        EXPECT_TRUE(HasNote(st, szPart)) << szPart;
    }
}

TEST(CompanionDoctor, NamesAreBounded) {
    EXPECT_STREQ(StateName(PipelineState::Running), "running");
    EXPECT_STREQ(StateName(static_cast<PipelineState>(99)), "unknown");
    EXPECT_STREQ(DetourName(static_cast<Detour>(99)), "unknown");
    EXPECT_STREQ(ClaimName(static_cast<ApiClaim>(-1)), "unknown");
    EXPECT_EQ(ApiName(1024), "OpenGL");
    EXPECT_EQ(ApiName(9527), "not seen");
    EXPECT_EQ(ApiName(0), "none");
    EXPECT_EQ(ApiName(3), "3");
}

TEST(CompanionDoctor, ReportInTextAndJson) {
    Evidence st = Healthy();
    st.stProcess.strName = "ga\x1Bme";
    st.fFrameTime = 8.25f;
    const std::string strText = DiagnosisText(41, st, Diagnose(st));
    EXPECT_NE(strText.find("process       41 ga\\x1Bme\n"), std::string::npos);
    EXPECT_NE(strText.find("frame time    8.25 ms\n"), std::string::npos);
    EXPECT_NE(strText.find("state         running\nfound         Pictures pass"), std::string::npos)
        << strText;
    EXPECT_EQ(strText.find("why "), std::string::npos) << strText;
    const auto js = DiagnosisJson(41, st, Diagnose(st));
    EXPECT_EQ(js["state"], "running");
    EXPECT_EQ(js["claim"], "OpenGL");
}

namespace {

/// A program that nobody has let the overlay into.
Evidence Outside() {
    Evidence st = Healthy();
    st.stProcess.bLibraryMapped = st.bCommandRecord = st.bStatusRecord = st.bFramesSeen = false;
    st.eClaim = ApiClaim::None;
    return st;
}

/// One that has answered, with this outcome and version.
Evidence Answered(u32 uOverlay, const char* szVersion = "4.5 Mesa") {
    Evidence st = Healthy();
    st.stTrace.bAnswered = true;
    st.stTrace.stHead.uOverlay = uOverlay;
    st.stTrace.stHead.strVersion = szVersion;
    return st;
}

struct OutsideCase {
    const char* szName;
    void (*fnMake)(Evidence&);
};

} // namespace

TEST(CompanionDoctor, WhyTheOverlayIsNotInAProgram) {
    const OutsideCase aCases[] = {
        {"32-bit", [](Evidence& st) { st.stTraits.b32Bit = true; }},
        {"privileged", [](Evidence& st) { st.stTraits.bPrivileged = true; }},
        {"sandboxed", [](Evidence& st) { st.stTraits.strSandbox = "Flatpak (org.game)"; }},
        {"sandboxed", [](Evidence& st) { st.stTraits.bOtherMemory = true; }},
        {"static", [](Evidence& st) { st.stTraits.bStatic = true; }},
        {"Windows program", [](Evidence& st) { st.stModules.bWine = true; }},
        {"Vulkan", [](Evidence& st) { st.stModules.bVulkan = true; }},
        {"Direct3D", [](Evidence& st) { st.stModules.bDirect3D = true; }},
        {"not opened", [](Evidence& st) { st.stModules.bPreload = true; }},
        {"not admitted", [](Evidence& st) { st.stModules.bVulkan = st.stModules.bOpenGl = true; }},
        {"not admitted", [](Evidence& st) { st.bCanEnter = true; }},
        {"other user", [](Evidence& st) { st.stTraits.bOtherUser = !(st.stProcess.bReadable = false); }},
        {"unknown", [](Evidence& st) { st.stProcess.bReadable = false; }},
    };
    for (const OutsideCase& stCase : aCases) {
        Evidence st = Outside();
        stCase.fnMake(st);
        EXPECT_STREQ(StateName(StateOf(st)), stCase.szName);
    }
}

TEST(CompanionDoctor, WhyTheOverlayDoesNotDraw) {
    EXPECT_EQ(StateOf(Answered(TRACE_OVERLAY_DRAWS)), PipelineState::Running);
    EXPECT_EQ(StateOf(Answered(TRACE_OVERLAY_BUILDS)), PipelineState::Running);
    EXPECT_EQ(StateOf(Answered(TRACE_OVERLAY_UNTOLD)), PipelineState::Running);
    EXPECT_EQ(StateOf(Answered(99)), PipelineState::Running) << "a word of a later version";
    EXPECT_EQ(StateOf(Answered(TRACE_OVERLAY_LAYOUT_FAILED)), PipelineState::LayoutFailed);
    EXPECT_EQ(StateOf(Answered(TRACE_OVERLAY_SHADERS_FAILED)), PipelineState::ShadersFailed);
    EXPECT_EQ(StateOf(Answered(TRACE_OVERLAY_GAVE_UP)), PipelineState::BadContext);
    EXPECT_EQ(StateOf(Answered(TRACE_OVERLAY_GAVE_UP, "")), PipelineState::BadContext);
    EXPECT_EQ(StateOf(Answered(TRACE_OVERLAY_GAVE_UP, "OpenGL ES 3.2 Mesa")), PipelineState::Gles);
    for (const char* const szOld : {"1.4", "2.1 Mesa", "3.0", "3.1.0 - Build"})
        EXPECT_EQ(StateOf(Answered(TRACE_OVERLAY_GAVE_UP, szOld)), PipelineState::OldContext) << szOld;
    for (const char* const szNew : {"3.2", "3.10", "4.6.0", "10.1"})
        EXPECT_EQ(StateOf(Answered(TRACE_OVERLAY_GAVE_UP, szNew)), PipelineState::BadContext) << szNew;
    Evidence st = Answered(TRACE_OVERLAY_BUILDS);
    st.stTrace.uSurfaces = 20;
    EXPECT_EQ(StateOf(st), PipelineState::ManyWindows);
    st.stTrace.uSurfaces = 1;
    EXPECT_EQ(StateOf(st), PipelineState::Running);
    EXPECT_TRUE(HasNote(st, "another window"));
    st.stTrace.uSurfaces = 0;
    st.stTrace.uPassed = 7;
    EXPECT_TRUE(HasNote(st, "other windows too"));
}

TEST(CompanionDoctor, AnInstanceApartFromThisCompanion) {
    Evidence st = Healthy();
    st.bCommandRecord = st.bStatusRecord = st.bFramesSeen = false;
    st.stTraits.bOtherSegment = true;
    EXPECT_EQ(StateOf(st), PipelineState::OtherSegment);
    st.stTraits.bOtherSegment = false;
    st.stTraits.bOtherMemory = true;
    EXPECT_EQ(StateOf(st), PipelineState::Sandboxed);
    st.bCommandRecord = st.bStatusRecord = st.bFramesSeen = true; // it shares the memory all the same
    EXPECT_EQ(StateOf(st), PipelineState::Running);
}

TEST(CompanionDoctor, EachStateTellsWhatWhyAndWhatNext) {
    Evidence st = Outside();
    st.uProcessId = 4711;
    st.bCanEnter = true;
    const Remark stEnter = Diagnose(st).stState;
    EXPECT_NE(stEnter.strNext.find("orvin-osd attach 4711"), std::string::npos) << stEnter.strNext;
    st = Answered(TRACE_OVERLAY_LAYOUT_FAILED);
    st.strProfile = "My\x1B";
    const Remark stFailed = Diagnose(st).stState;
    EXPECT_NE(stFailed.strSeen.find("My\\x1B"), std::string::npos) << stFailed.strSeen;
    EXPECT_FALSE(stFailed.strWhy.empty());
    EXPECT_NE(stFailed.strNext.find("profile check My"), std::string::npos);
    st = Healthy();
    st.stModules.listOverlays = {"MangoHud", "RenderDoc"};
    EXPECT_TRUE(HasNote(st, "MangoHud, RenderDoc"));
    for (const Remark& stNote : Diagnose(st).listNotes) {
        EXPECT_FALSE(stNote.strWhy.empty());
        EXPECT_FALSE(stNote.strNext.empty());
        EXPECT_EQ(stNote.strSeen.find('{'), std::string::npos);
    }
}

TEST(CompanionDoctor, ModulesTellWhatAProgramDrawsWithAndWhoElseIsThere) {
    const ModuleFacts st = FactsOfModules(
        {"/usr/lib/libGLX.so.0", "/x/libvulkan.so.1.3", "C:\\Windows\\D3D11.DLL",
         "/opt/libMangoHud_opengl.so", "/opt/libMangoHud_dlsym.so", "C:\\g\\GameOverlayRenderer64.dll",
         "/a/libGLESv2.so.2", "/w/ntdll.so", "/p/libORVIN-OSD64-GL-preload.so", ""});
    EXPECT_TRUE(st.bOpenGl && st.bVulkan && st.bDirect3D && st.bGles && st.bWine && st.bPreload);
    EXPECT_EQ(st.listOverlays, (std::vector<std::string>{"MangoHud", "the overlay of Steam"}));
    const ModuleFacts stNone =
        FactsOfModules({"/usr/lib/libc.so.6", "/x/libGLdispatch.so.0", "notopengl32.dll"});
    EXPECT_FALSE(stNone.bOpenGl || stNone.bVulkan || stNone.bDirect3D || stNone.bGles || stNone.bWine);
    for (const char* const szFile : g_aszForeignOverlays) EXPECT_NE(OverlayName(szFile), nullptr) << szFile;
}

TEST(CompanionDoctor, TraitsAreReadFromWhatTheSystemWrites) {
    EXPECT_EQ(ModulePaths("7f-80 r-xp 0 08:01 1   /opt/a b/lib.so\n80-81 rw-p 0 00:00 0 [heap]\n"
                          "81-82 r-xp 0 08:01 1   /opt/a b/lib.so (deleted)\n82-83 r--p 0 08:01 2  /x"),
              (std::vector<std::string>{"/opt/a b/lib.so", "/x"}));
    EXPECT_TRUE(Is32BitElf(std::string_view("\x7F"
                                            "ELF\x01\x01",
                                            6)));
    EXPECT_FALSE(Is32BitElf(std::string_view("\x7F"
                                             "ELF\x02\x01",
                                             6)));
    EXPECT_FALSE(Is32BitElf("\x7F"
                            "ELF"));
    EXPECT_FALSE(HasBorrowedRights("Name:\tx\nUid:\t1000\t1000\t1000\t1000\nGid:\t5\t5\t5\t5\n"));
    EXPECT_TRUE(HasBorrowedRights("Uid:\t1000\t0\t0\t0\nGid:\t5\t5\t5\t5\n"));
    EXPECT_TRUE(HasBorrowedRights("Uid:\t1\t1\t1\t1\nGid:\t5\t6\t5\t5"));
    EXPECT_FALSE(HasBorrowedRights("Uid:\nGid:\tx\t9"));
    u32 uUser = 7;
    EXPECT_FALSE(UserOfStatus("Name: Uid: 3", uUser));
    EXPECT_TRUE(UserOfStatus("Name: a\nUid:\t33\t0", uUser));
    EXPECT_EQ(uUser, 33u);
    std::string strValue;
    const std::string strEnvironment("AB=1\0A=2=3\0B", 12);
    EXPECT_TRUE(VariableIn(strEnvironment, "A", strValue));
    EXPECT_EQ(strValue, "2=3");
    EXPECT_FALSE(VariableIn(strEnvironment, "B", strValue));
    EXPECT_EQ(FlatpakName("[Runtime]\nname=wrong\n[Application]\nfoo=1\nname=org.x.Game\n"), "org.x.Game");
    EXPECT_EQ(FlatpakName("name=wrong"), "");
}

TEST(CompanionDoctor, SettingsOutOfRangeAreNamed) {
    const SettingRow& rate = *FindSetting("limit-rate");
    EXPECT_EQ(JudgeSetting(rate, {60, ""}).strSeen, "");
    const Remark st = JudgeSetting(rate, {100000, ""});
    EXPECT_EQ(st.strSeen, "The setting limit-rate is 100000, but it takes 1 to 1000 frames a second.");
    EXPECT_NE(st.strNext.find("'orvin-osd config limit-rate --default'"), std::string::npos);
    EXPECT_NE(JudgeSetting(rate, {std::nullopt, "sixty"}).strSeen.find("wrong kind"), std::string::npos);
    EXPECT_NE(JudgeSetting(*FindSetting("shot-type"), {9, ""}).strSeen.find("png"), std::string::npos);
    EXPECT_EQ(JudgeSetting(*FindSetting("limit"), {7, ""}).strSeen, "") << "any number but 0 is on";
    EXPECT_NE(JudgeSetting(*FindSetting("shot-folder"), {7, ""}).strSeen.find("wrong kind"),
              std::string::npos);
}

TEST(CompanionDoctor, AFeedThatDiedAndOneThatIsMissingAreTold) {
    FeedState st;
    EXPECT_NE(JudgeFeed(st).strSeen.find("No feed is alive"), std::string::npos);
    st.eLife = FeedLife::Alive;
    EXPECT_EQ(JudgeFeed(st).strSeen, "");
    st.eLife = FeedLife::Dead;
    EXPECT_NE(JudgeFeed(st).strSeen.find("was killed"), std::string::npos);
    st.eLife = FeedLife::Once;
    st.uValues = 1;
    EXPECT_NE(JudgeFeed(st).strSeen.find("published once"), std::string::npos);
}

TEST(CompanionDoctor, ApiTag) {
    EXPECT_EQ(ClaimOfTag("OGL"), ApiClaim::OpenGL);
    EXPECT_EQ(ClaimOfTag("D3D"), ApiClaim::Direct3D);
    EXPECT_EQ(ClaimOfTag("D3\0"), ApiClaim::None);
    EXPECT_EQ(ClaimOfTag("\0\0\0"), ApiClaim::None);
}

TEST(CompanionDoctor, ModulesFromAMemoryMap) {
    ProcessFacts st;
    ReadModuleFacts("7f00-7f10 r-xp 0 08:01 1   /opt/a b/libORVIN-OSD64-GL.so\n"
                    "7f10-7f20 rw-p 0 00:00 0\n"
                    "7f20-7f30 r-xp 0 08:01 2   /usr/lib/libGLX.so.0.0.0 (deleted)\n"
                    "7f30-7f40 r-xp 0 08:01 3   /drive_c/Steam_API64.dll\n"
                    "7f40-7f50 r-xp 0 08:01 3   /drive_c/Steam_API64.dll",
                    st);
    EXPECT_TRUE(st.bReadable && st.bLibraryMapped && st.bGlMapped);
    EXPECT_EQ(st.eDetour, Detour::Preload);
    EXPECT_EQ(st.listOverlays, std::vector<std::string>{"Steam_API64.dll"});
}

TEST(CompanionDoctor, ThePreloadPartAloneIsNotTheLibrary) {
    ProcessFacts st;
    ReadModuleFacts("7f00-7f10 r-xp 0 08:01 1 /x/libORVIN-OSD64-GL-preload.so\n", st);
    EXPECT_FALSE(st.bLibraryMapped);
    EXPECT_EQ(st.eDetour, Detour::Unknown);
    ProcessFacts stEmpty;
    ReadModuleFacts("", stEmpty);
    EXPECT_FALSE(stEmpty.bReadable);
}

TEST(CompanionDoctor, ASharedMappingIsFoundByItsFile) {
    const std::string strMaps = "7f0000000000-7f0000001000 r--p 00000000 00:1a 17   /dev/shm/seg\n"
                                "7f0000001000-7f0000002000 rw-s 00001000 00:1a 17   /dev/shm/seg\n"
                                "7f0000002000-7f0000004000 rw-s 00000000 00:1b 17   /dev/shm/seg\n"
                                "7f0000007000-7f0000008000 rw-p 00000000 00:00 0 \n"
                                "7f0000008000-7f000000b000 rw-s 00000000 00:1a 17   /dev/shm/x (deleted)";
    const auto st = FindSharedMap(strMaps, {0, 0x1a, 17});
    ASSERT_TRUE(st);
    EXPECT_EQ(st->uAddress, 0x7f0000008000u);
    EXPECT_EQ(st->uBytes, 0x3000u);
    EXPECT_EQ(FindSharedMap(strMaps, {0, 0x1b, 17})->uBytes, 0x2000u);
    EXPECT_FALSE(FindSharedMap(strMaps, {0, 0x1a, 18}));
    EXPECT_FALSE(FindSharedMap("", {0, 0x1a, 17}));
    EXPECT_FALSE(FindSharedMap("\n\xFF\n-\n1-2 rw-s\n2-1 rw-s 0 00:1a 17\n", {0, 0x1a, 17}));
}

TEST(CompanionDoctor, JumpsAreRead) {
    const u8 auNear[] = {0xE9, 0x10, 0, 0, 0};
    EXPECT_EQ(ReadJump(auNear, 5, 0x1000).uAddress, 0x1015u);
    EXPECT_EQ(ReadJump(auNear, 5, 0x1000).eKind, Jump::Kind::Direct);
    const u8 auBack[] = {0xE9, 0xFB, 0xFF, 0xFF, 0xFF};
    EXPECT_EQ(ReadJump(auBack, 5, 0x1000).uAddress, 0x1000u);
    const u8 auShort[] = {0xEB, 0xFE};
    EXPECT_EQ(ReadJump(auShort, 2, 0x1000).uAddress, 0x1000u);
    const u8 auFar[] = {0xFF, 0x25, 0x20, 0, 0, 0};
    EXPECT_EQ(ReadJump(auFar, 6, 0x1000).uAddress, 0x1026u);
    EXPECT_EQ(ReadJump(auFar, 6, 0x1000).eKind, Jump::Kind::ThroughPointer);
}

TEST(CompanionDoctor, OrdinaryCodeAndCutBytesAreNoJump) {
    const u8 auCode[] = {0x48, 0x8D, 0xA4, 0x24, 0, 0, 0, 0};
    EXPECT_EQ(ReadJump(auCode, 8, 0).eKind, Jump::Kind::None);
    const u8 auNear[] = {0xE9, 0x10, 0, 0, 0};
    EXPECT_EQ(ReadJump(auNear, 4, 0).eKind, Jump::Kind::None);
    const u8 auFar[] = {0xFF, 0x25, 0, 0, 0, 0};
    EXPECT_EQ(ReadJump(auFar, 5, 0).eKind, Jump::Kind::None);
    EXPECT_EQ(ReadJump(auFar, 0, 0).eKind, Jump::Kind::None);
}
